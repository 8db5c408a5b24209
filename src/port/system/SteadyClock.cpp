// The time of the real ports.
#include "port/system/SteadyClock.h"

namespace tarnwell {

BusTime SteadyClock::Now() {
    return std::chrono::steady_clock::now().time_since_epoch();
}

void SteadyClock::WaitUntil(BusTime time) {
    while (Now() < time) {
    }
}

}  // namespace tarnwell
