#include "i2c/parallel/PinMapping.h"

#include "core/user/Number.h"

namespace tarnwell {

namespace {

constexpr bool IsPolarity(PinPosition position) {
    return DigitsOffered(position) == 2;
}

std::uint16_t Bit(int number) {
    return static_cast<std::uint16_t>(1U << static_cast<unsigned>(number));
}

}  // namespace

int PinDigit(std::string_view pinOptions, PinPosition position) {
    const auto index = static_cast<std::size_t>(position);
    if (index >= pinOptions.size() || pinOptions[index] < '0' || pinOptions[index] > '9')
        return 0;
    const int digit = pinOptions[index] - '0';
    if (IsPolarity(position))
        return digit != 0 ? 1 : 0;
    return digit < DigitsOffered(position) ? digit : 0;
}

PinSetup DecodePinOptions(std::string_view pinOptions) {
    using enum PinPosition;
    const auto digit = [&](PinPosition position) { return PinDigit(pinOptions, position); };
    return {
        .DataOutMask = Bit(digit(DataOut)),
        .ClockOutMask = Bit(digit(ClockOut)),
        .DataInMask = Bit(digit(DataIn) + kFirstStatusBit),
        .ClockInMask = Bit(digit(ClockIn) + kFirstStatusBit),
        .DataOutInverted = digit(DataOutPol) != 0,
        .ClockOutInverted = digit(ClockOutPol) != 0,
        .DataInInverted = digit(DataInPol) != 0,
        .ClockInInverted = digit(ClockInPol) != 0,
    };
}

}  // namespace tarnwell
