// The simulated television in real time, behind a port whose accesses cost what they are told to.
#pragma once

#include "WireTimes.h"
#include "port/simulated/SimulatedTelevision.h"
#include "port/system/SteadyClock.h"

namespace tarnwell::bench {

/// An access that costs nothing still takes what the simulation behind it takes.
class RealTimePort final : public Port {
  public:
    explicit RealTimePort(BusTime accessCost)
        : accessCost_(accessCost), television_({.accessCost = BusTime(0)}) {}

    void Claim(std::uint16_t baseAddress) override { television_.Claim(baseAddress); }
    void Release() override { television_.Release(); }
    const std::string& Failure() const override { return television_.Failure(); }
    std::uint8_t DlPortReadPortUchar(std::uint16_t address) override;

    /// The wire follows in the middle of the access.
    void DlPortWritePortUchar(std::uint16_t address, std::uint8_t value) override;

    SteadyClock& TheClock() { return clock_; }
    const SimulatedTelevision& Wire() const { return television_; }
    const WireTimes& Times() const { return times_; }

  private:
    BusTime accessCost_;
    SimulatedTelevision television_;
    SteadyClock clock_;
    WireTimes times_;
};

}  // namespace tarnwell::bench
