// The I2C buses that the kernel drives, as far as the program needs them.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/ChosenBus.h"
#include "i2c/Port.h"

namespace tarnwell {

/// The bus of this name and node; numbers change, so else the only one of this name, or else of a
/// name that differs only in where the adapter is plugged in.
std::optional<I2cBus> FindI2cBus(const std::vector<I2cBus>& buses, const I2cBus& wanted);

/// Why FindI2cBus finds none: there is none, or several, which are then listed.
std::string NoI2cBusLine(const std::vector<I2cBus>& buses, const I2cBus& wanted);

/// A mainboard's own bus, where memory modules answer at the addresses of the EEPROMs.
inline bool IsMainboardBus(const I2cBus& bus) {
    return bus.name.starts_with("SMBus");
}

/// A driver of the kernel that has taken a device.
struct I2cDriver {
    std::string name;
    std::string device;  ///< its entry in /sys, such as "7-0050"
};

enum class I2cDirection : std::uint8_t { Write, Read };

struct I2cMessage {
    std::uint8_t device;  ///< seven bits
    I2cDirection direction;
    std::span<std::uint8_t> bytes;
};

/// One bus is open at a time, for this program alone. Its clock sleeps where it waits.
class KernelI2c : public Clock {
  public:
    /// In the order of their numbers, whether or not they can be opened.
    virtual std::vector<I2cBus> Buses() = 0;

    /// Nothing where no driver has taken the device.
    virtual std::optional<I2cDriver> DriverAt(const I2cBus& bus, std::uint8_t device) = 0;

    /// Opens the bus within a second. A refusal is told by Failure().
    virtual void Open(const I2cBus& bus) = 0;

    /// Harmless when none is open.
    virtual void Close() = 0;

    /// One line that says why the last Open failed and what to do about it; else empty.
    virtual const std::string& Failure() const = 0;

    /// Whether the last Open failed because another program has the bus.
    virtual bool IsTaken() const = 0;

    /// Sends the messages with a repeated start between them and a stop at the end; 0 or a negated
    /// errno, -EPROTO where only some of them were sent.
    virtual int Transfer(std::span<const I2cMessage> messages) = 0;
};

/// A system without any.
KernelI2c& NoKernelI2c();

}  // namespace tarnwell
