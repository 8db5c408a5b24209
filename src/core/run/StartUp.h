// The start-up sequence of a run.
#pragma once

#include "core/options/Options.h"
#include "core/run/Platform.h"
#include "core/user/StatusBar.h"

namespace tarnwell {

/// What start-up sets up beyond the core, in the order of the calls.
class WindowSetUp {
  public:
    virtual ~WindowSetUp() = default;
    virtual void SetUpFileDialog() = 0;
    virtual void SyncMenuChecks() = 0;
    virtual void SetLayout() = 0;
    virtual void ColourControls() = 0;
    virtual void ApplyPortOptions() = 0;
    virtual void ReleaseBus() = 0;
    virtual void SetupGrid() = 0;
    virtual void EnableSettingsButtons() = 0;
};

/// All that start-up acts on.
struct RunContext {
    ProgramState& state;
    StatusBar& statusBar;
    User& user;
    Platform& platform;
    mRegistry& registry;
    PlacedWindow& window;
};

/// Brings the window into a usable state; an unknown system ends the program.
void StartUp(const RunContext& run, WindowSetUp& setUp);

}  // namespace tarnwell
