// The time of the real ports.
#pragma once

#include "i2c/Port.h"

namespace tarnwell {

/// The system's steady time.
class SteadyClock final : public Clock {
  public:
    BusTime Now() override;
    void WaitUntil(BusTime time) override;
};

}  // namespace tarnwell
