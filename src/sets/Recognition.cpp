#include "sets/Recognition.h"

#include <algorithm>

namespace tarnwell {

namespace {

/// How many times as many bytes differ from any other set.
constexpr std::size_t kDistance = 4;

}  // namespace

std::size_t BytesDiffering(const MemoryBuffer& one, const MemoryBuffer& other) {
    std::size_t bytes = 0;
    for (std::size_t address = 0; address < kEepromBytes; ++address)
        bytes += one[address] != other[address] ? 1 : 0;
    return bytes;
}

std::optional<Likeness> Recognise(const std::vector<TvSet>& sets, TargetDevice device,
                                  const MemoryBuffer& image) {
    const TvSet* nearest = nullptr;
    std::size_t least = kEepromBytes + 1;
    std::size_t next = least;
    for (const TvSet& set : sets) {
        const auto ready = ReadyImage(set, device);
        const std::size_t bytes = ready ? BytesDiffering(*ready, image) : kEepromBytes + 1;
        next = std::min(next, std::max(bytes, least));
        if (bytes < least) {
            least = bytes;
            nearest = &set;
        }
    }
    if (least > kMostDiffering || next == least || next < kDistance * least)
        return std::nullopt;
    return Likeness{*nearest, least};
}

}  // namespace tarnwell
