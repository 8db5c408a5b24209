// A history as it is shown: what its events and their bytes say, and which of them are looked for.
#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "names/NameBook.h"
#include "sets/HistoryFile.h"

namespace tarnwell {

inline constexpr std::array<std::string_view, 5> kHistoryColumns{"Time", "What", "Device",
                                                                 "How it ended", "Bytes"};

/// An event, by column.
std::array<std::string, kHistoryColumns.size()> TextsOf(const HistoryEvent& event);

/// "2026-11-24 19:52:30".
std::string EventWhen(const HistoryEvent& event);

/// A byte of an event in numbers of a mode: "Address 2363 (480i CR02): 6 becomes 9", a named value
/// with its own values; "not known" for what is not. `titles` are those of the device's bytes.
std::string ChangeText(const EventByte& byte, TargetDevice device, NumberMode mode,
                       const NameBook& names, const ByteNames& titles);

/// What is looked for: a part of a name, of a day or a command, or an address; anything
/// if it is empty.
struct HistoryFilter {
    std::string text{};
    bool settingsOnly = false;
};

/// The events that fit, newest first, with the bytes that do.
std::vector<HistoryEvent> Filtered(const SetHistory& history, const HistoryFilter& filter,
                                   const NameBook& names);

/// A value that a name had, oldest first.
struct CoursePoint {
    std::string time;
    int value;
};

/// The named value that all bytes of the events are of, if there is one, with its values.
struct Course {
    Named named;
    std::vector<CoursePoint> points;
};
std::optional<Course> CourseOf(const std::vector<HistoryEvent>& newestFirst, const NameBook& names);

/// Events and bytes, a line each byte, the columns separated by `separator`.
std::string ListText(const std::vector<HistoryEvent>& events, NumberMode mode, char separator,
                     const NameBook& names);

}  // namespace tarnwell
