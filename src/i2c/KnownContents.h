// What each device was last known to hold, from what was read of it and written to it.
#pragma once

#include <array>
#include <cstdint>
#include <optional>

#include "core/ProgramState.h"
#include "i2c/DeviceProgress.h"

namespace tarnwell {

class KnownContents {
  public:
    /// Other devices may be there from now on, to which nothing was written yet.
    void Forget() { bytes_ = {}; }
    void Forget(TargetDevice device) { bytes_[static_cast<std::size_t>(device)] = {}; }

    /// A byte of a device was read, or a write of it was seen to its end.
    void Holds(TargetDevice device, int address, std::uint8_t value) {
        At(device, address).value = value;
    }

    /// A write to a byte begins: until it Holds something the device may have the old or the new.
    void Writing(TargetDevice device, int address) {
        At(device, address) = {.value = std::nullopt, .written = ++writes_};
    }

    std::optional<std::uint8_t> Value(TargetDevice device, int address) const {
        return At(device, address).value;
    }

    /// Counts the writes: what Writes() was before something gives WrittenSince its time.
    std::uint32_t Writes() const { return writes_; }
    bool WrittenSince(std::uint32_t writes, TargetDevice device, int address) const {
        return At(device, address).written > writes;
    }

  private:
    struct Byte {
        std::optional<std::uint8_t> value;
        std::uint32_t written = 0;  ///< Writes() of its last write; 0 if there was none
    };
    const Byte& At(TargetDevice device, int address) const {
        return bytes_[static_cast<std::size_t>(device)][static_cast<std::size_t>(address)];
    }
    Byte& At(TargetDevice device, int address) {
        return bytes_[static_cast<std::size_t>(device)][static_cast<std::size_t>(address)];
    }

    std::array<std::array<Byte, kEepromBytes>, 2> bytes_;
    std::uint32_t writes_ = 0;
};

}  // namespace tarnwell
