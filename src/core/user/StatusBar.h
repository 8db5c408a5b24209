// The status line with its one-shot timer, and the four panels of the status bar.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "core/ProgramState.h"
#include "core/user/Screen.h"

namespace tarnwell {

/// The one-shot timer `MsgTimer`; whoever implements it calls StatusBar::MsgTimerFired.
class Timer {
  public:
    virtual ~Timer() = default;
    virtual void Start(std::chrono::milliseconds interval) = 0;
    virtual void Stop() = 0;
};

enum class Panel : std::uint8_t { Mode, Status, Crc, Eep };

/// How far an operation on a whole device has come.
struct Progress {
    int percent;
    int secondsLeft;
};

class StatusBar {
  public:
    StatusBar(const ProgramState& state, Screen& screen, Timer& msgTimer);

    /// Shows `message` in the status panel and clears it after `seconds`.
    void ShowStatus(std::string_view message, std::int32_t seconds);

    /// Writes straight into the status panel; the timer is left alone.
    void PutStatus(std::string_view message);

    /// Writes into the status panel until the background's text is shown anew.
    void PutInBackground(std::string_view text);

    /// A message that waits to be cleared stays.
    void StopTimer();

    /// The timer has run out: at once, or at the end of the command that runs.
    void MsgTimerFired();

    /// Gives the panel a text for the times when no message stands there.
    void SetBackground(std::function<std::string()> text) { background_ = std::move(text); }

    /// What the background's text is made of has changed: shows it anew, unless a message stands.
    void ShowBackground();

    /// The number mode is another now.
    void ShowMode();

    void ShowCrc(std::string_view text);

    /// Shows the percentage in the device panel.
    void ShowProgress(const Progress& progress);

    /// Puts the target device back into its panel.
    void EndProgress();

    /// Of the whole-device operation that runs, if one does.
    const std::optional<Progress>& RunningProgress() const { return progress_; }

    std::string_view Text(Panel panel) const;

  private:
    friend class CommandScope;
    void EndCommand();

    const ProgramState& state_;
    Screen& screen_;
    Timer& msgTimer_;
    std::function<std::string()> background_;
    std::string status_;
    bool showsBackground_ = false;
    std::string crc_;
    std::optional<Progress> progress_;
    std::string percentage_;
    int commandsRunning_ = 0;
    bool timerDue_ = false;
};

/// Marks a running command: `MsgTimer` does not fire before the outermost one has ended.
class CommandScope {
  public:
    explicit CommandScope(StatusBar& statusBar) : statusBar_(statusBar) {
        ++statusBar_.commandsRunning_;
    }
    ~CommandScope() { statusBar_.EndCommand(); }
    CommandScope(const CommandScope&) = delete;
    CommandScope& operator=(const CommandScope&) = delete;

  private:
    StatusBar& statusBar_;
};

inline constexpr std::int32_t kResultSeconds = 5;
inline constexpr std::int32_t kMismatchSeconds = 30;
inline constexpr std::int32_t kAboutSeconds = 15;

}  // namespace tarnwell
