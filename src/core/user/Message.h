// Message boxes: their six styles, their answers and the form of their titles.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tarnwell {

enum class BoxStyle : std::uint16_t {
    Critical = 16,
    Exclamation = 48,
    Information = 64,
    YesNoQuestion = 36,
    YesNoExclamation = 52,
    OkCancelExclamation = 305,  ///< Cancel is the default button
};

enum class Answer : std::uint8_t { Ok = 1, Cancel = 2, Yes = 6, No = 7 };

/// Separates the lines of a box's text.
inline constexpr std::string_view kLineBreak = "\r\n";

/// Whether `title` is written in spaced capitals ("W A R N I N G", three blanks between words),
/// if need be followed by " - " and a plain detail.
constexpr bool IsSpacedTitle(std::string_view title) {
    const std::string_view spaced = title.substr(0, title.find(" - "));
    if (spaced.size() < 2)
        return false;
    std::size_t blanks = 2;
    for (const char character : spaced) {
        const bool capital = character >= 'A' && character <= 'Z';
        if (!capital && character != ' ')
            return false;
        if (capital && blanks == 0)
            return false;
        blanks = capital ? 0 : blanks + 1;
        if (blanks > 3)
            return false;
    }
    return blanks == 0;
}

/// A message box of fixed wording. A title that breaks the convention does not compile.
struct Message {
    std::string_view text;
    std::string_view title;
    BoxStyle style;

    // NOLINTNEXTLINE(bugprone-easily-swappable-parameters)
    consteval Message(std::string_view boxText, std::string_view boxTitle, BoxStyle boxStyle)
        : text(boxText), title(boxTitle), style(boxStyle) {
        const std::string_view titleWithoutBlank =
            boxTitle.starts_with(' ') ? boxTitle.substr(1) : boxTitle;
        const bool plain = boxTitle == "Data Modified" || boxTitle == "Write Changes?";
        if (!plain && !IsSpacedTitle(titleWithoutBlank))
            throw "a box title is written in spaced capitals";
    }
};

enum class DefaultButton : std::uint8_t { OfStyle, No };

/// A message box as it is shown.
struct Box {
    std::string text;
    std::string title;
    BoxStyle style;
    DefaultButton defaultButton = DefaultButton::OfStyle;
    std::string details;  ///< shown on demand; empty when there are none

    // NOLINTNEXTLINE(google-explicit-constructor): every message is a box
    Box(const Message& message) : text(message.text), title(message.title), style(message.style) {}

    /// The same box with one more line below its text; unchanged for an empty line.
    Box WithLine(std::string_view line) && {
        if (!line.empty())
            text.append(kLineBreak).append(line);
        return std::move(*this);
    }

    /// A question whose safe answer is No.
    Box WithDefaultNo() && {
        defaultButton = DefaultButton::No;
        return std::move(*this);
    }
};

/// The text of a box as one line; what its last part asks is left out.
std::string OneLine(const Box& box);

}  // namespace tarnwell
