// What a device held at some time and what events changed, as its history tells.
#pragma once

#include <map>
#include <set>

#include "archive/ImageBackups.h"
#include "sets/HistoryFile.h"
#include "sets/TvSet.h"

namespace tarnwell {

/// A device's bytes by address as far as they are known.
using KnownBytes = std::vector<std::optional<std::uint8_t>>;

/// What the device held before the event of that number, from the kept images of the set and the
/// events. Behind the last event: what it holds.
KnownBytes BytesBefore(const TvSet& set, TargetDevice device, const SetHistory& history,
                       int number);

/// The same as an image, where all bytes are known.
std::optional<MemoryBuffer> ImageOf(const KnownBytes& bytes);

/// What takes back what events changed.
struct TakeBack {
    std::map<int, std::uint8_t> values;  ///< by address
    std::vector<int> newer;              ///< that another event changed since; none in `values`
    std::vector<int> unknown;            ///< whose value before the events is not known
};

enum class Newer : std::uint8_t { LeftOut, AlsoTakenBack };

/// Which bytes of which events, all of one device.
struct TakenEvents {
    std::vector<int> numbers;
    std::set<int> addresses{};  ///< all of them if it is empty

    bool Have(const HistoryEvent& event) const;
    bool Have(const EventByte& byte) const {
        return addresses.empty() || addresses.contains(byte.address);
    }
};

TakeBack TakeBackOf(const SetHistory& history, TargetDevice device, const TakenEvents& taken,
                    Newer newer);

}  // namespace tarnwell
