// The bus check that opens every command, and the way out of a command that was cut short.
#include "i2c/mI2Ccode.h"

namespace tarnwell {

namespace {

/// A device that outputs a byte needs at most eight clocks and one for the acknowledge to let go.
constexpr int kClocksToFreeSda = 9;

constexpr Message kBusActivity{"There is I2C Bus Activity", "E R R O R", BoxStyle::Exclamation};
constexpr Message kHardwareProblem{"I2C Interface Hardware Problem", "E R R O R",
                                   BoxStyle::Exclamation};
constexpr Message kNoAcknowledge{"There is an I2C bus or\r\nInterface Hardware Problem",
                                 "E R R O R", BoxStyle::Exclamation};

}  // namespace

BusCheck mI2Ccode::CheckBus(Quiet quiet) {
    const bool portUsable = !PortFailed();
    if (busLeftOpen_ && portUsable)
        FreeBus();
    clockHeld_ = false;

    BusCheck result = ProbeBus();
    const bool drove = portUsable && result != BusCheck::BusActivity;
    busLeftOpen_ = busLeftOpen_ || (drove && (PortFailed() || !LinesAreIdle()));
    if (result == BusCheck::NoAcknowledge && quiet == Quiet::Yes)
        result = PortFailed() ? BusCheck::HardwareProblem : BusCheck::NobodyAnswered;
    switch (result) {
        case BusCheck::Ok:
        case BusCheck::NobodyAnswered:
            break;
        case BusCheck::BusActivity:
            Report(kBusActivity);
            break;
        case BusCheck::HardwareProblem:
            Report(kHardwareProblem);
            break;
        case BusCheck::NoAcknowledge:
            Report(kNoAcknowledge);
            break;
    }
    return result;
}

bool mI2Ccode::LinesAreIdle() {
    const unsigned both = pins_.ClockInMask | pins_.DataInMask;
    return (Sense() & both) == both;
}

BusCheck mI2Ccode::ProbeBus() {
    if (!LinesAreIdle())
        return BusCheck::BusActivity;

    SetSDA(0);
    const std::uint8_t driven = Sense();
    SetSDA(1);
    if ((driven & pins_.DataInMask) != 0)
        return BusCheck::HardwareProblem;

    const bool answered = ProbeDevice() == AckBit::Acknowledged && !clockHeld_;
    return answered ? BusCheck::Ok : BusCheck::NoAcknowledge;
}

AckBit mI2Ccode::ProbeDevice() {
    SendStart();
    SendByte(SelectByte());
    AckBit ack = ReadAck();
    for (int sample = 1; sample < kAckSamples && ack == AckBit::NotAcknowledged; ++sample)
        ack = ReadAck();
    SendStop();
    return ack;
}

void mI2Ccode::FreeBus() {
    SetSDA(1);
    SetSCL(1);
    for (int clock = 0; clock < kClocksToFreeSda && SdaLevel(Sense()) == Level::Low; ++clock) {
        SetSCL(0);
        SetSCL(1);
    }
    SendStop();
    ReleaseBus();
    timing_.WaitUntilFree();
    busLeftOpen_ = PortFailed() || !LinesAreIdle();
}

void mI2Ccode::AbortOperation() {
    if (PortFailed())
        busLeftOpen_ = true;
    else
        FreeBus();
    Report(kNoAcknowledge);
}

void mI2Ccode::Report(const Message& message) {
    user_.ShowBox(Box(message).WithLine(port_.Failure()));
    statusBar_.ShowStatus("I2C Operation Aborted", kResultSeconds);
}

}  // namespace tarnwell
