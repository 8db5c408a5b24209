// The two ends of a run: the start-up sequence and the shut-down questions.
#pragma once

#include "core/Options.h"
#include "core/Platform.h"
#include "core/StatusBar.h"

namespace tarnwell {

/// What start-up sets up beyond the core, one call a step.
class StartUpSteps {
  public:
    virtual ~StartUpSteps() = default;
    virtual void SetUpFileDialog() = 0;
    virtual void SyncMenuChecks() = 0;
    virtual void SetLayout() = 0;
    virtual void ColourControls() = 0;
    virtual void ApplyPortOptions() = 0;
    virtual void ReleaseBus() = 0;
    virtual void SetupGrid() = 0;
    virtual void EnableSettingsButtons() = 0;
};

/// All that the ends of a run act on.
struct RunContext {
    ProgramState& state;
    StatusBar& statusBar;
    User& user;
    Platform& platform;
    mRegistry& registry;
    PlacedWindow& window;
};

/// Brings the window into a usable state; an unknown system ends the program.
void StartUp(const RunContext& run, StartUpSteps& steps);

/// What shut-down asks of the parts of the program that may hold unsaved work.
class UnsavedWork {
  public:
    virtual ~UnsavedWork() = default;

    /// Settles edits that are only in the data editor's grid; false if they stay there.
    virtual bool SettleGridEdits() = 0;

    /// Whether a setting waits to be written or archived.
    virtual bool HasChangedSettings() const = 0;
};

enum class Closing : std::uint8_t { EndProgram, KeepRunning };

/// Saves the options, then asks at most one question about unsaved settings or buffer.
Closing ShutDown(const RunContext& run, UnsavedWork& work);

}  // namespace tarnwell
