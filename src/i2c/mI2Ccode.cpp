#include "i2c/mI2Ccode.h"

namespace tarnwell {

namespace {

Level LevelOf(std::uint8_t status, std::uint16_t mask, bool inverted) {
    const bool set = (status & mask) != 0;
    const bool high = set != (inverted != (mask == kComplementedStatusBit));
    return high ? Level::High : Level::Low;
}

}  // namespace

mI2Ccode::mI2Ccode(const Wire& wire, const ProgramState& state, StatusBar& statusBar, User& user)
    : DrivenBus(wire.clock, wire.stop, statusBar, user),
      port_(wire.port),
      state_(state),
      trace_(wire.trace),
      timing_(wire.clock) {}

void mI2Ccode::ApplyPortOptions() {
    pins_ = DecodePinOptions(state_.pinOptions);
    timing_.Forget();
}

void mI2Ccode::Claim() {
    baseAddress_ = PortAddressValue(state_.portAddress);
    timing_.Forget();
    disturbed_ = false;
    port_.Claim(baseAddress_);
}

void mI2Ccode::Release() {
    port_.Release();
    trace_.Released();
    bytesWritten_ = 0;
}

std::uint8_t mI2Ccode::TimedRead(std::uint16_t address) {
    const BusTime before = clock_.Now();
    const std::uint8_t value = port_.DlPortReadPortUchar(address);
    timing_.NoteReadTime(clock_.Now() - before);
    return value;
}

void mI2Ccode::Drive(BusLine line, std::int16_t level) {
    const bool scl = line == BusLine::Scl;
    const std::uint16_t mask = scl ? pins_.ClockOutMask : pins_.DataOutMask;
    const bool inverted = scl ? pins_.ClockOutInverted : pins_.DataOutInverted;

    const std::uint8_t before = TimedRead(baseAddress_);
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

void mI2Ccode::SetSCL(std::int16_t level) {
    Drive(BusLine::Scl, level);
}

void mI2Ccode::SetSDA(std::int16_t level) {
    Drive(BusLine::Sda, level);
}

std::uint8_t mI2Ccode::Sense() {
    const std::uint8_t status =
        port_.DlPortReadPortUchar(static_cast<std::uint16_t>(baseAddress_ + 1));
    trace_.Sensed(SclLevel(status), SdaLevel(status));
    return status;
}

Level mI2Ccode::SclLevel(std::uint8_t status) const {
    return LevelOf(status, pins_.ClockInMask, pins_.ClockInInverted);
}

Level mI2Ccode::SdaLevel(std::uint8_t status) const {
    return LevelOf(status, pins_.DataInMask, pins_.DataInInverted);
}

void mI2Ccode::ReleaseBus() {
    SetSCL(1);
    SetSDA(1);
    const auto owed = owed_.find(baseAddress_);
    if (PortFailed())
        Owe(Owed::Release);
    else if (owed != owed_.end() && owed->second == Owed::Release)
        owed_.erase(owed);
}

void mI2Ccode::SendStart() {
    SetSCL(1);
    SetSDA(1);
    SetSDA(0);
    SetSCL(0);
    SetSDA(1);
}

void mI2Ccode::SendStop() {
    SetSDA(0);
    SetSCL(1);
    SetSDA(1);
}

void mI2Ccode::SendAck() {
    SendBit(0);
    SetSDA(1);
}

void mI2Ccode::SendByte(std::uint8_t value) {
    for (std::uint8_t mask = 0x80; mask != 0; mask >>= 1)
        SendBit(value & mask);
}

void mI2Ccode::SendBit(std::int16_t level) {
    SetSDA(level);
    SetSCL(1);
    SampleSent(level == 0 ? Level::Low : Level::High);
    SetSCL(0);
}

// Zeros that are read from a clock line that is stuck would pass as data.
std::uint8_t mI2Ccode::Sample() {
    timing_.WaitToSample();
    const std::uint8_t status = Sense();
    disturbed_ = disturbed_ || (status & pins_.ClockInMask) == 0;
    return status;
}

void mI2Ccode::SampleSent(Level sent) {
    const Level seen = SdaLevel(Sample());
    disturbed_ = disturbed_ || seen != sent;
}

AckBit mI2Ccode::ReadAck() {
    SetSDA(1);
    SetSCL(1);
    bool high = (Sample() & pins_.DataInMask) != 0;
    SetSCL(0);
    if (pins_.DataInInverted)
        high = !high;
    return high ? AckBit::NotAcknowledged : AckBit::Acknowledged;
}

std::uint8_t mI2Ccode::ReadByte() {
    unsigned value = 0;
    for (int bit = 0; bit < 8; ++bit) {
        SetSCL(1);
        value = value << 1 | ((Sample() & pins_.DataInMask) != 0 ? 1U : 0U);
        SetSCL(0);
    }
    SetSDA(1);
    if (pins_.DataInMask == kComplementedStatusBit)
        value ^= 0xFF;
    if (pins_.DataInInverted)
        value ^= 0xFF;
    return static_cast<std::uint8_t>(value);
}

}  // namespace tarnwell
