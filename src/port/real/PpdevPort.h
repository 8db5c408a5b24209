// The port by the kernel's module ppdev.
#pragma once

#include "port/real/ParportDevice.h"
#include "port/real/RealPort.h"

namespace tarnwell {

/// One system call an access, on the /dev/parportN at the claimed address.
class PpdevPort final : public RealPort {
  public:
    explicit PpdevPort(SystemCalls& system) : RealPort(system), device_(system) {}
    ~PpdevPort() override { Release(); }

  private:
    void Take(std::chrono::nanoseconds deadline) override;
    int GiveBack() override { return device_.Release(); }
    int ReadRegister(std::uint16_t offset, std::uint8_t& value) override;
    int WriteData(std::uint8_t value) override;
    std::string Path() const override { return path_; }

    ParportDevice device_;
    std::string path_;
};

}  // namespace tarnwell
