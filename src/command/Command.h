// What every command works with.
#pragma once

#include "command/BufferOrigin.h"
#include "command/Steps.h"
#include "command/WriteGuard.h"

namespace tarnwell {

/// The program's own parts that every command may need; they outlive the commands.
struct CommandContext {
    ProgramState& state;
    StatusBar& statusBar;
    Screen& screen;
    User& user;
    FollowedBus& i2c;
    WriteGuard& writeGuard;
    StepKeeper& steps;
    BufferOrigin& origin;
    ByteNames names;  ///< of the target device's bytes
};

/// A class of commands: what its constructor takes besides the context is particular to it.
class Command {
  public:
    Command(const Command&) = delete;
    Command& operator=(const Command&) = delete;

  protected:
    explicit Command(const CommandContext& context)
        : state_(context.state),
          statusBar_(context.statusBar),
          screen_(context.screen),
          user_(context.user),
          i2c_(context.i2c),
          writeGuard_(context.writeGuard),
          steps_(context.steps),
          origin_(context.origin),
          names_(context.names) {}
    ~Command() = default;

    void Post(std::string_view outcome) { statusBar_.ShowStatus(outcome, kResultSeconds); }

    /// The same of a write.
    void PostWritten(std::string_view outcome) {
        i2c_.EndWrite();
        Post(outcome);
    }

    /// Whether a command may go on to write; if not, the user was told.
    [[nodiscard]] bool MayGoOn(SecondReading reading) {
        if (reading == SecondReading::Aborted)
            i2c_.AbortOperation();
        return reading == SecondReading::Agreed;
    }

    /// Ends a command whose bytes were not read back as they were written: `line` in the status
    /// line, the beep, and `box`, which lists them and what else has changed.
    void TellNotVerified(std::string_view line, Box box, const std::vector<Mismatch>& mismatches);

    ProgramState& state_;
    StatusBar& statusBar_;
    Screen& screen_;
    User& user_;
    FollowedBus& i2c_;
    WriteGuard& writeGuard_;
    StepKeeper& steps_;
    BufferOrigin& origin_;
    const ByteNames& names_;
};

}  // namespace tarnwell
