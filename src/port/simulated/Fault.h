// What can be made to go wrong in the simulated television, and when it begins.
#pragma once

#include <cstdint>

namespace tarnwell {

/// The two EEPROMs of a television.
enum class Chip { Primary, Secondary };

/// What the simulation counts. A fault begins at one of these.
enum class WireEvent {
    Access,      ///< a byte read from or written to the port, before it takes effect
    Clock,       ///< a rising edge of SCL
    Byte,        ///< the eighth rising edge of a byte, before its acknowledge
    Read,        ///< a device has acknowledged that it will be read from
    Start,       ///< a start condition, repeated or not
    Stop,        ///< a stop condition
    WriteCycle,  ///< a stop at which a device stores what was written to it, before it does
};
inline constexpr int kWireEvents = 7;

/// The `count`-th event of its kind from the moment the fault is set; 0 is at once.
struct Moment {
    WireEvent event = WireEvent::Access;
    std::uint64_t count = 0;
};

enum class FaultKind {
    SclStuckLow,
    SdaStuckLow,
    SclStuckHigh,
    SdaStuckHigh,
    LinesJoined,      ///< SCL and SDA are one line
    InputsInverted,   ///< both sensed levels are complemented
    SdaMisread,       ///< the level sensed of SDA is complemented
    AdapterGone,      ///< the port works, its status bits read 1 and nothing drives the bus
    DriveLost,        ///< the same, but the lines are sensed
    PortFails,        ///< the access fails, and every later one and each Claim
    DeviceSilent,     ///< the device answers nothing and takes nothing
    LostClocks,       ///< the device does not count the next `clocks` clocks
    LateAcknowledge,  ///< the device acknowledges at the `samples`-th clock after a byte
    LostWrite,        ///< acknowledged, but not stored
    WrongWrite,       ///< each byte is stored with the bits of `mask` complemented
    ShortPages,       ///< a page has 16 bytes: a write beyond its end goes on at its beginning
    NoPageWrites,     ///< a write of more than one byte is acknowledged, but not stored
    FlippedBit,       ///< the byte at `address` (one for each chip) is read with the bits of `mask`
                      ///< complemented
};

/// One fault. The members after `begins` matter only to the kinds that name them.
struct Fault {
    FaultKind kind{};
    Moment begins{};
    std::uint64_t accesses = 0;  ///< how many the lines' and inputs' kinds last; 0 is for good
    Chip chip = Chip::Primary;   ///< the device kinds
    std::uint16_t address = 0;   ///< FlippedBit
    std::uint8_t mask = 0x01;    ///< WrongWrite, FlippedBit
    std::uint8_t samples = 2;    ///< LateAcknowledge
    std::uint8_t clocks = 1;     ///< LostClocks
};

}  // namespace tarnwell
