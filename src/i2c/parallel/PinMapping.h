// Which port bits carry SCL and SDA: the pin-options string and its decoding.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace tarnwell {

/// The decoded pin options. Data-register bits drive the lines, status-register bits sense them.
struct PinSetup {
    std::uint16_t DataOutMask;
    std::uint16_t ClockOutMask;
    std::uint16_t DataInMask;
    std::uint16_t ClockInMask;
    bool DataOutInverted;
    bool ClockOutInverted;
    bool DataInInverted;
    bool ClockInInverted;  ///< the bus check reads SCL raw; a trace consults it

    bool operator==(const PinSetup&) const = default;
};

/// The positions of the pin-options string.
enum class PinPosition : std::uint8_t {
    DataOut,
    DataOutPol,
    ClockOut,
    ClockOutPol,
    DataIn,
    DataInPol,
    ClockIn,
    ClockInPol,
};

inline constexpr std::size_t kPinPositions = 8;
inline constexpr std::string_view kDefaultPinOptions = "11012010";

/// How many digits a position offers: eight output bits, five input bits, two polarities.
constexpr int DigitsOffered(PinPosition position) {
    constexpr std::array<int, kPinPositions> kDigits{8, 2, 8, 2, 5, 2, 5, 2};
    return kDigits[static_cast<std::size_t>(position)];
}

/// The digit at `position`. A missing or foreign character, and a pin digit beyond those offered,
/// reads as 0; any polarity digit but 0 as 1.
int PinDigit(std::string_view pinOptions, PinPosition position);

PinSetup DecodePinOptions(std::string_view pinOptions);

/// Status bit 7 reads the complement of the level on its pin (IEEE 1284 BUSY).
inline constexpr std::uint16_t kComplementedStatusBit = 0x80;

/// The lowest status bit that is an input pin.
inline constexpr int kFirstStatusBit = 3;

/// One port of the Parallel Port menu.
struct PortChoice {
    std::string_view caption;
    std::uint16_t address;
    std::string_view status;
};

inline constexpr std::array kPortChoices{
    PortChoice{"LPT&1 (378 h)", 0x378, "Programming Port Changed to LPT1 (378h)"},
    PortChoice{"LPT&2 (278 h)", 0x278, "Programming Port Changed to LPT2 (278h)"},
    PortChoice{"LPT&3 (3BC h)", 0x3BC, "Programming Port Changed to LPT3 (3BCh)"},
};

}  // namespace tarnwell
