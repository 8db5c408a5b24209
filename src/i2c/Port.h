// The wire as the bus protocol sees it: one parallel port, byte by byte, and a clock.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>

namespace tarnwell {

/// A point of the wire's time, counted from an origin of the clock's own.
using BusTime = std::chrono::nanoseconds;

/// The time by which the bus is driven.
class Clock {
  public:
    virtual ~Clock() = default;

    virtual BusTime Now() = 0;

    /// Returns when `Now()` is `time` or later, without giving up the processor.
    virtual void WaitUntil(BusTime time) = 0;
};

/// Byte access to the PC's parallel ports by I/O address.
///
/// Accesses reach the wire only between a successful Claim and the Release that follows it;
/// otherwise, and from the first access that fails, writes do nothing and reads give 0xFF.
class Port {
  public:
    virtual ~Port() = default;

    /// Takes the port whose data register is at `baseAddress` for this program, within a second.
    /// A refusal is told by Failure(). An earlier claim's failure is forgotten.
    virtual void Claim(std::uint16_t baseAddress) = 0;

    /// Gives the claimed port back; harmless when there is none.
    virtual void Release() = 0;

    /// One line that says what failed since the last Claim and what to do about it;
    /// empty when nothing did.
    virtual const std::string& Failure() const = 0;

    /// Whether the last claim failed because another program has the port.
    virtual bool IsTaken() const { return false; }

    virtual std::uint8_t DlPortReadPortUchar(std::uint16_t address) = 0;
    virtual void DlPortWritePortUchar(std::uint16_t address, std::uint8_t value) = 0;
};

}  // namespace tarnwell
