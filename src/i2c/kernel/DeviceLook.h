// What a device on a bus looks like, found out by reading alone.
#pragma once

#include <array>
#include <string>

#include "i2c/DrivenBus.h"
#include "i2c/kernel/KernelTransfers.h"

namespace tarnwell {

/// A 24C64 has two-byte addresses and 8192 bytes. Each of these is shown by bytes that differ, so
/// a device that is blank, or that repeats itself, decides nothing. Addresses of one byte
/// are sent first: a second one is data to a device that has such addresses.
class DeviceLook {
  public:
    DeviceLook(KernelTransfers& transfers, std::uint8_t device)
        : transfers_(transfers), device_(device) {}

    /// 0 or a negated errno; `finding` is then what the device looks like, empty for a 24C64.
    int Look(std::string& finding);

  private:
    int LookByShortAddresses(std::string& finding);
    int LookForKnownHeader(std::string& finding);

    /// Of what is known from `kHalf` on and from 0 on, `part` bytes each.
    int LookAtAddresses(std::size_t part, std::string& finding);
    int LookAtSize(std::size_t part, std::string& finding);
    int Read(std::size_t address, std::span<std::uint8_t> bytes) {
        return transfers_.ReadAll(device_, static_cast<unsigned>(address), bytes);
    }

    KernelTransfers& transfers_;
    std::uint8_t device_;
    std::array<std::uint8_t, kEepromBytes> image_{};
};

}  // namespace tarnwell
