// The eight groups of options that say how an adapter is wired, as the user meets them.
#pragma once

#include <algorithm>
#include <array>
#include <span>
#include <string_view>

#include "i2c/parallel/PinMapping.h"

namespace tarnwell {

/// One option of a group.
struct PinOption {
    std::string_view caption;
    std::string_view toolTip;
    int pin = 0;  ///< on the 25-pin connector; 0 for a polarity
};

/// A group: the options that a position of the pin-options string offers, in the digits' order.
struct PinGroup {
    PinPosition position;
    std::string_view array;    ///< the options' common name
    std::string_view heading;  ///< shared by the two lines' groups
    std::string_view caption;
    std::string_view toolTip;
    std::span<const PinOption> options;
    int defaultIndex;
};

inline constexpr std::array kOutputPins{
    PinOption{"b0 (p2)", "", 2}, PinOption{"b1 (p3)", "", 3}, PinOption{"b2 (p4)", "", 4},
    PinOption{"b3 (p5)", "", 5}, PinOption{"b4 (p6)", "", 6}, PinOption{"b5 (p7)", "", 7},
    PinOption{"b6 (p8)", "", 8}, PinOption{"b7 (p9)", "", 9},
};
inline constexpr std::array kInputPins{
    PinOption{"b3 (p15)", "", 15}, PinOption{"b4 (p13)", "", 13},  PinOption{"b5 (p12)", "", 12},
    PinOption{"b6 (p10)", "", 10}, PinOption{"!b7 (p11)", "", 11},
};
inline constexpr std::array kDataOutPolarities{
    PinOption{"Normal", " Interface does not invert data out "},
    PinOption{"Inverted", " Interface inverts data out "},
};
inline constexpr std::array kClockOutPolarities{
    PinOption{"Normal", " Interface does not invert clock out "},
    PinOption{"Inverted", " Interface inverts clock out "},
};
inline constexpr std::array kDataInPolarities{
    PinOption{"Normal", " Interface does not invert data in "},
    PinOption{"Inverted", " Interface inverts data in "},
};
inline constexpr std::array kClockInPolarities{
    PinOption{"Normal", " Interface does not invert clock in "},
    PinOption{"Inverted", " Interface inverts clock in "},
};

inline constexpr std::array<PinGroup, kPinPositions> kPinGroups{{
    {PinPosition::DataOut, "DataOut", "Output Pin Assignments", "Data (SDA)",
     " Data line output port pin selection ", kOutputPins, 1},
    {PinPosition::DataOutPol, "DataOutPol", "Output Polarity Sense", "Data (SDA)",
     " Data line output polarity selection ", kDataOutPolarities, 1},
    {PinPosition::ClockOut, "ClockOut", "Output Pin Assignments", "Clock (SCL)",
     " Clock line output port pin selection ", kOutputPins, 0},
    {PinPosition::ClockOutPol, "ClockOutPol", "Output Polarity Sense", "Clock (SCL)",
     " Clock line output polarity selection ", kClockOutPolarities, 1},
    {PinPosition::DataIn, "DataIn", "Input Pin Assignments", "Data (SDA)",
     " Data line input port pin selection ", kInputPins, 2},
    {PinPosition::DataInPol, "DataInPol", "Input Polarity Sense", "Data (SDA)",
     " Data line input polarity selection ", kDataInPolarities, 0},
    {PinPosition::ClockIn, "ClockIn", "Input Pin Assignments", "Clock (SCL)",
     " Clock line input port pin selection ", kInputPins, 1},
    {PinPosition::ClockInPol, "ClockInPol", "Input Polarity Sense", "Clock (SCL)",
     " Clock line input polarity selection ", kClockInPolarities, 0},
}};

constexpr const PinGroup& Group(PinPosition position) {
    return kPinGroups[static_cast<std::size_t>(position)];
}

consteval bool EveryGroupOffersItsDigits() {
    for (std::size_t index = 0; index < kPinPositions; ++index) {
        const PinGroup& group = kPinGroups[index];
        const bool inPlace = static_cast<std::size_t>(group.position) == index;
        const bool complete =
            group.options.size() == static_cast<std::size_t>(DigitsOffered(group.position));
        if (!inPlace || !complete || group.defaultIndex != kDefaultPinOptions[index] - '0')
            return false;
    }
    return true;
}
static_assert(EveryGroupOffersItsDigits());

constexpr bool IsToolTip(std::string_view text) {
    return text.size() > 2 && text.front() == ' ' && text.back() == ' ';
}

consteval bool EveryOptionIsExplained() {
    return std::ranges::all_of(kPinGroups, [](const PinGroup& group) {
        return IsToolTip(group.toolTip) &&
               std::ranges::all_of(group.options, [](const PinOption& option) {
                   return option.pin != 0 ? option.toolTip.empty() : IsToolTip(option.toolTip);
               });
    });
}
static_assert(EveryOptionIsExplained());

/// Output bit n is on pin n + 2; every caption ends with its pin in brackets.
consteval bool EveryCaptionNamesItsPin() {
    for (std::size_t bit = 0; bit < kOutputPins.size(); ++bit) {
        if (kOutputPins[bit].pin != static_cast<int>(bit) + 2)
            return false;
    }
    return std::ranges::all_of(kPinGroups, [](const PinGroup& group) {
        return std::ranges::all_of(group.options, [](const PinOption& option) {
            int pin = 0;
            for (const char character : option.caption.substr(option.caption.find('(') + 1)) {
                if (character >= '0' && character <= '9')
                    pin = pin * 10 + (character - '0');
            }
            return pin == option.pin;
        });
    });
}
static_assert(EveryCaptionNamesItsPin());

}  // namespace tarnwell
