#include "cli/words/Operands.h"

#include <algorithm>
#include <charconv>
#include <utility>

namespace tarnwell::cli {

namespace {

std::string Quoted(std::string_view word) {
    return "'" + std::string(word) + "'";
}

/// Decimal, or hexadecimal after 0x, and at most `maximum`.
int NumberFrom(std::string_view text, int maximum, std::string_view what) {
    const bool hex = text.starts_with("0x") || text.starts_with("0X");
    const std::string_view digits = hex ? text.substr(2) : text;
    unsigned value = 0;
    const auto [end, error] =
        std::from_chars(digits.data(), digits.data() + digits.size(), value, hex ? 16 : 10);
    if (error == std::errc::invalid_argument || end != digits.data() + digits.size())
        throw WrongArgument{Quoted(text) +
                            " is no number: write it in decimal, or in hexadecimal "
                            "after 0x."};
    if (error != std::errc() || value > static_cast<unsigned>(maximum))
        throw WrongArgument{std::string(what) + " goes from 0 to " + std::to_string(maximum) +
                            ", not to " + std::string(text) + "."};
    return static_cast<int>(value);
}

int AddressFrom(std::string_view text) {
    return NumberFrom(text, kEepromBytes - 1, "An address");
}

std::pair<std::string_view, std::string_view> SplitAtEqualsSign(std::string_view word,
                                                                std::string_view form) {
    const std::size_t sign = word.find('=');
    if (sign == std::string_view::npos)
        throw WrongArgument{Quoted(word) + " has no '=': write " + std::string(form) + "."};
    return {word.substr(0, sign), word.substr(sign + 1)};
}

const Setting& SettingNamed(std::string_view code) {
    const auto* const found = std::ranges::find_if(
        kCatalog, [&](const Setting& s) { return EqualIgnoringCase(s.code, code); });
    if (found != kCatalog.end())
        return *found;
    std::vector<std::string_view> codes;
    codes.reserve(kCatalog.size());
    for (const Setting& setting : kCatalog)
        codes.push_back(setting.code);
    throw WrongArgument{"There is no setting " + Quoted(code) + ". Did you mean " +
                        std::string(Nearest(code, codes)) + "?"};
}

bool HasFormats(const Setting& setting) {
    return setting.statusName.withFormat;
}

int CellOf(const Setting& setting, std::string_view format) {
    std::vector<std::string_view> formats;
    for (std::size_t column = 0; column < kFormats.size() && HasFormats(setting); ++column) {
        if (!setting.cells[column].Exists())
            continue;
        if (EqualIgnoringCase(kFormats[column], format))
            return setting.cells[column].cell;
        formats.push_back(kFormats[column]);
    }
    const std::string code(setting.code);
    if (formats.empty())
        throw WrongArgument{code + " has no formats: write " + code + " alone."};
    throw WrongArgument{code + " has no format " + Quoted(format) + ". Did you mean " + code + "." +
                        std::string(Nearest(format, formats)) + "?"};
}

}  // namespace

std::string_view Nearest(std::string_view word, const std::vector<std::string_view>& known) {
    constexpr std::size_t kLongest = 64;
    word = word.substr(0, kLongest);
    const auto changes = [&](std::string_view other) {
        std::vector<std::vector<std::size_t>> least(word.size() + 1,
                                                    std::vector<std::size_t>(other.size() + 1));
        for (std::size_t i = 0; i <= word.size(); ++i) {
            for (std::size_t j = 0; j <= other.size(); ++j) {
                if (i == 0 || j == 0) {
                    least[i][j] = i + j;
                    continue;
                }
                const auto same = [&](std::size_t a, std::size_t b) {
                    return Lower(word[a - 1]) == Lower(other[b - 1]);
                };
                least[i][j] = std::min({least[i - 1][j] + 1, least[i][j - 1] + 1,
                                        least[i - 1][j - 1] + (same(i, j) ? 0 : 1)});
                if (i > 1 && j > 1 && same(i, j - 1) && same(i - 1, j))
                    least[i][j] = std::min(least[i][j], least[i - 2][j - 2] + 1);
            }
        }
        return least[word.size()][other.size()];
    };
    return *std::ranges::min_element(known, {}, changes);
}

std::string CellName(int cell) {
    return SettingName(cell, '.');
}

std::vector<int> CellsNamed(std::string_view word) {
    const std::size_t point = word.find('.');
    const Setting& setting = SettingNamed(word.substr(0, point));
    if (point != std::string_view::npos)
        return {CellOf(setting, word.substr(point + 1))};
    std::vector<int> cells;
    for (const CellPlace& place : setting.cells) {
        if (place.Exists())
            cells.push_back(place.cell);
    }
    return cells;
}

void AddCellValue(std::string_view word, CellValues& values) {
    const auto [name, number] = SplitAtEqualsSign(word, "NAME=VALUE");
    for (const int cell : CellsNamed(name)) {
        const Setting& setting = *Cell(cell).setting;
        values[cell] = static_cast<std::uint8_t>(NumberFrom(number, setting.maximum, setting.code));
    }
}

ByteRange RangeFrom(std::string_view word) {
    const std::size_t sign = word.find_first_of("-+");
    const int first = AddressFrom(word.substr(0, sign));
    if (sign == std::string_view::npos)
        return {first, 1};
    const std::string_view end = word.substr(sign + 1);
    const int last =
        word[sign] == '-' ? AddressFrom(end) : first + NumberFrom(end, kEepromBytes, "A count") - 1;
    if (last < first || last >= kEepromBytes)
        throw WrongArgument{Quoted(word) +
                            " is no range within the device: its last address must "
                            "lie between its first and 8191."};
    return {first, last - first + 1};
}

void AddByteValue(std::string_view word, ByteValues& values) {
    const auto [address, value] = SplitAtEqualsSign(word, "ADDRESS=VALUE");
    values[AddressFrom(address)] = static_cast<std::uint8_t>(NumberFrom(value, 255, "A byte"));
}

}  // namespace tarnwell::cli
