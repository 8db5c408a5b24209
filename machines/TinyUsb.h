// An I2C-Tiny-USB with the simulated television at its lines.
#pragma once

#include <optional>
#include <span>
#include <vector>

#include "port/simulated/SimulatedTelevision.h"

namespace tarnwell {

/// The eight bytes that begin a control transfer.
struct ControlRequest {
    std::uint8_t type;
    std::uint8_t request;
    std::uint16_t value;
    std::uint16_t index;
    std::uint16_t length;

    bool Reads() const { return (type & 0x80) != 0; }
};

/// Knows the commands that the kernel's driver sends, as the adapter's firmware takes them: what it
/// was asked to read and is not acknowledged brings no byte.
class TinyUsb {
  public:
    TinyUsb();

    /// What is sent back, or took place without; nothing where the adapter stalls.
    std::optional<std::vector<std::uint8_t>> Answer(const ControlRequest& request,
                                                    std::span<const std::uint8_t> data);

    /// The longest transfer of the driver's that it takes.
    void SetLongest(int bytes) { longest_ = bytes; }

    SimulatedTelevision& TheTelevision() { return television_; }

  private:
    std::vector<std::uint8_t> Transfer(const ControlRequest& request,
                                       std::span<const std::uint8_t> data);
    void Drive(bool scl, bool sda);
    bool Sda();
    void Start();
    void Stop();
    bool Clock(bool sda);
    bool SendByte(std::uint8_t byte);
    std::uint8_t ReadByte(bool acknowledge);

    SimulatedTelevision television_;
    std::uint8_t status_ = 0;
    int longest_ = 0xFFFF;
};

}  // namespace tarnwell
