// A parallel port with the adapter and a television's two EEPROMs on it, all in memory.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "i2c/Port.h"
#include "port/simulated/BusMonitor.h"
#include "port/simulated/Eeprom24C64.h"
#include "port/simulated/Fault.h"
#include "port/system/SteadyClock.h"

namespace tarnwell {

/// What is on the adapter's bus.
enum class Television { Connected, Absent };

enum class Pace {
    Virtual,  ///< only accesses and waits move the time, and they do so at once
    Real,     ///< the time is the system's steady time; accesses and waits last
};

struct Simulation {
    BusTime accessCost{1'000};      ///< what each port access adds to the time
    BusTime writeCycle{3'500'000};  ///< from a stop until the device answers again
    Television television = Television::Connected;
    Pace pace = Pace::Virtual;
};

/// The adapter with its default wiring (SCL driven low by data bit 0, SDA by data bit 1; SCL
/// sensed on status bit 4, SDA on status bit 5) and an open-drain bus with two 24C64s at 0xA0
/// and 0xA2. It sits at the address that was claimed.
///
/// An access takes `accessCost` of the time and takes effect at its end.
/// Lines change at once, devices answer at the edge, and no device stretches the clock.
class SimulatedTelevision : public Port, public Clock {
  public:
    explicit SimulatedTelevision(Simulation simulation = {});

    void Claim(std::uint16_t baseAddress) override;
    void Release() override;
    const std::string& Failure() const final { return failure_; }
    std::uint8_t DlPortReadPortUchar(std::uint16_t address) final;
    void DlPortWritePortUchar(std::uint16_t address, std::uint8_t value) final;

    BusTime Now() final;
    void WaitUntil(BusTime time) final;

    EepromImage& Memory(Chip chip) { return Device(chip).Memory(); }
    void SetWriteCycle(BusTime writeCycle) { simulation_.writeCycle = writeCycle; }

    /// The levels on the wire.
    bool Scl() const { return scl_; }
    bool Sda() const { return sda_; }

    /// Sets a fault, which stays until ClearFaults or for as long as it says.
    void Inject(const Fault& fault);
    void ClearFaults();

    /// The television is switched off and on: both devices wait for a start.
    void PowerCycle();

    /// How many events of this kind there were since the beginning.
    std::uint64_t Count(WireEvent event) const { return counts_[Index(event)]; }

    /// Starts to keep what happens on the wire, with nothing kept so far.
    void Record();
    const std::vector<BusEvent>& Events() const { return monitor_.Events(); }
    const std::vector<WireSample>& Samples() const { return samples_; }

  protected:
    /// Makes the claim, or the rest of it, fail with this line.
    void Fail(std::string line);

    /// A device will be read from; what it holds has yet to be sent.
    virtual void BeginRead() {}

  private:
    struct AdapterFaults {
        bool sclStuckLow = false;
        bool sdaStuckLow = false;
        bool sclStuckHigh = false;
        bool sdaStuckHigh = false;
        bool linesJoined = false;
        bool inputsInverted = false;
        bool sdaMisread = false;
        bool adapterGone = false;
        bool driveLost = false;
        bool portFails = false;
    };

    struct Levels {
        bool scl;
        bool sda;
    };

    static constexpr std::size_t Index(WireEvent event) { return static_cast<std::size_t>(event); }
    static bool AdapterFaults::*AdapterFault(FaultKind kind);
    static constexpr std::uint32_t kNoRegister = 0x10000;

    Eeprom24C64& Device(Chip chip) { return devices_[static_cast<std::size_t>(chip)]; }
    void BeginAccess();
    std::uint8_t Sense();

    Levels Driven() const;
    Levels Disturbed(Levels levels) const;
    void Settle();
    void SclFalls();
    void SclRises();
    void SdaChanges();
    void Start();
    void Stop();
    void AddSample(WireSample::Cause cause);

    void CountEvent(WireEvent event);
    void BeginFaults(WireEvent event);
    void EndPassingFaults();
    void Begin(const Fault& fault);

    Simulation simulation_;
    SteadyClock steadyClock_;
    BusTime now_{0};
    std::uint32_t dataRegister_ = kNoRegister;
    std::uint8_t data_ = 0;
    bool scl_ = true;
    bool sda_ = true;
    bool recording_ = false;
    AdapterFaults faults_{};
    bool faulty_ = false;
    std::array<std::uint64_t, kWireEvents> counts_{};
    std::vector<Fault> pending_;      // each with its moment counted from the beginning
    std::uint64_t passingUntil_ = 0;  // the access at which passing faults end
    std::array<Eeprom24C64, 2> devices_;
    BusMonitor monitor_;
    std::vector<WireSample> samples_;
    std::string failure_;
};

}  // namespace tarnwell
