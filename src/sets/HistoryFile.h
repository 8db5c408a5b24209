// The file of a set's history: a line an event, to which programs only ever append.
#pragma once

#include "core/files/RegularFile.h"
#include "sets/HistoryEvent.h"

namespace tarnwell {

/// What stands in a history, oldest first.
struct SetHistory {
    std::vector<HistoryEvent> events{};
    int skipped = 0;  ///< lines that are no event: cut short by a crash, or damaged
    FileFault fault = FileFault::None;
};

/// Reads all of it; of a file that is missing, nothing is missing.
SetHistory ReadHistory(const std::string& path);

/// The last write in a history.
std::optional<HistoryEvent> LastWrite(const std::string& path);

/// Whether an event could be appended now, as far as that shows before it is done.
[[nodiscard]] bool CanAppend(const std::string& path);

/// Appends a line in one write and returns when it is on the disk. A line that was cut short
/// before stays as it is, and the new one begins behind it. False if that failed, which leaves no
/// part of the line.
[[nodiscard]] bool AppendLine(const std::string& path, std::string line);

}  // namespace tarnwell
