// What happened to a set, as a line of its history.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "i2c/FollowedBus.h"
#include "i2c/Mismatch.h"

namespace tarnwell {

enum class EventKind : std::uint8_t {
    Write,
    Restore,  ///< a write of an image that was kept before
    Read,     ///< of a whole device that held something else than was known
};

/// A byte of an event: of a write as WrittenByte has it, of a reading what was known and what was
/// found.
struct EventByte {
    int address;
    std::optional<std::uint8_t> from;
    std::optional<std::uint8_t> to;
    std::optional<std::uint8_t> held;  ///< what the device is known to hold behind it

    bool operator==(const EventByte&) const = default;
};

struct HistoryEvent {
    int number = 0;      ///< its line in the history, from 1
    std::string time{};  ///< as Calendar::ZonedTime
    EventKind kind = EventKind::Read;
    std::string command{};  ///< as the menu, or the command line, calls it
    std::string image{};    ///< the name of the file that was written
    TargetDevice device = TargetDevice::Primary;
    std::string port{};
    std::string version{};  ///< the program's
    WriteEnd end = WriteEnd::Verified;
    int written = 0;    ///< how many bytes were written to; of a reading 0
    std::string crc{};  ///< of a reading
    std::vector<EventByte> bytes{};

    bool operator==(const HistoryEvent&) const = default;
};

/// The event as one line of JSON, without a line break; its number is its place. Its bytes have
/// what `names` calls them.
std::string JsonOf(const HistoryEvent& event, const ByteNames& names = {});

/// Nothing if the line is no event.
std::optional<HistoryEvent> EventOf(std::string_view line);

/// "verified", "not verified", "interrupted", "failed".
std::string_view WordOf(WriteEnd end);

}  // namespace tarnwell
