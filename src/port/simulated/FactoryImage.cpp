// What the EEPROMs of a simulated television hold before anybody changed them.
#include "port/simulated/FactoryImage.h"

#include <algorithm>

namespace tarnwell {

namespace {

/// Whole-byte settings: `count` bytes from `address` that run from 0 to `maximum`.
struct Limit {
    std::uint16_t address;
    std::uint8_t count;
    std::uint8_t maximum;
};

constexpr std::array kGlobalLimits{
    Limit{2330, 6, 63},  // contrast and brightness of the iris
    Limit{2507, 1, 15},  // clamp pulse phase, 480i
    Limit{2549, 1, 15},  // clamp pulse phase, 1080i
};

/// Within the block of a video format.
constexpr std::array kFormatLimits{
    Limit{1, 4, 3},    // sub-sharpness to edge enhancement
    Limit{5, 1, 1},    // dynamic colour
    Limit{6, 3, 3},    // colour transition to DC restoration
    Limit{17, 4, 15},  // saturation and hue
};

constexpr std::array<std::uint16_t, 4> kFormatBlocks{2348, 2384, 2420, 2456};

/// The end of the device was never written.
constexpr std::size_t kErasedFrom = 0x1E00;
constexpr std::uint8_t kErased = 0xFF;

constexpr std::uint8_t Scatter(std::uint32_t number) {
    number *= 0x9E3779B1U;
    number ^= number >> 15;
    number *= 0x85EBCA77U;
    return static_cast<std::uint8_t>(number >> 24);
}

void Apply(const Limit& limit, std::size_t block, EepromImage& image) {
    for (std::size_t i = 0; i < limit.count; ++i) {
        std::uint8_t& value = image[block + limit.address + i];
        value = static_cast<std::uint8_t>(value % (limit.maximum + 1));
    }
}

}  // namespace

EepromImage FactoryImage(Chip chip) {
    const std::uint32_t seed = chip == Chip::Primary ? 0 : kEepromSize;
    EepromImage image;
    for (std::uint32_t address = 0; address < kEepromSize; ++address)
        image[address] = Scatter(seed + address);
    std::fill(image.begin() + kErasedFrom, image.end(), kErased);

    for (const Limit& limit : kGlobalLimits)
        Apply(limit, 0, image);
    for (const std::uint16_t block : kFormatBlocks) {
        for (const Limit& limit : kFormatLimits)
            Apply(limit, block, image);
    }
    return image;
}

}  // namespace tarnwell
