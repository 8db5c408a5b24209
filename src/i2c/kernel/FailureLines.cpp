#include "i2c/kernel/FailureLines.h"

#include <array>
#include <cerrno>
#include <cstring>

#include "i2c/kernel/KernelTransfers.h"

namespace tarnwell {

namespace {

/// What to do where an errno says what happened.
struct Cause {
    int error;
    std::string_view line;
};

constexpr std::string_view kGone = "The adapter is gone. Plug it in again and repeat the command.";
constexpr std::string_view kSilent =
    "The device does not acknowledge. Check its power, the wires and their pull-up resistors, and "
    "which EEPROM is selected.";
constexpr std::string_view kStuck =
    "The bus is stuck: a line stays low, or the clock is held. Switch the device off and on; if "
    "that does not help, look for a short to ground or a missing pull-up resistor.";
constexpr std::string_view kLost =
    "Another master took the bus each time. Repeat the command when it has finished.";
constexpr std::string_view kCannot =
    "The adapter cannot send the messages that an EEPROM needs. Choose another adapter.";
constexpr std::array kCauses{
    Cause{-kSdaHeld, "Every address answers: SDA is held low."},
    Cause{-kClockHeld,
          "The clock is held: SCL stays low. Switch the device off and on; if that does not help, "
          "look for a short of SCL to ground or to SDA, or a missing pull-up resistor."},
    Cause{ENXIO, kSilent},
    Cause{EREMOTEIO, kSilent},
    Cause{ETIMEDOUT, kStuck},
    Cause{EBUSY, kStuck},
    Cause{EAGAIN, kLost},
    Cause{EOPNOTSUPP, kCannot},
    Cause{EINVAL, kCannot},
    Cause{EPROTO, "The adapter transferred a part only. Repeat the command."},
    Cause{EALREADY,
          "The device did not end its write cycle within 50 ms. Check its power and its write "
          "protection, and repeat the command."},
};

}  // namespace

std::string FailureLine(const I2cBus& bus, int error) {
    if (IsGone(error))
        return std::string(kGone);
    for (const Cause& cause : kCauses) {
        if (cause.error == -error)
            return std::string(cause.line);
    }
    return bus.node + ": " + std::strerror(-error) +
           ". Some adapters say so of a device that does not acknowledge, too. Check the adapter, "
           "the wires and the device's power.";
}

}  // namespace tarnwell
