#include "i2c/parallel/BusTiming.h"

namespace tarnwell {

using namespace bustimes;

BusTime BusTiming::EarliestSclFall() const {
    return std::max({sclRise_ + kHigh, sclFall_ + kPeriod, start_ + kStartHold});
}

BusTime BusTiming::EarliestStart() const {
    return std::max(sclRise_ + kStartSetUp, stop_ + kBusFree);
}

void BusTiming::WaitToDrive(BusLine line, Level level) {
    if (line == BusLine::Scl) {
        if (sclKnown_ && level == scl_)
            return;
        clock_.WaitUntil(level == Level::Low ? EarliestSclFall()
                                             : std::max({sclFall_ + kLow, sclRise_ + kPeriod,
                                                         sdaEdge_ + kDataSetUp}));
        return;
    }
    if (sdaKnown_ && level == sda_)
        return;
    if (scl_ == Level::Low)
        clock_.WaitUntil(sclFall_ + kDataHold);
    else if (level == Level::Low)
        clock_.WaitUntil(EarliestStart());
    else
        clock_.WaitUntil(std::max(sclRise_ + kStopSetUp, start_ + kStartHold));
}

void BusTiming::Driven(BusLine line, Level level) {
    const BusTime now = clock_.Now();
    if (line == BusLine::Scl) {
        if (!sclKnown_ || level != scl_)
            (level == Level::High ? sclRise_ : sclFall_) = now;
        scl_ = level;
        sclKnown_ = true;
        return;
    }
    if (sdaKnown_ && level == sda_)
        return;
    sdaEdge_ = now;
    if (scl_ == Level::High)
        (level == Level::Low ? start_ : stop_) = now;
    sda_ = level;
    sdaKnown_ = true;
}

void BusTiming::WaitToSample() {
    clock_.WaitUntil(EarliestSclFall() - 2 * readTime_);
}

void BusTiming::WaitToSampleStart() {
    clock_.WaitUntil(EarliestStart() - 2 * readTime_);
}

void BusTiming::Forget() {
    sclKnown_ = false;
    sdaKnown_ = false;
    scl_ = Level::High;
}

}  // namespace tarnwell
