// A television that a record is kept of.
#pragma once

#include <array>
#include <optional>
#include <set>
#include <string>
#include <string_view>

#include "image/MemoryBuffer.h"

namespace tarnwell {

/// What stands in the file set.json of a set's folder.
struct TvSet {
    std::string folder;  ///< full path
    std::string name;
    std::string model;
    std::string notes;
    std::array<std::string, 2>
        lastRead{};  ///< of each device when, as Calendar::ZonedTime, or empty

    /// Of each device the addresses at which a write that went wrong may have left anything.
    std::array<std::set<int>, 2> unknown{};
};

/// The files of a set's folder.
inline std::string HistoryPath(const TvSet& set) {
    return set.folder + "/history.jsonl";
}

/// What the set's device is known to hold, ready to be held against what is read: what was read of
/// it last, with what was written since. Nothing if it was never read.
std::optional<MemoryBuffer> ReadyImage(const TvSet& set, TargetDevice device);

/// False if it could not be written.
[[nodiscard]] bool PutReadyImage(const TvSet& set, TargetDevice device, const MemoryBuffer& image);

/// The same of one that is there already, and not yet on the disk: after a crash it may be what it
/// was, or in part.
void ChangeReadyImage(const TvSet& set, TargetDevice device, const MemoryBuffer& image);

/// "12 March", "12 March 2025" if that is not the year of `now`; both as Calendar::ZonedTime.
std::string DayText(std::string_view time, std::string_view now);

}  // namespace tarnwell
