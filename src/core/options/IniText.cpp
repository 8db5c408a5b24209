#include "core/options/IniText.h"

#include <algorithm>
#include <charconv>

namespace tarnwell {

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr char kQuote = '\x22';
constexpr std::string_view kHexDigits = "0123456789ABCDEFabcdef";
constexpr std::string_view kOctalDigits = "01234567";

/// What the letter at the same place stands for behind a backslash.
constexpr std::string_view kControls = "\a\b\f\n\r\t\v";
constexpr std::string_view kLetters = "abfnrtv";
static_assert(kControls.size() == kLetters.size());

/// Characters that a backslash lets stand for themselves.
constexpr std::string_view kEscaped = "\"\\?'";

/// A text that begins with an at sign has another one before it; one with NULs was put into this.
constexpr std::string_view kStringOpen = "@String(";

bool IsOneOf(char character, std::string_view characters) {
    return characters.find(character) != std::string_view::npos;
}

std::string_view Trimmed(std::string_view text) {
    constexpr std::string_view kBlanks = " \t";
    text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
    return text.substr(0, text.find_last_not_of(kBlanks) + 1);
}

std::string_view TakeLine(std::string_view& text) {
    const std::size_t end = std::min(text.find_first_of("\r\n"), text.size());
    const std::string_view line = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    return Trimmed(line);
}

void AppendUtf8(std::string& text, unsigned code) {
    const auto append = [&](unsigned byte) { text += static_cast<char>(byte); };
    if (code < 0x80) {
        append(code);
    } else if (code < 0x800) {
        append(0xC0 | code >> 6U);
        append(0x80 | (code & 0x3F));
    } else {
        append(0xE0 | (code >> 12U & 0x0F));
        append(0x80 | (code >> 6U & 0x3F));
        append(0x80 | (code & 0x3F));
    }
}

/// False if `rest` does not begin with a digit.
bool TakeNumber(std::string_view& rest, std::string_view digits, int base, std::string& text) {
    const std::size_t length = std::min(rest.find_first_not_of(digits), rest.size());
    unsigned code = 0;
    std::from_chars(rest.data(), rest.data() + length, code, base);
    if (length > 0)
        AppendUtf8(text, code);
    rest.remove_prefix(length);
    return length > 0;
}

/// `rest` begins behind a backslash.
void TakeEscape(std::string_view& rest, std::string& text) {
    if (TakeNumber(rest, kOctalDigits, 8, text))
        return;
    const char kind = rest.empty() ? '\0' : rest.front();
    std::string_view number = rest.substr(std::min<std::size_t>(1, rest.size()));
    if (kind == 'x' && TakeNumber(number, kHexDigits, 16, text)) {
        rest = number;
        return;
    }
    const std::size_t letter = kLetters.find(kind);
    if (letter != std::string_view::npos)
        text += kControls[letter];
    else if (IsOneOf(kind, kEscaped))
        text += kind;
    else
        text += '\\';
    if (letter != std::string_view::npos || IsOneOf(kind, kEscaped))
        rest.remove_prefix(1);
}

std::string_view WithoutComment(std::string_view value) {
    const std::size_t comment = std::min(value.find(" ;"), value.find("\t;"));
    return Trimmed(value.substr(0, comment));
}

}  // namespace

std::optional<IniGroups> ParseIni(std::string_view text) {
    if (text.starts_with(kByteOrderMark))
        text.remove_prefix(kByteOrderMark.size());
    IniGroups groups;
    std::string group = "General";
    while (!text.empty()) {
        const std::string_view line = TakeLine(text);
        if (line.empty() || line.starts_with(';'))
            continue;
        const bool opensGroup = line.starts_with('[');
        const std::size_t end = line.find(opensGroup ? ']' : '=');
        if (end == std::string_view::npos)
            return std::nullopt;
        if (opensGroup)
            group = Trimmed(line.substr(1, end - 1));
        else
            groups[group].insert_or_assign(std::string(Trimmed(line.substr(0, end))),
                                           Trimmed(line.substr(end + 1)));
    }
    return groups;
}

std::string IniText(const IniGroups& groups) {
    std::string text;
    for (const auto& [group, values] : groups) {
        if (values.empty())
            continue;
        text += (text.empty() ? "[" : "\n[") + group + "]\n";
        for (const auto& [name, value] : values)
            text.append(name).append("=").append(value).append("\n");
    }
    return text;
}

std::string DecodedValue(std::string_view value) {
    const bool quoted = value.starts_with(kQuote);
    std::string_view rest = quoted ? value.substr(1) : WithoutComment(value);
    std::string text;
    while (!rest.empty() && !(quoted && rest.front() == kQuote)) {
        const char character = rest.front();
        rest.remove_prefix(1);
        if (character == '\\')
            TakeEscape(rest, text);
        else
            text += character;
    }
    if (text.starts_with(kStringOpen) && text.ends_with(')'))
        return text.substr(kStringOpen.size(), text.size() - kStringOpen.size() - 1);
    return text.starts_with("@@") ? text.substr(1) : text;
}

std::string EncodedValue(std::string_view text) {
    std::string value = text.starts_with('@') ? "@" : "";
    bool afterNumber = false;
    for (const char character : text) {
        const auto code = static_cast<unsigned char>(character);
        const std::size_t control = kControls.find(character);
        const bool asNumber = control == std::string_view::npos &&
                              (code < 0x20 || (afterNumber && IsOneOf(character, kHexDigits)));
        if (asNumber) {
            char digits[4];
            value.append("\\x").append(digits,
                                       std::to_chars(digits, std::end(digits), code, 16).ptr);
        } else if (control != std::string_view::npos) {
            value.append("\\").append(1, kLetters[control]);
        } else {
            value.append(character == kQuote || character == '\\' ? "\\" : "").append(1, character);
        }
        afterNumber = asNumber;
    }
    const bool quoted = value.find_first_of(";,=") != std::string::npos || value.starts_with(' ') ||
                        value.ends_with(' ');
    return quoted ? kQuote + value + kQuote : value;
}

}  // namespace tarnwell
