#include "i2c/parallel/AdapterDiagnosis.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>

namespace tarnwell {

namespace {

using Readings = std::span<const Reading>;

enum class Finding : std::uint8_t {
    Fine,
    Low,   ///< low when driven high, not yet driven low
    High,  ///< high when driven low, not yet driven high
    StuckLow,
    StuckHigh,
    Inverted,
    InvertedByPort,
    FollowsOther,
};

/// What a finding says of one line, after the line's name, and what it says when both have it.
struct FindingText {
    Finding finding;
    std::string_view one;
    std::string_view both;
};

constexpr std::string_view kNoAdapter =
    "Nothing follows what is driven: no adapter on this port, or it has no power. Plug it in, and "
    "check the port in the Parallel Port menu and the pins in Advanced Setup.";
constexpr std::string_view kJoined =
    "Driving either line low pulls both low: SCL and SDA are joined. Look for a short between "
    "them in the adapter and its cable.";
constexpr std::string_view kSwapped =
    "SDA follows SCL and the reverse: either the two input pins or the two output pins are "
    "swapped, which the levels cannot tell. Exchange one of the two pairs in Advanced Setup.";

constexpr std::array kTexts{
    FindingText{Finding::Fine, "", ""},
    FindingText{Finding::Low,
                " is low though driven high: stuck or inverted. Drive it low as well to tell.",
                "SCL and SDA are low though driven high: stuck or inverted. Drive each low as well "
                "to tell."},
    FindingText{Finding::High,
                " is high though driven low: stuck or inverted. Drive it high as well to tell.",
                "SCL and SDA are high though driven low: stuck or inverted. Drive each high as "
                "well to tell."},
    FindingText{Finding::StuckLow,
                " stays low though driven high. Look for a short to ground or a missing pull-up "
                "resistor, then check its pins in Advanced Setup.",
                "SCL and SDA stay low though driven high. Look for a short to ground, missing "
                "pull-up resistors or missing power, then check the pins in Advanced Setup."},
    FindingText{Finding::StuckHigh,
                " stays high though driven low. Check its output and input pin in Advanced "
                "Setup, then the adapter's driver for this line.",
                kNoAdapter},
    FindingText{Finding::Inverted,
                " reads the opposite of what is driven: output or input is inverted, which the "
                "levels cannot tell. Change its output polarity in Advanced Setup; an input must "
                "not invert, whatever its polarity setting.",
                "SCL and SDA read the opposite of what is driven: outputs or inputs are inverted, "
                "which the levels cannot tell. Change the output polarities in Advanced Setup; "
                "an input must not invert, whatever its polarity setting."},
    FindingText{Finding::InvertedByPort,
                " reads the opposite of what is driven: the port itself inverts its input pin, "
                "!b7 (p11). Choose another input pin in Advanced Setup.",
                ""},
    FindingText{Finding::FollowsOther,
                " follows the other line: an input or output pin is set to the other line's. "
                "Check all four pins in Advanced Setup.",
                ""},
};

consteval bool EveryFindingHasItsText() {
    for (std::size_t index = 0; index < kTexts.size(); ++index) {
        if (static_cast<std::size_t>(kTexts[index].finding) != index)
            return false;
    }
    return true;
}
static_assert(EveryFindingHasItsText());

constexpr const FindingText& TextOf(Finding finding) {
    return kTexts[static_cast<std::size_t>(finding)];
}

/// The readings from the view of one line.
struct LineView {
    Level LineLevels::*own;
    Level LineLevels::*other;
    std::uint16_t inputMask;
};

constexpr bool All(Readings readings, auto&& holds) {
    return std::ranges::all_of(readings, holds);
}

std::optional<Finding> ExplainLine(Readings readings, const LineView& line) {
    const auto stays = [&](Level level) {
        return All(readings, [&](const Reading& r) { return r.sensed.*line.own == level; });
    };
    const bool follows =
        All(readings, [&](const Reading& r) { return r.sensed.*line.own == r.driven.*line.own; });
    const bool opposes =
        All(readings, [&](const Reading& r) { return r.sensed.*line.own != r.driven.*line.own; });
    const bool followsOther =
        All(readings, [&](const Reading& r) { return r.sensed.*line.own == r.driven.*line.other; });
    if (follows)
        return Finding::Fine;
    if (stays(Level::Low))
        return opposes ? Finding::Low : Finding::StuckLow;
    if (stays(Level::High))
        return opposes ? Finding::High : Finding::StuckHigh;
    if (opposes)
        return line.inputMask == kComplementedStatusBit ? Finding::InvertedByPort
                                                        : Finding::Inverted;
    if (followsOther)
        return Finding::FollowsOther;
    return std::nullopt;
}

bool AreJoined(Readings readings) {
    return All(readings, [](const Reading& r) {
        const bool high = r.driven.scl == Level::High && r.driven.sda == Level::High;
        const Level level = high ? Level::High : Level::Low;
        return r.sensed == LineLevels{level, level};
    });
}

bool AreSwapped(Readings readings) {
    return All(readings, [](const Reading& r) {
        return r.sensed == LineLevels{r.driven.sda, r.driven.scl};
    });
}

/// An input that is connected to nothing reads high, on the complemented bit low.
bool IsOpen(Finding finding, std::uint16_t inputMask) {
    return finding ==
           (inputMask == kComplementedStatusBit ? Finding::StuckLow : Finding::StuckHigh);
}

std::optional<std::string> Explain(Readings readings, const PinSetup& pins) {
    const auto scl = ExplainLine(readings, {&LineLevels::scl, &LineLevels::sda, pins.ClockInMask});
    const auto sda = ExplainLine(readings, {&LineLevels::sda, &LineLevels::scl, pins.DataInMask});
    if (scl == Finding::Fine && sda == Finding::Fine)
        return std::string();
    if (AreJoined(readings))
        return std::string(kJoined);
    if (AreSwapped(readings))
        return std::string(kSwapped);
    if (!scl || !sda)
        return std::nullopt;
    if (IsOpen(*scl, pins.ClockInMask) && IsOpen(*sda, pins.DataInMask))
        return std::string(kNoAdapter);
    if (*scl == *sda && !TextOf(*scl).both.empty())
        return std::string(TextOf(*scl).both);

    std::string text;
    if (*scl != Finding::Fine)
        text.append("SCL").append(TextOf(*scl).one);
    if (*sda != Finding::Fine)
        text.append(text.empty() ? "SDA" : " SDA").append(TextOf(*sda).one);
    return text;
}

}  // namespace

void AdapterDiagnosis::Note(const Reading& reading) {
    std::erase_if(readings_, [&](const Reading& r) { return r.driven == reading.driven; });
    readings_.insert(readings_.begin(), reading);
}

std::string AdapterDiagnosis::Text(const PinSetup& pins) const {
    for (std::size_t count = readings_.size(); count > 0; --count) {
        if (const auto text = Explain(Readings(readings_).first(count), pins))
            return *text;
    }
    return {};
}

}  // namespace tarnwell
