// Choosing one of the kernel's I2C buses: which there are, and what answers on one.
#pragma once

#include "core/run/StopRequest.h"
#include "i2c/KernelI2c.h"

namespace tarnwell {

/// Nothing is sent over any bus but by Look. Texts of several lines have line feeds between them.
class BusChooser {
  public:
    BusChooser(KernelI2c& kernel, const StopRequest& stop)
        : kernel_(kernel), stop_(stop), buses_(kernel.Buses()) {}

    const std::vector<I2cBus>& Buses() const { return buses_; }

    /// Lists the buses anew; whether they are others now.
    bool Refresh();

    /// What to know of a bus before it is looked at, or what to do where none is selected.
    std::string Advice(const I2cBus* selected) const;

    /// Not where memory modules may be what would answer.
    static bool MayLook(const I2cBus& bus) { return !IsMainboardBus(bus); }

    /// What answers at the EEPROMs' addresses, found out by a read of one byte of each and of an
    /// address that nothing has, or why that cannot be found out.
    std::string Look(const I2cBus& bus);

    /// Why the program cannot work on the bus, and what to do about it; empty if it can.
    std::string Obstacle(const I2cBus& bus);

  private:
    std::string AnswerOf(const I2cBus& bus, std::uint8_t device);

    KernelI2c& kernel_;
    const StopRequest& stop_;
    std::vector<I2cBus> buses_;
};

}  // namespace tarnwell
