// The port by whichever way the kernel offers for it.
#pragma once

#include "port/real/DevPort.h"
#include "port/real/PpdevPort.h"

namespace tarnwell {

/// Ppdev; for an address at which the kernel's driver has no port, /dev/port where it may serve.
/// Decided at each claim.
class AutoPort final : public Port {
  public:
    explicit AutoPort(SystemCalls& system);

    void Claim(std::uint16_t baseAddress) override;
    void Release() override { active_->Release(); }
    const std::string& Failure() const override { return active_->Failure(); }
    bool IsTaken() const override { return active_->IsTaken(); }
    std::uint8_t DlPortReadPortUchar(std::uint16_t address) override {
        return active_->DlPortReadPortUchar(address);
    }
    void DlPortWritePortUchar(std::uint16_t address, std::uint8_t value) override {
        active_->DlPortWritePortUchar(address, value);
    }

  private:
    SystemCalls& system_;
    PpdevPort ppdev_;
    DevPort devPort_;
    Port* active_ = &ppdev_;
};

}  // namespace tarnwell
