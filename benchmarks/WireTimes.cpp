#include "WireTimes.h"

namespace tarnwell::bench {

using namespace bustimes;

void WireTimes::Levels(bool scl, bool sda, BusTime now) {
    if (scl_ && !scl)
        SclFalls(now);
    if (sda != sda_)
        SdaChanges(now);
    if (!scl_ && scl)
        SclRises(now);
}

double WireTimes::ShareNearLimit() const {
    return static_cast<double>(nearPeriods_) / static_cast<double>(periods_);
}

void WireTimes::SclRises(BusTime now) {
    scl_ = true;
    Expect(fall_, now, kLow);
    Expect(sdaChange_, now, kDataSetUp);
    Period(rise_, now);
    rise_ = now;
}

void WireTimes::SclFalls(BusTime now) {
    scl_ = false;
    Expect(rise_, now, kHigh);
    Expect(start_, now, kStartHold);
    Period(fall_, now);
    fall_ = now;
}

void WireTimes::SdaChanges(BusTime now) {
    sda_ = !sda_;
    sdaChange_ = now;
    if (!scl_)
        return;
    if (sda_) {
        Expect(rise_, now, kStopSetUp);
        stop_ = now;
    } else {
        Expect(rise_, now, kStartSetUp);
        Expect(stop_, now, kBusFree);
        start_ = now;
    }
}

void WireTimes::Expect(BusTime since, BusTime now, BusTime atLeast) {
    if (now - since < atLeast)
        ++violations_;
}

void WireTimes::Period(BusTime since, BusTime now) {
    Expect(since, now, kPeriod);
    if (since == kLongAgo)
        return;
    ++periods_;
    if (now - since <= kPeriod + kPeriod / 50)
        ++nearPeriods_;
}

}  // namespace tarnwell::bench
