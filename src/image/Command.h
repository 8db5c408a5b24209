// What every command works with.
#pragma once

#include "image/Steps.h"
#include "image/WriteGuard.h"

namespace tarnwell {

/// The program's own parts that every command may need; they outlive the commands.
struct CommandContext {
    ProgramState& state;
    StatusBar& statusBar;
    Screen& screen;
    User& user;
    EepromBus& i2c;
    WriteGuard& writeGuard;
    StepKeeper& steps;
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
          steps_(context.steps) {}
    ~Command() = default;

    void Post(std::string_view outcome) { statusBar_.ShowStatus(outcome, kResultSeconds); }

    ProgramState& state_;
    StatusBar& statusBar_;
    Screen& screen_;
    User& user_;
    EepromBus& i2c_;
    WriteGuard& writeGuard_;
    StepKeeper& steps_;
};

}  // namespace tarnwell
