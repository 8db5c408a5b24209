// Why a bus check failed, as far as the lines tell.
#include "i2c/mI2Ccode.h"

namespace tarnwell {

namespace {

/// How long lines that were low are watched, and how often.
constexpr int kLooks = 1000;
constexpr BusTime kBetweenLooks = std::chrono::microseconds(50);

constexpr std::string_view kMoves =
    "The lines move: another master uses the bus. Repeat the command when it has finished.";
constexpr std::string_view kStays =
    " low. A device that waits for clocks lets go when the television is switched off and on. "
    "If that does not help, look for a short to ground or a missing pull-up resistor, and check "
    "the "
    "port and the input pins in Advanced Setup.";
constexpr std::string_view kSilent =
    "Both lines do what the adapter tells them, but the EEPROM does not answer. Check that the "
    "television has power, the cable to it, and which EEPROM is selected.";

std::string_view StayingLow(const LineLevels& levels) {
    if (levels.scl == Level::High)
        return "SDA stays";
    return levels.sda == Level::High ? "SCL stays" : "SCL and SDA stay";
}

}  // namespace

LineLevels mI2Ccode::SenseLevels() {
    const std::uint8_t status = Sense();
    const auto level = [status](std::uint16_t mask) {
        return (status & mask) != 0 ? Level::High : Level::Low;
    };
    return {level(pins_.ClockInMask), level(pins_.DataInMask)};
}

std::string mI2Ccode::ExplainActivity() {
    const LineLevels before = SenseLevels();
    bool moves = before == LineLevels{};
    const BusTime begin = clock_.Now();
    for (int look = 1; look <= kLooks && !moves && !PortFailed(); ++look) {
        clock_.WaitUntil(begin + look * kBetweenLooks);
        moves = SenseLevels() != before;
    }
    if (PortFailed())
        return {};
    return moves ? std::string(kMoves) : std::string(StayingLow(before)).append(kStays);
}

std::string mI2Ccode::ExplainAdapter() {
    if (PortFailed() || !LinesAreIdle())
        return {};
    AdapterDiagnosis diagnosis;
    diagnosis.Note({{}, SenseLevels()});
    SetSCL(0);
    diagnosis.Note({{Level::Low, Level::High}, SenseLevels()});
    SetSCL(1);
    SetSDA(0);
    diagnosis.Note({{Level::High, Level::Low}, SenseLevels()});
    SetSDA(1);
    LeaveFree();
    return PortFailed() ? std::string() : diagnosis.Text(pins_);
}

std::string mI2Ccode::ExplainSilence() {
    const bool idle = !PortFailed() && LinesAreIdle();
    std::string cause = ExplainAdapter();
    return cause.empty() && idle && !PortFailed() ? std::string(kSilent) : cause;
}

}  // namespace tarnwell
