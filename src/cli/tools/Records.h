// The sets that records are kept of, as the command line names them.
#pragma once

#include "cli/words/Report.h"

namespace tarnwell::cli {

/// All sets.
SetList KnownSets();

/// Looks up, or makes, the set that the arguments name, if they do; if there is none, the command
/// ends.
[[nodiscard]] bool FindSet(Arguments& arguments, Report& report);

/// The history of the set; nothing if it cannot be read, which ends the command.
[[nodiscard]] std::optional<SetHistory> LoadHistory(const Arguments& arguments, Report& report);

/// Whether the history has the events of the arguments, all of the device; if not, the command
/// ends.
[[nodiscard]] bool HasEvents(const SetHistory& history, const Arguments& arguments, Report& report);

}  // namespace tarnwell::cli
