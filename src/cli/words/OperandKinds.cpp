#include "cli/words/OperandKinds.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <utility>

namespace tarnwell::cli {

namespace {

std::string Quoted(std::string_view word) {
    return "'" + std::string(word) + "'";
}

/// Decimal, or hexadecimal after 0x, and at most `maximum`.
int NumberFrom(std::string_view text, int maximum, std::string_view what, int minimum = 0) {
    const bool hex = text.starts_with("0x") || text.starts_with("0X");
    const std::string_view digits = hex ? text.substr(2) : text;
    unsigned value = 0;
    const auto [end, error] =
        std::from_chars(digits.data(), digits.data() + digits.size(), value, hex ? 16 : 10);
    if (error == std::errc::invalid_argument || end != digits.data() + digits.size())
        throw WrongArgument{Quoted(text) +
                            " is no number: write it in decimal, or in hexadecimal "
                            "after 0x."};
    if (error != std::errc() || value > static_cast<unsigned>(maximum) ||
        value < static_cast<unsigned>(minimum))
        throw WrongArgument{std::string(what) + " goes from " + std::to_string(minimum) + " to " +
                            std::to_string(maximum) + ", not to " + std::string(text) + "."};
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

const Setting& SettingNamed(const NameBook& book, std::string_view code) {
    const auto* const found = std::ranges::find_if(
        kCatalog, [&](const Setting& s) { return EqualIgnoringCase(s.code, code); });
    if (found != kCatalog.end())
        return *found;
    std::vector<std::string_view> known;
    known.reserve(kCatalog.size() + book.Own().size());
    for (const Setting& setting : kCatalog)
        known.push_back(setting.code);
    for (const Named& named : book.Own())
        known.push_back(named->name);
    throw WrongArgument{"There is no setting " + Quoted(code) + ". Did you mean " +
                        std::string(Nearest(code, known)) + "?"};
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

}  // namespace

NameList NamesMeant(const NameBook& book, std::string_view word) {
    if (const Named named = book.Find(word))
        return {named};
    const std::size_t point = word.find('.');
    const bool isCode = point == std::string_view::npos ||
                        std::ranges::any_of(kCatalog, [&](const Setting& setting) {
                            return EqualIgnoringCase(setting.code, word.substr(0, point));
                        });
    const Setting& setting = SettingNamed(book, isCode ? word.substr(0, point) : word);
    NameList names;
    const auto add = [&](int cell) { names.push_back(book.Find(SettingName(cell, '.'))); };
    if (point != std::string_view::npos) {
        add(CellOf(setting, word.substr(point + 1)));
        return names;
    }
    for (const CellPlace& place : setting.cells) {
        if (place.Exists())
            add(place.cell);
    }
    return names;
}

namespace {

/// A number, or what it means.
int ValueFrom(std::string_view text, const NamedValue& named) {
    for (const auto& [value, meaning] : named.values) {
        if (EqualIgnoringCase(meaning, text))
            return value;
    }
    const std::string what = named.cell ? std::string(Cell(*named.cell).setting->code) : named.name;
    return NumberFrom(text, named.highest, what, named.lowest);
}

void AddValue(const NameBook& book, std::string_view word, NamedNumbers& values) {
    const auto [name, text] = SplitAtEqualsSign(word, "NAME=VALUE");
    for (const Named& named : NamesMeant(book, name)) {
        const int value = ValueFrom(text, *named);
        const auto given = std::ranges::find(values, named, &NamedNumber::named);
        if (given == values.end())
            values.push_back({named, value});
        else
            given->value = value;
    }
}

/// A name of one's own says which device is meant.
void TakeDeviceOf(const Named& named, const Named& first, Arguments& arguments) {
    if (named->device != first->device)
        throw WrongArgument{first->name + " and " + named->name +
                            " are not on the same EEPROM: one of the two at a time."};
    if (!named->cell)
        arguments.device = named->device;
}

}  // namespace

void TakeFile(const OperandTexts& operands, Arguments& arguments) {
    if (operands.size() > 1)
        throw WrongArgument{"One FILE, not " + std::to_string(operands.size()) + "."};
    if (operands.front().empty())
        throw WrongArgument{"The name of FILE is empty."};
    arguments.file = operands.front();
}

void TakeBackupOrFile(const OperandTexts& operands, Arguments& arguments) {
    if (operands.empty())
        arguments.file = kBackupSide;
    else
        TakeFile(operands, arguments);
}

void TakeSides(const OperandTexts& operands, Arguments& arguments) {
    if (operands.size() > 2)
        throw WrongArgument{"Two to compare, not " + std::to_string(operands.size()) + "."};
    arguments.sides = operands;
    arguments.sides.resize(2, std::string(kDeviceSide));
}

void TakeSettings(const OperandTexts& operands, Arguments& arguments) {
    for (const std::string& word : operands)
        std::ranges::copy(NamesMeant(arguments.book, word), std::back_inserter(arguments.names));
    if (operands.empty())
        arguments.names = arguments.book.On(arguments.device);
    for (const Named& named : arguments.names)
        TakeDeviceOf(named, arguments.names.front(), arguments);
}

void TakeSettingValues(const OperandTexts& operands, Arguments& arguments) {
    for (const std::string& word : operands)
        AddValue(arguments.book, word, arguments.values);
    for (const auto& [named, value] : arguments.values)
        TakeDeviceOf(named, arguments.values.front().named, arguments);
}

void TakeRanges(const OperandTexts& operands, Arguments& arguments) {
    for (const std::string& word : operands)
        arguments.ranges.push_back(RangeFrom(word));
}

void TakeRangesOrAll(const OperandTexts& operands, Arguments& arguments) {
    TakeRanges(operands, arguments);
    if (operands.empty())
        arguments.ranges = {{0, kEepromBytes}};
}

void TakeByteValues(const OperandTexts& operands, Arguments& arguments) {
    for (const std::string& word : operands)
        AddByteValue(word, arguments.byteValues);
}

void TakeEvents(const OperandTexts& operands, Arguments& arguments) {
    for (const std::string& word : operands)
        arguments.events.push_back(NumberFrom(word, std::numeric_limits<int>::max(), "An event"));
}

std::string NamesOf(const NameBook& book) {
    std::string names;
    for (const Setting& setting : kCatalog) {
        names.append("\n  ").append(setting.code);
        for (const CellPlace& place : setting.cells) {
            if (place.Exists() && HasFormats(setting))
                names.append(" ").append(SettingName(place.cell, '.'));
        }
    }
    for (const Named& named : book.Own())
        names.append("\n  ").append(named->name);
    return names;
}

}  // namespace tarnwell::cli
