// The two lines of the bus on the pins of a parallel port: driven and looked at.
#pragma once

#include <cstdint>

#include "i2c/parallel/BusTiming.h"
#include "i2c/parallel/PinMapping.h"

namespace tarnwell {

/// Keeps the bus times, tells each access to the trace, and notes what was seen amiss.
class PortLines {
  public:
    PortLines(Port& port, Clock& clock, BusTrace& trace)
        : port_(port), clock_(clock), trace_(trace), timing_(clock) {}

    void Claim(std::uint16_t baseAddress);
    void Release();
    std::uint16_t BaseAddress() const { return baseAddress_; }

    void Assign(const PinSetup& pins);
    const PinSetup& Pins() const { return pins_; }

    /// 0 is low, 1 or more is high, a negative level changes nothing.
    void Drive(BusLine line, std::int16_t level);

    /// The levels that the port's own data register gives the lines.
    LineLevels InRegister();

    /// One read of the status register.
    std::uint8_t Sense();

    /// Both lines by the same read, raw: a set bit is a high line.
    LineLevels Levels();
    bool AreIdle() { return Levels() == LineLevels{}; }

    /// A read of the status register at the end of SCL's high time. Zeros that are read from a
    /// clock line that is stuck would pass as data, so a low SCL is amiss.
    std::uint8_t Sample();

    /// The same of a bit or a start condition of our own: amiss, too, if SDA is not what was sent.
    void SampleSent(Level sda);

    /// Right before a start condition: amiss unless both lines are high, as none forms then.
    void SampleBeforeStart();

    /// Whether something was amiss since the claim or the last ForgetAmiss.
    bool Amiss() const { return amiss_; }
    void ForgetAmiss() { amiss_ = false; }

    bool PortFailed() const { return !port_.Failure().empty(); }

    /// Waits for the end of SCL's high time.
    void WaitToSample() { timing_.WaitToSample(); }

    /// Waits for the end of the bus free time after a stop.
    void WaitUntilFree() { timing_.WaitUntilFree(); }

    /// Whether a line was driven low last.
    bool HoldsALine() const { return timing_.HoldsALine(); }

  private:
    std::uint8_t ReadRegister();
    LineLevels Seen(std::uint8_t status) const;

    Port& port_;
    Clock& clock_;
    BusTrace& trace_;
    BusTiming timing_;
    PinSetup pins_ = DecodePinOptions(kDefaultPinOptions);
    std::uint16_t baseAddress_ = 0;
    bool amiss_ = false;
};

}  // namespace tarnwell
