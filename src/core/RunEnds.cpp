#include "core/RunEnds.h"

namespace tarnwell {

namespace {

constexpr Message kSettingsNotSaved{
    "Setting values have been changed, but not archived\r\n"
    "to a disk or written to an EEProm.\r\n\r\n"
    "Really exit without saving the changes?",
    "W A R N I N G", BoxStyle::YesNoExclamation};
constexpr Message kBufferNotSaved{
    "The memory buffer been changed,\r\nbut not archived to a disk.\r\n\r\n"
    "Really exit without archiving?",
    "W A R N I N G", BoxStyle::YesNoExclamation};

}  // namespace

void StartUp(const RunContext& run, StartUpSteps& steps) {
    const CommandScope scope(run.statusBar);
    steps.SetUpFileDialog();
    run.state.driverLoaderItemVisible =
        mGlobal::GetOSFamily(run.platform, run.user) != OSFamily::Win9x;
    LoadOptions(run.registry, run.state, run.window);
    run.statusBar.ShowMode();
    steps.SyncMenuChecks();
    run.state.sizeMode = SizeMode::Small;
    steps.SetLayout();
    steps.ColourControls();
    steps.ApplyPortOptions();
    steps.ReleaseBus();
    steps.SetupGrid();
    run.statusBar.ShowStatus("Welcome to Tarnwell", kResultSeconds);
    steps.EnableSettingsButtons();
}

Closing ShutDown(const RunContext& run, UnsavedWork& work) {
    const CommandScope scope(run.statusBar);
    SaveOptions(run.registry, run.state, run.window);
    if (!work.SettleGridEdits())
        return Closing::KeepRunning;

    Answer answer = Answer::Yes;
    if (work.HasChangedSettings())
        answer = run.user.ShowBox(kSettingsNotSaved);
    else if (run.state.BufferChanged)
        answer = run.user.ShowBox(kBufferNotSaved);
    return answer == Answer::Yes ? Closing::EndProgram : Closing::KeepRunning;
}

}  // namespace tarnwell
