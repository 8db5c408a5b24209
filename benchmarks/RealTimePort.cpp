#include "RealTimePort.h"

namespace tarnwell::bench {

std::uint8_t RealTimePort::DlPortReadPortUchar(std::uint16_t address) {
    if (accessCost_.count() != 0)
        clock_.WaitUntil(clock_.Now() + accessCost_);
    return television_.DlPortReadPortUchar(address);
}

void RealTimePort::DlPortWritePortUchar(std::uint16_t address, std::uint8_t value) {
    const BusTime begin = clock_.Now();
    BusTime effect = begin;
    if (accessCost_.count() != 0) {
        clock_.WaitUntil(begin + accessCost_ / 2);
        effect = clock_.Now();
    }
    television_.WaitUntil(effect);
    television_.DlPortWritePortUchar(address, value);
    times_.Levels(television_.Scl(), television_.Sda(), effect);
    if (accessCost_.count() != 0)
        clock_.WaitUntil(begin + accessCost_);
}

}  // namespace tarnwell::bench
