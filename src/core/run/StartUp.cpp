#include "core/run/StartUp.h"

namespace tarnwell {

void StartUp(const RunContext& run, WindowSetUp& setUp) {
    const CommandScope scope(run.statusBar);
    setUp.SetUpFileDialog();
    run.state.driverLoaderItemVisible =
        mGlobal::GetOSFamily(run.platform, run.user) != OSFamily::Win9x;
    LoadOptions(run.registry, run.state, run.window);
    run.statusBar.ShowMode();
    setUp.SyncMenuChecks();
    run.state.sizeMode = SizeMode::Small;
    setUp.SetLayout();
    setUp.ColourControls();
    setUp.ApplyPortOptions();
    setUp.ReleaseBus();
    setUp.SetupGrid();
    run.statusBar.ShowStatus("Welcome to Tarnwell", kResultSeconds);
    setUp.EnableSettingsButtons();
}

}  // namespace tarnwell
