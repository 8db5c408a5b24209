// The bus check that opens every command, and the way out of a command that was cut short.
#include <algorithm>

#include "i2c/mI2Ccode.h"

namespace tarnwell {

namespace {

/// A device that outputs a byte needs at most eight clocks and one for the acknowledge to let go.
constexpr int kClocksToFreeSda = 9;

constexpr Message kBusActivity{"There is I2C Bus Activity", "E R R O R", BoxStyle::Exclamation};
constexpr Message kHardwareProblem{"I2C Interface Hardware Problem", "E R R O R",
                                   BoxStyle::Exclamation};

}  // namespace

BusCheck mI2Ccode::CheckBus(Quiet quiet) {
    const bool portUsable = !PortFailed();
    if (portUsable)
        MakeUp();

    BusCheck result = ProbeBus();
    if (portUsable && result != BusCheck::BusActivity)
        LeaveFree();
    disturbed_ = false;
    if (result == BusCheck::NoAcknowledge && quiet == Quiet::Yes)
        result = PortFailed() ? BusCheck::HardwareProblem : BusCheck::NobodyAnswered;
    switch (result) {
        case BusCheck::Ok:
        case BusCheck::NobodyAnswered:
        case BusCheck::Declined:
            break;
        case BusCheck::BusActivity:
            Report(kBusActivity, ExplainActivity());
            break;
        case BusCheck::HardwareProblem:
            Report(kHardwareProblem, ExplainAdapter());
            break;
        case BusCheck::NoAcknowledge:
            Report(kNoAcknowledge, ExplainSilence());
            break;
    }
    return result;
}

BusCheck mI2Ccode::ProbeBus() {
    if (!LinesAreIdle())
        return BusCheck::BusActivity;

    SetSDA(0);
    const std::uint8_t driven = Sense();
    SetSDA(1);
    if ((driven & pins_.DataInMask) != 0)
        return BusCheck::HardwareProblem;

    const int sample = ProbeDevice();
    if (sample == 0)
        return BusCheck::NoAcknowledge;
    ackSample_ = sample;
    return BusCheck::Ok;
}

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

void mI2Ccode::LeaveFree() {
    if (PortFailed())
        Owe(Owed::FreeBus);
    else if (!LinesAreIdle())
        FreeBus();
}

void mI2Ccode::Owe(Owed owed) {
    Owed& known = owed_.try_emplace(baseAddress_, owed).first->second;
    known = std::max(known, owed);
}

// Lines that are low for another reason are not ours to move.
void mI2Ccode::MakeUp() {
    const auto owed = owed_.find(baseAddress_);
    if (owed == owed_.end())
        return;
    if (owed->second == Owed::FreeBus)
        FreeBus();
    else
        ReleaseBus();
}

// SDA falls while SCL is high, a start, before it rises again, the stop: of a byte that is half
// sent or not yet acknowledged the device stores nothing.
void mI2Ccode::FreeBus() {
    SetSDA(1);
    SetSCL(1);
    for (int clock = 0; clock < kClocksToFreeSda && SenseLevels().sda == Level::Low; ++clock) {
        SetSCL(0);
        SetSCL(1);
    }
    SendStop();
    ReleaseBus();
    timing_.WaitUntilFree();
    if (PortFailed())
        Owe(Owed::FreeBus);
    else
        owed_.erase(baseAddress_);
}

// A device that was cut short in its write cycle answers when that is over.
Transfer mI2Ccode::Recover() {
    if (PortFailed())
        return Transfer::Aborted;
    FreeBus();
    disturbed_ = false;
    return PollUntilWritten(SelectByte());
}

void mI2Ccode::AbortOperation(std::string_view line) {
    if (PortFailed())
        Owe(Owed::FreeBus);
    else
        FreeBus();
    Report(kNoAcknowledge, line);
}

void mI2Ccode::GiveUp() {
    if (timing_.HoldsALine() && !PortFailed())
        FreeBus();
    Release();
}

}  // namespace tarnwell
