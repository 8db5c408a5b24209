// The bus operations, and the bus check that opens every command.
#include "i2c/parallel/mI2Ccode.h"

namespace tarnwell {

namespace {

constexpr std::uint8_t kPrimarySelect = 0xA0;
constexpr std::uint8_t kSecondarySelect = 0xA2;

constexpr Message kBusActivity{"There is I2C Bus Activity", "E R R O R", BoxStyle::Exclamation};
constexpr Message kHardwareProblem{"I2C Interface Hardware Problem", "E R R O R",
                                   BoxStyle::Exclamation};

}  // namespace

mI2Ccode::mI2Ccode(const Wire& wire, const ProgramState& state, StatusBar& statusBar, User& user)
    : DrivenBus(wire.clock, wire.stop, statusBar, user),
      port_(wire.port),
      state_(state),
      lines_(wire.port, wire.clock, wire.trace),
      freeing_(lines_),
      causes_(lines_, freeing_, wire.clock) {}

void mI2Ccode::ApplyPortOptions() {
    lines_.Assign(DecodePinOptions(state_.pinOptions));
}

void mI2Ccode::Claim() {
    lines_.Claim(state_.portAddress);
}

void mI2Ccode::Release() {
    lines_.Release();
    ForgetCommand();
}

void mI2Ccode::ReleaseBus() {
    SetSCL(1);
    SetSDA(1);
}

void mI2Ccode::SendStart() {
    SetSCL(1);
    SetSDA(1);
    lines_.SampleBeforeStart();
    SetSDA(0);
    lines_.SampleSent(Level::Low);
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
    lines_.SampleSent(level == 0 ? Level::Low : Level::High);
    SetSCL(0);
}

AckBit mI2Ccode::ReadAck() {
    SetSDA(1);
    SetSCL(1);
    bool high = (lines_.Sample() & Pins().DataInMask) != 0;
    SetSCL(0);
    if (Pins().DataInInverted)
        high = !high;
    return high ? AckBit::NotAcknowledged : AckBit::Acknowledged;
}

std::uint8_t mI2Ccode::ReadByte() {
    unsigned value = 0;
    for (int bit = 0; bit < 8; ++bit) {
        SetSCL(1);
        value = value << 1 | ((lines_.Sample() & Pins().DataInMask) != 0 ? 1U : 0U);
        SetSCL(0);
    }
    SetSDA(1);
    if (Pins().DataInMask == kComplementedStatusBit)
        value ^= 0xFF;
    if (Pins().DataInInverted)
        value ^= 0xFF;
    return static_cast<std::uint8_t>(value);
}

BusCheck mI2Ccode::CheckBus(Quiet quiet) {
    const bool portUsable = !lines_.PortFailed();
    if (portUsable)
        freeing_.MakeUp();

    BusCheck result = ProbeBus();
    if (portUsable && result != BusCheck::BusActivity)
        freeing_.LeaveFree();
    lines_.ForgetAmiss();
    if (result == BusCheck::NoAcknowledge && quiet == Quiet::Yes)
        result = lines_.PortFailed() ? BusCheck::HardwareProblem : BusCheck::NobodyAnswered;
    switch (result) {
        case BusCheck::Ok:
        case BusCheck::NobodyAnswered:
        case BusCheck::Declined:
            break;
        case BusCheck::BusActivity:
            Report(kBusActivity, causes_.OfActivity());
            break;
        case BusCheck::HardwareProblem:
            Report(kHardwareProblem, causes_.OfAdapter());
            break;
        case BusCheck::NoAcknowledge:
            Report(kNoAcknowledge, causes_.OfSilence());
            break;
    }
    return result;
}

BusCheck mI2Ccode::ProbeBus() {
    if (!lines_.AreIdle())
        return BusCheck::BusActivity;

    freeing_.NoteUse();
    SetSDA(0);
    const std::uint8_t driven = lines_.Sense();
    SetSDA(1);
    if ((driven & Pins().DataInMask) != 0)
        return BusCheck::HardwareProblem;

    const int sample = ProbeDevice();
    if (sample == 0)
        return BusCheck::NoAcknowledge;
    ackSample_ = sample;
    return BusCheck::Ok;
}

std::uint8_t mI2Ccode::SelectByte() const {
    return state_.targetDevice == TargetDevice::Primary ? kPrimarySelect : kSecondarySelect;
}

// An acknowledge is one, whatever else was amiss: the interface test must not open on a bus where a
// device answers.
int mI2Ccode::ProbeDevice() {
    SendStart();
    SendByte(SelectByte());
    int acknowledged = 0;
    for (int sample = 1; sample <= kAckSamples && acknowledged == 0; ++sample) {
        if (ReadAck() == AckBit::Acknowledged)
            acknowledged = sample;
    }
    SendStop();
    return acknowledged;
}

// A device that was cut short in its write cycle answers when that is over. On lines that do not
// come to rest each clock is one more zero for a device in the middle of a write.
Transfer mI2Ccode::Recover() {
    constexpr int kRecoveries = 2;
    for (int attempt = 0; attempt < kRecoveries && !lines_.PortFailed(); ++attempt) {
        freeing_.Free();
        lines_.ForgetAmiss();
        if (!lines_.AreIdle())
            break;
        if (PollUntilWritten(SelectByte()) == Transfer::Done)
            return Transfer::Done;
        if (!lines_.Amiss())
            break;
    }
    return Transfer::Aborted;
}

void mI2Ccode::AbortOperation(std::string_view line, std::string details) {
    Free();
    ReportAborted(line, std::move(details));
}

void mI2Ccode::GiveUp() {
    if (lines_.HoldsALine() && !lines_.PortFailed())
        freeing_.Free();
    Release();
}

}  // namespace tarnwell
