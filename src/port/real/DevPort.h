// The port by /dev/port, for a kernel without the module ppdev.
#pragma once

#include "port/real/ParportDevice.h"
#include "port/real/RealPort.h"

namespace tarnwell {

/// Which addresses may be poked.
enum class PokedAddresses {
    Listed,  ///< those where /proc/ioports lists a parallel port
    All,     ///< each of the three
};

/// Locks /dev/port against a second instance. Where ppdev has the port too, it is claimed there
/// as well, so that an instance that uses ppdev is kept out.
class DevPort final : public RealPort {
  public:
    DevPort(SystemCalls& system, PokedAddresses addresses)
        : RealPort(system), addresses_(addresses), parport_(system) {}
    ~DevPort() override { Release(); }

    /// True if the process may use /dev/port and /proc/ioports lists a parallel port there.
    static bool MayServe(SystemCalls& system, std::uint16_t baseAddress);

  private:
    void Take(std::chrono::nanoseconds deadline) override;
    int GiveBack() override;
    int ReadRegister(std::uint16_t offset, std::uint8_t& value) override;
    int WriteData(std::uint8_t value) override;
    std::string Path() const override { return System().DevFolder() + "/port"; }

    PokedAddresses addresses_;
    ParportDevice parport_;
    OpenFile file_;
};

}  // namespace tarnwell
