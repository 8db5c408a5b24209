// The commands on sets: making, naming, choosing and removing them.
#pragma once

#include "core/run/Programs.h"
#include "core/user/User.h"
#include "sets/Replay.h"
#include "sets/SetStore.h"

namespace tarnwell {

class Program;

class SetCommands {
  public:
    SetCommands(Program& program, User& user, Programs& programs)
        : program_(program), user_(user), programs_(programs) {}

    /// Asks for a name and makes a set; nothing if that was cancelled or failed, which a box tells.
    std::optional<TvSet> Make();

    /// Asks for another name; whether the set has it now.
    bool Rename(TvSet& set);

    /// Writes model and notes.
    void SaveTexts(const TvSet& set);

    /// Moves the set's folder to the trash, after a question; whether it is gone.
    bool Remove(const TvSet& set);

    /// Keeps the record of the set from now on, or of none.
    void Use(const std::optional<TvSet>& set);

    /// Writes what these bytes of events of the chosen set held before them, after a box that names
    /// what stays. There is at least one event.
    void TakeBack(const TakenEvents& taken, Newer newer);

    /// Writes what the device held before the event of the chosen set, or tells what is not known
    /// of it.
    void GoBack(const HistoryEvent& event);

  private:
    bool IsTarget(TargetDevice device);
    std::optional<std::string> AskName(std::string_view title, std::string_view proposed);
    bool Saved(const TvSet& set);

    Program& program_;
    User& user_;
    Programs& programs_;
};

}  // namespace tarnwell
