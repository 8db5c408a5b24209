#include "sets/Replay.h"

#include <algorithm>

#include "archive/ImageRecords.h"

namespace tarnwell {

namespace {

std::size_t Index(int address) {
    return static_cast<std::size_t>(address);
}

void Take(KnownBytes& bytes, const MemoryBuffer& image) {
    for (std::size_t address = 0; address < kEepromBytes; ++address)
        bytes[address] = image[address];
}

/// The image that a reading was kept as, if it is still there.
std::optional<MemoryBuffer> KeptWith(const TvSet& set, const HistoryEvent& event) {
    return event.image.empty() ? std::nullopt : LoadOwnImage(set.folder + "/" + event.image);
}

/// Bytes that fit neither what was known nor what was read are those of a history with a gap.
void Apply(KnownBytes& bytes, const TvSet& set, const HistoryEvent& event) {
    const bool isReading = event.kind == EventKind::Read;
    const auto kept = isReading ? KeptWith(set, event) : std::nullopt;
    if (kept)
        return Take(bytes, *kept);
    for (const EventByte& byte : event.bytes)
        bytes[Index(byte.address)] = byte.held;
    const auto image = isReading ? ImageOf(bytes) : std::nullopt;
    if (!image || mCRC32::BufferCrcText(*image) == event.crc)
        return;
    std::ranges::fill(bytes, std::nullopt);
    for (const EventByte& byte : event.bytes)
        bytes[Index(byte.address)] = byte.held;
}

}  // namespace

KnownBytes BytesBefore(const TvSet& set, TargetDevice device, const SetHistory& history,
                       int number) {
    KnownBytes bytes(kEepromBytes);
    for (const HistoryEvent& event : history.events) {
        if (event.number < number && event.device == device)
            Apply(bytes, set, event);
    }
    return bytes;
}

std::optional<MemoryBuffer> ImageOf(const KnownBytes& bytes) {
    MemoryBuffer image{};
    for (std::size_t address = 0; address < kEepromBytes; ++address) {
        if (!bytes[address])
            return std::nullopt;
        image[address] = *bytes[address];
    }
    return image;
}

bool TakenEvents::Have(const HistoryEvent& event) const {
    return std::ranges::find(numbers, event.number) != numbers.end();
}

TakeBack TakeBackOf(const SetHistory& history, TargetDevice device, const TakenEvents& taken,
                    Newer newer) {
    std::map<int, std::optional<std::uint8_t>> from;
    std::set<int> again;
    for (const HistoryEvent& event : history.events) {
        if (event.device != device)
            continue;
        const bool isTaken = taken.Have(event);
        for (const EventByte& byte : event.bytes) {
            if (isTaken && taken.Have(byte))
                from.try_emplace(byte.address, byte.from);
            else if (from.contains(byte.address))
                again.insert(byte.address);
        }
    }
    TakeBack back;
    back.newer.assign(again.begin(), again.end());
    for (const auto& [address, value] : from) {
        if (again.contains(address) && newer == Newer::LeftOut)
            continue;
        if (value)
            back.values.emplace(address, *value);
        else
            back.unknown.push_back(address);
    }
    return back;
}

}  // namespace tarnwell
