// Measures every edge on the wire against the bus times of the I2C standard mode.
#pragma once

#include <cstdint>

#include "i2c/parallel/BusTiming.h"

namespace tarnwell::bench {

class WireTimes {
  public:
    /// The levels from `now` on.
    void Levels(bool scl, bool sda, BusTime now);

    /// Times that were shorter than they may be.
    std::uint64_t Violations() const { return violations_; }

    /// The share of SCL's periods, from rise to rise and from fall to fall, within 2 % of 10 us.
    double ShareNearLimit() const;

  private:
    static constexpr BusTime kLongAgo{-1'000'000'000};

    void SclRises(BusTime now);
    void SclFalls(BusTime now);
    void SdaChanges(BusTime now);
    void Expect(BusTime since, BusTime now, BusTime atLeast);
    void Period(BusTime since, BusTime now);

    bool scl_ = true;
    bool sda_ = true;
    BusTime rise_ = kLongAgo;
    BusTime fall_ = kLongAgo;
    BusTime sdaChange_ = kLongAgo;
    BusTime start_ = kLongAgo;
    BusTime stop_ = kLongAgo;
    std::uint64_t violations_ = 0;
    std::uint64_t periods_ = 0;
    std::uint64_t nearPeriods_ = 0;
};

}  // namespace tarnwell::bench
