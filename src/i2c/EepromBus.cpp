#include "i2c/EepromBus.h"

#include <optional>

namespace tarnwell {

namespace {

/// A bus on which so many readings of one byte differ is not fit for writing.
constexpr int kMostReadings = 8;

}  // namespace

Transfer EepromBus::ReadAgreed(std::int16_t address) {
    std::optional<std::uint8_t> before;
    for (int reading = 0; reading < kMostReadings; ++reading) {
        if (ReadBlock(address, 1) == Transfer::Aborted)
            return Transfer::Aborted;
        if (before == ReadData()[0])
            return Transfer::Done;
        before = ReadData()[0];
    }
    return Transfer::Aborted;
}

}  // namespace tarnwell
