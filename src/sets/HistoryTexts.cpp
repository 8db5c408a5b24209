#include "sets/HistoryTexts.h"

#include <algorithm>
#include <charconv>

#include "core/Letters.h"
#include "core/Words.h"

namespace tarnwell {

namespace {

/// An address that is written in decimal, or in hexadecimal behind 0x.
std::optional<int> AddressIn(std::string_view text) {
    const bool hex = text.starts_with("0x") || text.starts_with("0X");
    text.remove_prefix(hex ? 2 : 0);
    int address = 0;
    const auto [end, error] =
        std::from_chars(text.data(), text.data() + text.size(), address, hex ? 16 : 10);
    const bool isNumber = error == std::errc() && end == text.data() + text.size();
    return isNumber && address < kEepromBytes ? std::optional(address) : std::nullopt;
}

/// All that the byte is called by.
std::string NamesOf(const EventByte& byte, TargetDevice device, const NameBook& names) {
    return names.TitlesOn(device)(byte.address) + " " + names.NamesOn(device)(byte.address);
}

bool Fits(const EventByte& byte, TargetDevice device, const HistoryFilter& filter,
          const NameBook& names) {
    if (const auto address = AddressIn(filter.text))
        return byte.address == *address;
    return !names.At(device, byte.address).empty() &&
           ContainsIgnoringCase(NamesOf(byte, device, names), filter.text);
}

/// The value of a byte that `named` tells of, or else the byte itself.
std::string ValueText(std::optional<std::uint8_t> byte, const Named& named, NumberMode mode) {
    if (!byte)
        return "not known";
    return named ? ValueText(*named, ValueIn(*byte, *named), mode) : NumberText(*byte, mode);
}

std::optional<std::uint8_t> Written(const EventByte& byte) {
    return byte.to ? byte.to : byte.held;
}

/// The value that the change of the byte is told of; null if it is the byte itself.
Named NamedIn(const EventByte& byte, TargetDevice device, const NameBook& names) {
    return names.Changed(device, byte.address, byte.from, Written(byte));
}

/// By time, command and file an event fits with all its bytes, else with those that do.
bool KeepsFitting(HistoryEvent& event, const HistoryFilter& filter, const NameBook& names) {
    if (filter.settingsOnly)
        std::erase_if(event.bytes, [&](const EventByte& byte) {
            return names.At(event.device, byte.address).empty();
        });
    const bool isWhole =
        !AddressIn(filter.text) && (ContainsIgnoringCase(EventWhen(event), filter.text) ||
                                    ContainsIgnoringCase(event.command, filter.text) ||
                                    ContainsIgnoringCase(event.image, filter.text));
    if (!isWhole)
        std::erase_if(event.bytes, [&](const EventByte& byte) {
            return !Fits(byte, event.device, filter, names);
        });
    return !event.bytes.empty() || (isWhole && !filter.settingsOnly);
}

}  // namespace

std::string EventWhen(const HistoryEvent& event) {
    return event.time.substr(0, 10) +
           (event.time.size() > 11 ? " " + event.time.substr(11, 8) : std::string());
}

std::array<std::string, kHistoryColumns.size()> TextsOf(const HistoryEvent& event) {
    const bool isReading = event.kind == EventKind::Read;
    std::string what = isReading ? "Read" : event.command;
    if (!event.image.empty())
        what += (isReading ? ", kept as " : ", ") + event.image;
    return {
        EventWhen(event), what, DeviceName(event.device),
        isReading ? std::string() : std::string(WordOf(event.end)),
        std::to_string(isReading ? event.bytes.size() : static_cast<std::size_t>(event.written))};
}

std::string ChangeText(const EventByte& byte, TargetDevice device, NumberMode mode,
                       const NameBook& names, const ByteNames& titles) {
    const Named named = NamedIn(byte, device, names);
    std::string text = AddressText(byte.address, mode, titles) + ": " +
                       ValueText(byte.from, named, mode) + " becomes " +
                       ValueText(Written(byte), named, mode);
    if (byte.to && byte.held != byte.to)
        text += ", holds " + ValueText(byte.held, named, mode);
    return text;
}

std::vector<HistoryEvent> Filtered(const SetHistory& history, const HistoryFilter& filter,
                                   const NameBook& names) {
    std::vector<HistoryEvent> events = history.events;
    if (!filter.text.empty() || filter.settingsOnly)
        std::erase_if(events,
                      [&](HistoryEvent& event) { return !KeepsFitting(event, filter, names); });
    std::ranges::reverse(events);
    return events;
}

std::optional<Course> CourseOf(const std::vector<HistoryEvent>& newestFirst,
                               const NameBook& names) {
    std::optional<Course> course;
    for (std::size_t left = newestFirst.size(); left > 0; --left) {
        const HistoryEvent& event = newestFirst[left - 1];
        for (const EventByte& byte : event.bytes) {
            const Named named = NamedIn(byte, event.device, names);
            if (!named || (course && course->named != named))
                return std::nullopt;
            if (!course)
                course = Course{named, {}};
            if (course->points.empty() && byte.from)
                course->points.push_back({event.time, ValueIn(*byte.from, *named)});
            if (byte.held)
                course->points.push_back({event.time, ValueIn(*byte.held, *named)});
        }
    }
    return course;
}

std::string ListText(const std::vector<HistoryEvent>& events, NumberMode mode, char separator,
                     const NameBook& names) {
    std::string text;
    const auto add = [&](std::initializer_list<std::string> cells) {
        std::string_view before;
        for (const std::string& cell : cells) {
            text += before;
            text += cell.find(separator) == std::string::npos ? cell : "\"" + cell + "\"";
            before = std::string_view(&separator, 1);
        }
        text += "\r\n";
    };
    add({"Time", "What", "Device", "How it ended", "Address", "Setting", "From", "To", "Held"});
    for (const HistoryEvent& event : events) {
        const auto [time, what, device, end, count] = TextsOf(event);
        if (event.bytes.empty())
            add({time, what, device, end, "", "", "", "", ""});
        for (const EventByte& byte : event.bytes) {
            const Named named = NamedIn(byte, event.device, names);
            add({time, what, device, end,
                 NumberText(static_cast<std::uint32_t>(byte.address), mode),
                 names.TitlesOn(event.device)(byte.address), ValueText(byte.from, named, mode),
                 ValueText(Written(byte), named, mode), ValueText(byte.held, named, mode)});
        }
    }
    return text;
}

}  // namespace tarnwell
