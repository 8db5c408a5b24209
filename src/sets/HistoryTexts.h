// A history as it is shown: what its events and their bytes say, and which of them are looked for.
#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "sets/HistoryFile.h"
#include "settings/Catalog.h"

namespace tarnwell {

inline constexpr std::array<std::string_view, 5> kHistoryColumns{"Time", "What", "Device",
                                                                 "How it ended", "Bytes"};

/// An event, by column.
std::array<std::string, kHistoryColumns.size()> TextsOf(const HistoryEvent& event);

/// "2026-11-24 19:52:30".
std::string EventWhen(const HistoryEvent& event);

/// A byte of an event in numbers of a mode: "Address 2363 (480i CR02): 6 becomes 9", a setting with
/// its own values; "not known" for what is not.
std::string ChangeText(const EventByte& byte, TargetDevice device, NumberMode mode,
                       const ByteNames& names);

/// What is looked for: a part of a setting's name, of a day or a command, or an address; anything
/// if it is empty.
struct HistoryFilter {
    std::string text{};
    bool settingsOnly = false;
};

/// The events that fit, newest first, with the bytes that do.
std::vector<HistoryEvent> Filtered(const SetHistory& history, const HistoryFilter& filter);

/// A value that a setting had, oldest first.
struct CoursePoint {
    std::string time;
    std::uint8_t value;
};

/// The setting that all bytes of the events are of, if there is one, with its values.
struct Course {
    int cell;
    std::vector<CoursePoint> points;
};
std::optional<Course> CourseOf(const std::vector<HistoryEvent>& newestFirst);

/// Events and bytes, a line each byte, the columns separated by `separator`.
std::string ListText(const std::vector<HistoryEvent>& events, NumberMode mode, char separator);

}  // namespace tarnwell
