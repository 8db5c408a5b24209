// The catalog of the named picture settings: where each value lives and how it is presented.
#pragma once

#include <array>
#include <bit>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/ProgramState.h"
#include "i2c/EepromBus.h"
#include "settings/CatalogRows.h"

namespace tarnwell {

inline constexpr int kCellCount = 72;

/// The video formats, one value column each.
inline constexpr std::array<std::string_view, kColumnCount> kFormats{"480i", "480p", "1080i",
                                                                     "VGA"};

/// Fills the place of a cell that the CLP row does not have; lblControlDesc 23.
inline constexpr std::string_view kDeflJungCaption = "<-- Defl Jung -->";
inline constexpr int kDeflJungLabel = 23;

/// What one cell holds.
struct CellInfo {
    const Setting* setting = nullptr;
    int column = 0;
    int address = -1;
};

consteval std::array<CellInfo, kCellCount> CellTable() {
    std::array<CellInfo, kCellCount> table{};
    for (const Setting& setting : kCatalog) {
        for (int column = 0; column < kColumnCount; ++column) {
            const CellPlace place = setting.cells[static_cast<std::size_t>(column)];
            if (!place.Exists())
                continue;
            CellInfo& info = table.at(static_cast<std::size_t>(place.cell));
            if (info.address >= 0)
                throw "a cell belongs to two settings";
            info = {&setting, column, place.address};
        }
    }
    return table;
}

inline constexpr std::array<CellInfo, kCellCount> kCells = CellTable();

constexpr const CellInfo& Cell(int cell) {
    return kCells[static_cast<std::size_t>(cell)];
}

/// Consecutive EEPROM bytes that feed consecutive cells.
struct SettingGroup {
    std::int16_t shift;
    std::int16_t count;
    std::int16_t baseAddress;
    std::int16_t firstCell;

    bool operator==(const SettingGroup&) const = default;
};

inline constexpr int kGroupCount = 13;

/// Gathers the cells, in order, into groups of neighbouring bytes.
consteval std::array<SettingGroup, kGroupCount> InitSettingGroups() {
    std::array<SettingGroup, kGroupCount> groups{};
    std::size_t group = 0;
    for (int cell = 0; cell < kCellCount; ++cell) {
        const CellInfo& info = Cell(cell);
        const bool continues = cell > 0 && info.address == Cell(cell - 1).address + 1 &&
                               info.setting->shift == Cell(cell - 1).setting->shift;
        if (continues) {
            ++groups.at(group - 1).count;
            continue;
        }
        groups.at(group++) = {static_cast<std::int16_t>(info.setting->shift), 1,
                              static_cast<std::int16_t>(info.address),
                              static_cast<std::int16_t>(cell)};
    }
    if (group != kGroupCount)
        throw "the cells do not make thirteen groups";
    return groups;
}

inline constexpr std::array<SettingGroup, kGroupCount> SettingGroups = InitSettingGroups();

consteval bool EveryCellHasItsOwnByte() {
    for (int cell = 0; cell < kCellCount; ++cell) {
        const CellInfo& info = Cell(cell);
        if (info.address < 0 || info.address >= kEepromBytes)
            return false;
        for (int other = 0; other < cell; ++other) {
            if (Cell(other).address == info.address)
                return false;
        }
    }
    return true;
}
static_assert(EveryCellHasItsOwnByte());

consteval bool EveryRangeFitsItsField() {
    for (const Setting& setting : kCatalog) {
        if (setting.maximum < 1 || setting.maximum >= 256 >> setting.shift)
            return false;
    }
    return true;
}
static_assert(EveryRangeFitsItsField());

consteval bool NoLabelIsUsedTwice() {
    for (std::size_t row = 0; row < kCatalog.size(); ++row) {
        for (std::size_t other = 0; other < row; ++other) {
            const bool sameDescription =
                kCatalog[row].descriptionLabel >= 0 &&
                kCatalog[row].descriptionLabel == kCatalog[other].descriptionLabel;
            if (kCatalog[row].codeLabel == kCatalog[other].codeLabel || sameDescription)
                return false;
        }
    }
    return true;
}
static_assert(NoLabelIsUsedTwice());

/// The value that the byte holds for a setting with this shift.
constexpr std::uint8_t FieldOf(std::uint8_t byte, int shift) {
    return static_cast<std::uint8_t>(byte >> shift);
}

/// The cell's value as its byte holds it.
constexpr std::uint8_t ValueIn(std::uint8_t byte, int cell) {
    return FieldOf(byte, Cell(cell).setting->shift);
}

/// The cell's value as a device's image holds it.
constexpr std::uint8_t ValueIn(std::span<const std::uint8_t> image, int cell) {
    return ValueIn(image[static_cast<std::size_t>(Cell(cell).address)], cell);
}

/// The cell's byte with the value in its field; the bits below survive.
constexpr std::uint8_t WithValue(std::uint8_t byte, int cell, std::uint8_t value) {
    const int shift = Cell(cell).setting->shift;
    return static_cast<std::uint8_t>((byte & ((1 << shift) - 1)) | (value << shift));
}

constexpr void PutValue(std::span<std::uint8_t> image, int cell, std::uint8_t value) {
    std::uint8_t& byte = image[static_cast<std::size_t>(Cell(cell).address)];
    byte = WithValue(byte, cell, value);
}

/// What the status line calls the cell: it ends with a blank.
std::string StatusLineName(int cell);

/// Format and code, such as "480i CR02", "Global TINT" or "Iris OT1".
std::string CellTitle(int cell);

/// Code and, of a setting that has one, format: "R-YR 480p", "TINT".
std::string SettingName(int cell, char separator = ' ');

/// The bits of a byte that a setting's range takes, 0 being the lowest.
struct BitRange {
    int lowest;
    int highest;

    bool operator==(const BitRange&) const = default;
};

constexpr BitRange BitsOf(const Setting& setting) {
    const auto count = static_cast<int>(std::bit_width(static_cast<unsigned>(setting.maximum)));
    return {setting.shift, setting.shift + count - 1};
}

/// "bits 2 to 7", "bit 0".
std::string BitsText(BitRange bits);

/// The same of a cell.
std::string BitsText(int cell);

/// The cells by page, setting and format.
std::vector<int> CellsInOrder();

/// The cell whose byte lies at an EEPROM address, if a named setting does.
std::optional<int> CellAtAddress(int address);

/// The group whose base address is `address`, if there is one.
const SettingGroup* GroupAtBase(int address);

}  // namespace tarnwell
