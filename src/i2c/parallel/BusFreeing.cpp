#include "i2c/parallel/BusFreeing.h"

#include <utility>

namespace tarnwell {

namespace {

/// A device that outputs a byte needs at most eight clocks and one for the acknowledge to let go.
constexpr int kClocksOfAByte = 9;

constexpr int kAttempts = 3;

constexpr LineLevels kSdaLow{Level::High, Level::Low};

}  // namespace

void BusFreeing::Drive(BusLine line, Level level) {
    lines_.Drive(line, level == Level::High ? 1 : 0);
}

/// What is seen at the end of the high time, before SCL falls again.
LineLevels BusFreeing::Clock() {
    Drive(BusLine::Scl, Level::High);
    lines_.WaitToSample();
    const LineLevels seen = lines_.Levels();
    Drive(BusLine::Scl, Level::Low);
    return seen;
}

// A start in the middle of a byte ends it for the device, which then takes nine clocks with SDA
// let go for the address of another. Before that, SDA has to be high for a start to form.
bool BusFreeing::TryToFree() {
    Drive(BusLine::Sda, Level::High);
    Drive(BusLine::Scl, Level::High);
    LineLevels seen = lines_.Levels();
    for (int clock = 0; clock < kClocksOfAByte && seen == kSdaLow; ++clock) {
        Drive(BusLine::Scl, Level::Low);
        Drive(BusLine::Scl, Level::High);
        seen = lines_.Levels();
    }
    if (seen != LineLevels{})
        return false;
    Drive(BusLine::Sda, Level::Low);
    Drive(BusLine::Scl, Level::Low);
    Drive(BusLine::Sda, Level::High);
    bool high = true;
    for (int clock = 0; clock < kClocksOfAByte; ++clock)
        high = Clock() == LineLevels{} && high;
    Drive(BusLine::Scl, Level::High);
    Drive(BusLine::Sda, Level::Low);
    Drive(BusLine::Sda, Level::High);
    lines_.WaitUntilFree();
    return lines_.AreIdle() && high;
}

void BusFreeing::Free() {
    for (int attempt = 0; attempt < kAttempts && !lines_.PortFailed() && !TryToFree();)
        ++attempt;
    places_[lines_.BaseAddress()].owed = lines_.PortFailed();
}

void BusFreeing::LeaveFree() {
    if (!lines_.AreIdle())
        Free();
}

// SDA rises while SCL is low. A stop would store what a program that was killed had sent.
void BusFreeing::MakeUp() {
    if (places_[lines_.BaseAddress()].owed)
        return Free();
    if (lines_.InRegister() == LineLevels{})
        return;
    NoteUse();
    Drive(BusLine::Scl, Level::Low);
    Drive(BusLine::Sda, Level::High);
    Drive(BusLine::Scl, Level::High);
}

bool BusFreeing::FreeWhatWasLeft() {
    const bool ours = std::exchange(places_[lines_.BaseAddress()].used, false);
    if (!ours || lines_.Levels() != kSdaLow)
        return false;
    Free();
    return lines_.AreIdle();
}

}  // namespace tarnwell
