// The bus times of the I2C standard mode, kept on the wire however fast the port is.
#pragma once

#include <algorithm>
#include <cstdint>

#include "i2c/BusTrace.h"
#include "i2c/Port.h"

namespace tarnwell {

/// Shortest times of the bus: NXP user manual UM10204 (the I2C bus), table 10, standard
/// mode; where the 24C64's data sheet asks for more (stop set-up), the longer of the two.
namespace bustimes {
using namespace std::chrono_literals;
inline constexpr BusTime kLow = 4700ns;         ///< t_LOW
inline constexpr BusTime kHigh = 4000ns;        ///< t_HIGH
inline constexpr BusTime kPeriod = 10000ns;     ///< 1 / f_SCL
inline constexpr BusTime kStartSetUp = 4700ns;  ///< t_SU;STA
inline constexpr BusTime kStartHold = 4000ns;   ///< t_HD;STA
inline constexpr BusTime kStopSetUp = 4700ns;   ///< t_SU;STO
inline constexpr BusTime kBusFree = 4700ns;     ///< t_BUF
inline constexpr BusTime kDataSetUp = 250ns;    ///< t_SU;DAT
inline constexpr BusTime kDataHold = 300ns;     ///< covers the fall of SCL (t_f)
}  // namespace bustimes

/// Waits before each edge until the edges before it are old enough.
///
/// Where within a port access the level changes on the wire is not known. So an earlier edge counts
/// from the end of its access and the next access does not begin before the time is over: whatever
/// the port, no time gets shorter than it must be, and the accesses in between are not waited
/// again.
class BusTiming {
  public:
    explicit BusTiming(Clock& clock) : clock_(clock) {}

    /// Called right before the access that drives `line` to `level`.
    void WaitToDrive(BusLine line, Level level);

    /// Called right after that access.
    void Driven(BusLine line, Level level);

    /// Waits for the end of SCL's high time: until a sample and the two accesses that then pull
    /// SCL low have just the time that they take.
    void WaitToSample();

    /// Waits for the end of the time before a start condition, as far as a sample and the two
    /// accesses that then pull SDA low still fit.
    void WaitToSampleStart();

    /// Waits for the end of the bus free time after a stop.
    void WaitUntilFree() { clock_.WaitUntil(stop_ + bustimes::kBusFree); }

    /// Tells how long a port read takes, as measured; the shortest one counts.
    void NoteReadTime(BusTime duration) { readTime_ = std::min(readTime_, duration); }

    /// Whether a line was driven low last.
    bool HoldsALine() const {
        return (sclKnown_ && scl_ == Level::Low) || (sdaKnown_ && sda_ == Level::Low);
    }

    /// Forgets the levels, after accesses that may not have reached the wire.
    void Forget();

  private:
    BusTime EarliestSclFall() const;
    BusTime EarliestStart() const;

    Clock& clock_;
    bool sclKnown_ = false;
    bool sdaKnown_ = false;
    Level scl_ = Level::High;
    Level sda_ = Level::High;
    BusTime sclRise_{};
    BusTime sclFall_{};
    BusTime sdaEdge_{};  ///< the last change of SDA
    BusTime start_{};    ///< the last start condition
    BusTime stop_{};     ///< the last stop condition
    BusTime readTime_ = std::chrono::milliseconds(1);
};

}  // namespace tarnwell
