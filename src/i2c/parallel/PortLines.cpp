#include "i2c/parallel/PortLines.h"

namespace tarnwell {

namespace {

Level LevelOf(unsigned bits, std::uint16_t mask, bool inverted) {
    return ((bits & mask) != 0) != inverted ? Level::High : Level::Low;
}

}  // namespace

void PortLines::Claim(std::uint16_t baseAddress) {
    baseAddress_ = baseAddress;
    timing_.Forget();
    amiss_ = false;
    port_.Claim(baseAddress);
}

void PortLines::Release() {
    port_.Release();
    trace_.Released();
}

void PortLines::Assign(const PinSetup& pins) {
    pins_ = pins;
    timing_.Forget();
}

std::uint8_t PortLines::ReadRegister() {
    const BusTime before = clock_.Now();
    const std::uint8_t value = port_.DlPortReadPortUchar(baseAddress_);
    timing_.NoteReadTime(clock_.Now() - before);
    return value;
}

void PortLines::Drive(BusLine line, std::int16_t level) {
    const bool scl = line == BusLine::Scl;
    const std::uint16_t mask = scl ? pins_.ClockOutMask : pins_.DataOutMask;
    const bool inverted = scl ? pins_.ClockOutInverted : pins_.DataOutInverted;

    const std::uint8_t before = ReadRegister();
    if (level < 0)
        return;
    const Level target = level == 0 ? Level::Low : Level::High;
    const bool set = (target == Level::High) != inverted;
    const auto value = static_cast<std::uint8_t>(set ? before | mask : before & (255 - mask));
    timing_.WaitToDrive(line, target);
    port_.DlPortWritePortUchar(baseAddress_, value);
    timing_.Driven(line, target);
    trace_.Driven(line, target);
}

LineLevels PortLines::InRegister() {
    const std::uint8_t data = ReadRegister();
    return {LevelOf(data, pins_.ClockOutMask, pins_.ClockOutInverted),
            LevelOf(data, pins_.DataOutMask, pins_.DataOutInverted)};
}

LineLevels PortLines::Seen(std::uint8_t status) const {
    const auto level = [status](std::uint16_t mask, bool inverted) {
        return LevelOf(status, mask, inverted != (mask == kComplementedStatusBit));
    };
    return {level(pins_.ClockInMask, pins_.ClockInInverted),
            level(pins_.DataInMask, pins_.DataInInverted)};
}

std::uint8_t PortLines::Sense() {
    const std::uint8_t status =
        port_.DlPortReadPortUchar(static_cast<std::uint16_t>(baseAddress_ + 1));
    const LineLevels seen = Seen(status);
    trace_.Sensed(seen.scl, seen.sda);
    return status;
}

LineLevels PortLines::Levels() {
    const std::uint8_t status = Sense();
    return {LevelOf(status, pins_.ClockInMask, false), LevelOf(status, pins_.DataInMask, false)};
}

std::uint8_t PortLines::Sample() {
    timing_.WaitToSample();
    const std::uint8_t status = Sense();
    amiss_ = amiss_ || (status & pins_.ClockInMask) == 0;
    return status;
}

void PortLines::SampleSent(Level sda) {
    const Level seen = Seen(Sample()).sda;
    amiss_ = amiss_ || seen != sda;
}

void PortLines::SampleBeforeStart() {
    timing_.WaitToSampleStart();
    const std::uint8_t status = Sense();
    amiss_ = amiss_ || (status & pins_.ClockInMask) == 0 || Seen(status).sda == Level::Low;
}

}  // namespace tarnwell
