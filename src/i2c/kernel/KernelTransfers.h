// The transfers that an EEPROM needs, in pieces that the adapter can do.
#pragma once

#include <cerrno>

#include "core/run/StopRequest.h"
#include "i2c/EepromBus.h"
#include "i2c/KernelI2c.h"

namespace tarnwell {

/// What the bus itself has, told as errnos that no driver of a bus gives.
inline constexpr int kSdaHeld = -ENOTUNIQ;   ///< every address answers, and all bytes are zeros
inline constexpr int kClockHeld = -EDEADLK;  ///< SCL stays low: the kernel has waited for it

/// Results are 0, one of the above or a negated errno.
class KernelTransfers {
  public:
    KernelTransfers(KernelI2c& kernel, const StopRequest& stop) : kernel_(kernel), stop_(stop) {}

    /// Nothing is known of another adapter.
    void ForgetLimits() { limits_ = {}; }

    /// A read of one byte at the place where the device stands: it acknowledges or not, and no
    /// device takes it for a write.
    int ReadCurrent(std::uint8_t device) {
        std::uint8_t byte = 0;
        return ReadCurrent(device, byte);
    }

    /// The same of an address that no device has: kSdaHeld where that is acknowledged. 0 where it
    /// is not, unless the adapter is gone or the clock is held.
    int LookAtSda();

    /// Whether address and read go out without a stop between them, which would let a device with
    /// one-byte addresses store the second address byte. Asks the adapter once, and the device
    /// with it.
    int FindWhetherItCombines(std::uint8_t device, bool& combines);

    /// Fills `bytes` from a two-byte address; as many as one transfer brings, which `done` tells.
    /// One that fails is tried again at half its length, down to 16 bytes, then at one.
    int Read(std::uint8_t device, unsigned address, std::span<std::uint8_t> bytes,
             std::size_t& done);

    /// Fills all of `bytes`. A signal ends the program between two transfers.
    int ReadAll(std::uint8_t device, unsigned address, std::span<std::uint8_t> bytes);

    /// Fills `bytes` from a one-byte address.
    int ReadByShortAddress(std::uint8_t device, std::uint8_t address,
                           std::span<std::uint8_t> bytes);

    /// Asks the device until its write cycle is over; -EALREADY where that does not come.
    int WaitUntilWritten(std::uint8_t device);

    /// Writes as many of `bytes` as one message takes, and waits until they are
    /// written.
    int Write(std::uint8_t device, unsigned address, std::span<const std::uint8_t> bytes,
              std::size_t& done);

  private:
    /// What an adapter can do, as far as it has not shown that it cannot do more.
    struct Limits {
        std::optional<bool> combines;
        std::size_t read = 8192;  ///< the kernel's own limit of a message
        std::size_t write = kPageBytes;
    };

    int ReadCurrent(std::uint8_t device, std::uint8_t& byte);

    /// Sends again what lost the bus to another master, as long as a write cycle may take.
    int Send(std::span<const I2cMessage> messages);
    int SendOnce(std::span<const I2cMessage> messages);
    int SendAddressed(std::uint8_t device, std::span<std::uint8_t> address,
                      std::span<std::uint8_t> bytes);

    KernelI2c& kernel_;
    const StopRequest& stop_;
    Limits limits_;
};

/// Whether the device did not acknowledge, as adapters tell it; some only know that it failed.
bool IsNoAcknowledge(int error);

/// Whether the adapter is gone.
bool IsGone(int error);

}  // namespace tarnwell
