// The I2C buses of the running kernel, by its module i2c-dev.
#pragma once

#include "i2c/KernelI2c.h"
#include "port/system/SystemCalls.h"

namespace tarnwell {

/// The kernel lets every program use a bus at once: an open one is locked against others of ours.
class LinuxI2c final : public KernelI2c {
  public:
    explicit LinuxI2c(SystemCalls& system) : system_(system) {}

    BusTime Now() override { return system_.Now(); }
    void WaitUntil(BusTime time) override;
    std::vector<I2cBus> Buses() override;
    std::optional<I2cDriver> DriverAt(const I2cBus& bus, std::uint8_t device) override;
    void Open(const I2cBus& bus) override;
    void Close() override { file_.Close(); }
    const std::string& Failure() const override { return failure_; }
    bool IsTaken() const override { return taken_; }
    int Transfer(std::span<const I2cMessage> messages) override;

  private:
    void Fail(std::string line);
    bool SendsPlainMessages();
    std::string OpenLine(const I2cBus& bus, int error) const;
    std::string BusesFolder() const { return system_.SysFolder() + "/bus/i2c/devices/"; }

    SystemCalls& system_;
    OpenFile file_;
    std::string failure_;
    bool taken_ = false;
};

}  // namespace tarnwell
