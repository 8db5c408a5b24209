#include "i2c/parallel/FaultCauses.h"

#include "i2c/parallel/AdapterDiagnosis.h"

namespace tarnwell {

namespace {

/// How long lines that were low are watched, and how often.
constexpr int kLooks = 1000;
constexpr BusTime kBetweenLooks = std::chrono::microseconds(50);

constexpr std::string_view kHeld =
    " held low by the port itself: its data register does not take what is written to it. Check "
    "the "
    "port in the Parallel Port menu, and whether another program drives it.";
constexpr std::string_view kMoves =
    "The lines move: another master uses the bus. Repeat the command when it has finished.";
constexpr std::string_view kFreed =
    "The last command left a device in the middle of a byte, which held SDA low. Clocks have freed "
    "the bus, and nothing was stored by that. Repeat the command.";
constexpr std::string_view kStays =
    " low. A device that waits for clocks lets go when the television is switched off and on. "
    "If that does not help, look for a short to ground or a missing pull-up resistor, and check "
    "the "
    "port and the input pins in Advanced Setup.";
constexpr std::string_view kSilent =
    "Both lines do what the adapter tells them, but the EEPROM does not answer. Check that the "
    "television has power, the cable to it, and which EEPROM is selected.";

/// `one` behind the name of the one line that is low, or `both` behind those of both.
std::string LowLines(const LineLevels& levels, std::string_view one, std::string_view both) {
    const bool scl = levels.scl == Level::Low;
    const bool sda = levels.sda == Level::Low;
    return std::string(!sda ? "SCL" : !scl ? "SDA" : "SCL and SDA").append(scl && sda ? both : one);
}

}  // namespace

bool FaultCauses::Move(const LineLevels& before) {
    bool moves = before == LineLevels{};
    const BusTime begin = clock_.Now();
    for (int look = 1; look <= kLooks && !moves && !lines_.PortFailed(); ++look) {
        clock_.WaitUntil(begin + look * kBetweenLooks);
        moves = lines_.Levels() != before;
    }
    return moves;
}

std::string FaultCauses::OfActivity() {
    const LineLevels held = lines_.InRegister();
    const LineLevels before = lines_.Levels();
    const bool moves = Move(before);
    if (lines_.PortFailed())
        return {};
    if (held != LineLevels{})
        return LowLines(held, " is", " are").append(kHeld);
    if (moves)
        return std::string(kMoves);
    if (freeing_.FreeWhatWasLeft())
        return std::string(kFreed);
    return LowLines(before, " stays", " stay").append(kStays);
}

std::string FaultCauses::OfAdapter() {
    if (lines_.PortFailed() || !lines_.AreIdle())
        return {};
    AdapterDiagnosis diagnosis;
    diagnosis.Note({{}, lines_.Levels()});
    lines_.Drive(BusLine::Scl, 0);
    diagnosis.Note({{Level::Low, Level::High}, lines_.Levels()});
    lines_.Drive(BusLine::Scl, 1);
    lines_.Drive(BusLine::Sda, 0);
    diagnosis.Note({{Level::High, Level::Low}, lines_.Levels()});
    lines_.Drive(BusLine::Sda, 1);
    return lines_.PortFailed() ? std::string() : diagnosis.Text(lines_.Pins());
}

std::string FaultCauses::OfSilence() {
    const bool idle = !lines_.PortFailed() && lines_.AreIdle();
    std::string cause = OfAdapter();
    return cause.empty() && idle && !lines_.PortFailed() ? std::string(kSilent) : cause;
}

}  // namespace tarnwell
