#include "i2c/parallel/InterfaceTest.h"

namespace tarnwell {

namespace {

constexpr Message kBusConnected{
    "You MUST be disconnected from the I2C Bus\r\n"
    "in order to use the Test Module.\r\n\r\n"
    "I2C Interface Test Aborted.",
    " W A R N I N G", BoxStyle::Critical};

constexpr std::int16_t Signal(Level level) {
    return level == Level::High ? 1 : 0;
}

}  // namespace

InterfaceTest::InterfaceTest(mI2Ccode& i2c, const Port& port, StatusBar& statusBar, User& user)
    : i2c_(i2c), port_(port), statusBar_(statusBar), user_(user) {}

bool InterfaceTest::PreCheck() {
    const CommandScope scope(statusBar_);
    claim_.emplace(i2c_);
    const BusCheck result = i2c_.CheckBus(Quiet::Yes);
    if (result == BusCheck::NobodyAnswered)
        return true;
    if (result == BusCheck::Ok || result == BusCheck::BusActivity)
        user_.ShowBox(kBusConnected);
    claim_.reset();
    return false;
}

void InterfaceTest::Open() {
    result_ = {};
    diagnosis_.Clear();
    ReleaseLines();
    UpdateIndicators();
}

void InterfaceTest::DriveClock(Level level) {
    SetClock(level);
    UpdateIndicators();
}

void InterfaceTest::DriveData(Level level) {
    SetData(level);
    UpdateIndicators();
}

void InterfaceTest::SetClock(Level level) {
    i2c_.SetSCL(Signal(level));
    driven_.scl = level;
}

void InterfaceTest::SetData(Level level) {
    i2c_.SetSDA(Signal(level));
    driven_.sda = level;
}

void InterfaceTest::ReleaseLines() {
    i2c_.ReleaseBus();
    driven_ = {};
}

void InterfaceTest::UpdateIndicators() {
    sensed_ = i2c_.SenseLevels();
    diagnosis_.Note({driven_, sensed_});
}

void InterfaceTest::CheckClockLine() {
    result_ = sensed_.scl == Level::High ? "OK" : "Err: SCL";
}

void InterfaceTest::CheckDataLine() {
    result_ = sensed_.sda == Level::High ? "OK" : "Err: SDA";
}

void InterfaceTest::Tick() {
    if (driven_.scl == Level::High) {
        SetClock(Level::Low);
        SetData(Level::High);
        UpdateIndicators();
        CheckDataLine();
    } else {
        SetData(Level::Low);
        SetClock(Level::High);
        UpdateIndicators();
        CheckClockLine();
    }
}

void InterfaceTest::StopAutoTest() {
    autoTestRuns_ = false;
    ReleaseLines();
    UpdateIndicators();
}

void InterfaceTest::Close() {
    if (!claim_)
        return;
    StopAutoTest();
    claim_.reset();
}

std::string InterfaceTest::Diagnosis() const {
    return port_.Failure().empty() ? diagnosis_.Text(i2c_.Pins()) : port_.Failure();
}

}  // namespace tarnwell
