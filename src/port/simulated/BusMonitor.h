// Reads along on the simulated bus and keeps what it saw, for tests.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "i2c/Port.h"

namespace tarnwell {

/// A condition or a byte on the wire, at the time it was complete.
struct BusEvent {
    enum class Kind { Start, RepeatedStart, Stop, Byte, Fragment };

    Kind kind;
    BusTime time;
    std::uint8_t value = 0;   ///< of a byte; of a fragment, its number of bits
    bool fromDevice = false;  ///< of a byte

    /// Of a byte: its acknowledge clocks, '+' where SDA was low and '-' where it was high.
    std::string acknowledges{};
};

/// "S A0+ 12+ 34+ Sr A1+ <5A+ <5B P": start, bytes with their acknowledges (those from the
/// device behind '<'), repeated start, stop. "~3" are three bits of a byte that was broken off.
std::string ToText(const std::vector<BusEvent>& events);

/// A change of a line or a read of the status register, with the levels that follow it.
struct WireSample {
    enum class Cause { Scl, Sda, Sensed };

    Cause cause;
    bool scl;
    bool sda;
    BusTime time;
};

/// Splits the edges of the bus into conditions and bytes. Always in step; records on demand.
class BusMonitor {
  public:
    void OnStart(BusTime now);
    void OnStop(BusTime now);

    /// True when this is the eighth bit of a byte.
    bool OnRisingEdge(bool sda);

    /// True when this ends the acknowledge of a select byte for reading.
    bool OnFallingEdge(BusTime now);

    void Record(bool on) { recording_ = on; }
    void Clear() { events_.clear(); }
    const std::vector<BusEvent>& Events() const { return events_; }

  private:
    void EndFragment(BusTime now);
    void EndByte(BusTime now);
    bool AddAcknowledge();

    std::vector<BusEvent> events_;
    bool recording_ = false;
    bool busy_ = false;
    bool selecting_ = false;
    bool fromDevice_ = false;
    bool awaitingAcknowledge_ = false;
    bool sda_ = true;
    bool clockRose_ = false;
    std::uint8_t shift_ = 0;
    std::uint8_t bits_ = 0;
};

}  // namespace tarnwell
