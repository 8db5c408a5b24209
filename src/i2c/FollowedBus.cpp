#include "i2c/FollowedBus.h"

namespace tarnwell {

Transfer FollowedBus::ReadBlock(std::int16_t address, std::int16_t count) {
    if (Bus().ReadBlock(address, count) == Transfer::Aborted)
        return Transfer::Aborted;
    for (int index = 0; index < count; ++index)
        known_.Holds(state_.targetDevice, address + index,
                     Bus().ReadData()[static_cast<std::size_t>(index)]);
    return Transfer::Done;
}

Transfer FollowedBus::WritePage(std::int16_t address, std::span<const std::uint8_t> bytes) {
    for (std::size_t index = 0; index < bytes.size(); ++index)
        known_.Writing(state_.targetDevice, address + static_cast<int>(index));
    if (Bus().WritePage(address, bytes) == Transfer::Aborted)
        return Transfer::Aborted;
    for (std::size_t index = 0; index < bytes.size(); ++index)
        known_.Holds(state_.targetDevice, address + static_cast<int>(index), bytes[index]);
    return Transfer::Done;
}

}  // namespace tarnwell
