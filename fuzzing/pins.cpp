// The pin-options string: any text decodes to lines of the port, and a bus check with it ends.
#include <bit>

#include "Fuzzing.h"
#include "support/TestProgram.h"

namespace tarnwell::fuzzing {

namespace {

void RequireBitWithin(std::uint16_t mask, std::uint16_t bits) {
    REQUIRE(std::has_single_bit(mask) && (mask & ~bits) == 0);
}

}  // namespace

void Run(std::string_view input) {
    const PinSetup setup = DecodePinOptions(input);
    RequireBitWithin(setup.DataOutMask, 0xFF);
    RequireBitWithin(setup.ClockOutMask, 0xFF);
    RequireBitWithin(setup.DataInMask, 0xF8);
    RequireBitWithin(setup.ClockInMask, 0xF8);

    std::string digits;
    for (std::size_t position = 0; position < kPinPositions; ++position) {
        const auto place = static_cast<PinPosition>(position);
        const int digit = PinDigit(input, place);
        REQUIRE(digit >= 0 && digit < DigitsOffered(place));
        digits += std::to_string(digit);
    }
    REQUIRE(DecodePinOptions(digits) == setup);

    SimulatedTelevision television;
    QuietProgram quiet(television, television);
    quiet.program.state.pinOptions = input;
    quiet.program.i2c.ApplyPortOptions();
    const BusClaim claim(quiet.program.i2c);
    const BusCheck outcome = quiet.program.i2c.CheckBus(Quiet::No);
    REQUIRE((outcome == BusCheck::Ok) ==
            (quiet.program.statusBar.Text(Panel::Status) != "I2C Operation Aborted"));
    // Lines that are low are watched for 50 ms.
    REQUIRE(television.Now() < std::chrono::milliseconds(60));
}

}  // namespace tarnwell::fuzzing
