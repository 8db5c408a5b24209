// What the ports of the operating system have in common: one claim, and failures that stay.
#pragma once

#include <string>

#include "i2c/Port.h"
#include "port/system/SystemCalls.h"

namespace tarnwell {

/// Only the three port addresses can be claimed, and of a claimed port only the data register
/// and the status register be reached.
class RealPort : public Port {
  public:
    void Claim(std::uint16_t baseAddress) final;
    void Release() final;
    const std::string& Failure() const final { return failure_; }
    bool IsTaken() const final { return taken_; }
    std::uint8_t DlPortReadPortUchar(std::uint16_t address) final;
    void DlPortWritePortUchar(std::uint16_t address, std::uint8_t value) final;

  protected:
    explicit RealPort(SystemCalls& system) : system_(system) {}

    SystemCalls& System() const { return system_; }
    std::uint16_t BaseAddress() const { return baseAddress_; }

    /// Ends the use of the port until the next claim. The first line is the one that is told.
    void Fail(const std::string& line);

    /// The same for a port that another program has.
    void FailTaken(const std::string& line);

  private:
    /// Opens the port until `deadline`, or fails.
    virtual void Take(std::chrono::nanoseconds deadline) = 0;

    /// Closes what is open, after a failure too; 0 or a negated errno. Harmless when nothing is.
    virtual int GiveBack() = 0;

    /// 0 or a negated errno; for the data register `offset` is 0, for the status register 1.
    virtual int ReadRegister(std::uint16_t offset, std::uint8_t& value) = 0;
    virtual int WriteData(std::uint8_t value) = 0;

    /// The device file in use.
    virtual std::string Path() const = 0;

    void FailAccess(int error);

    SystemCalls& system_;
    std::uint16_t baseAddress_ = 0;
    bool usable_ = false;
    bool taken_ = false;
    std::string failure_;
};

}  // namespace tarnwell
