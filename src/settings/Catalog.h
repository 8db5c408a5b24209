// The catalog of the named picture settings: where each value lives and how it is presented.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/ProgramState.h"
#include "i2c/EepromBus.h"

namespace tarnwell {

inline constexpr int kSettingCount = 26;
inline constexpr int kCellCount = 72;
inline constexpr int kColumnCount = 4;

/// The video formats, one value column each.
inline constexpr std::array<std::string_view, kColumnCount> kFormats{"480i", "480p", "1080i",
                                                                     "VGA"};

/// One stored value: its cell on the pages and its EEPROM address.
struct CellPlace {
    int cell = -1;
    int address = -1;

    constexpr bool Exists() const { return cell >= 0; }
};

using CellPlaces = std::array<CellPlace, kColumnCount>;

/// How the status line names a setting after an edit.
struct StatusName {
    std::string_view prefix;
    bool withFormat;
    std::string_view name;
};

struct Setting {
    Page page;
    std::string_view code;
    std::string_view number;
    std::string_view description;  ///< empty where a neighbour's description covers the row
    int codeLabel;                 ///< index of lblControlName and lblSettingNumber
    int descriptionLabel;          ///< index of lblControlDesc; -1 without a description
    CellPlaces cells;              ///< by column; a setting without formats has column 0 only
    int shift;                     ///< the value fills the byte's bits from this one upward
    int maximum;
    StatusName statusName;
    std::string_view codeTooltip{};
    std::string_view cellTooltip{};
};

namespace catalog {

/// The bytes of the four formats lie this far apart.
inline constexpr int kFormatStep = 36;

inline constexpr std::string_view kShiftedTooltip =
    " Value left-shifted & handled specially in EEP register ";

constexpr CellPlaces One(int cell, int address) {
    return {CellPlace{cell, address}};
}

constexpr CellPlaces PerFormat(int cell, int cellStep, int address) {
    CellPlaces places;
    int column = 0;
    for (CellPlace& place : places) {
        place = {cell + column * cellStep, address + column * kFormatStep};
        ++column;
    }
    return places;
}

constexpr CellPlaces Chroma(int offset) {
    return PerFormat(offset, 6, 2363 + offset);
}

/// The settings of the pages Edges and Picture share one block a format.
constexpr CellPlaces Block(int offset) {
    return PerFormat(33 + offset, 9, 2348 + offset);
}

constexpr CellPlaces Iris(int offset) {
    return One(24 + offset, 2328 + offset);
}

constexpr StatusName ByFormat(std::string_view name) {
    return {"", true, name};
}

constexpr StatusName OfIris(std::string_view name) {
    return {"Iris ", false, name};
}

}  // namespace catalog

/// The settings, page by page, in the order of their rows.
inline constexpr std::array<Setting, kSettingCount> kCatalog = [] {
    using namespace catalog;
    using enum Page;
    return std::array<Setting, kSettingCount>{{
        {Chroma, "R-YR", "(60)", "Red Saturation", 2, 1, catalog::Chroma(2), 0, 15,
         ByFormat("R-YR "), " Red Saturation "},
        {Chroma, "R-YB", "(61)", "Red Hue", 3, 2, catalog::Chroma(3), 0, 15, ByFormat("R-YB "),
         " Red Hue "},
        {Chroma, "G-YR", "(62)", "Green Saturation", 4, 3, catalog::Chroma(4), 0, 15,
         ByFormat("G-YR "), " Green Saturation "},
        {Chroma, "G-YB", "(63)", "Green Hue", 5, 4, catalog::Chroma(5), 0, 15, ByFormat("G-YB "),
         " Green Hue "},
        {Chroma, "CR02", "(58)", "White Balance", 0, 0, catalog::Chroma(0), 0, 255,
         ByFormat("CR02 ")},
        {Chroma, "CB02", "(59)", "", 1, -1, catalog::Chroma(1), 0, 255, ByFormat("CB02 ")},

        {Edges, "SHRP", "(22)", "Sharpness", 15, 14, Block(0), 0, 255, ByFormat("SHRP ")},
        {Edges, "SSH1", "(23)", "Sub-Sharpness", 16, 15, Block(1), 0, 3, ByFormat("SSH1 ")},
        {Edges, "SHF1", "(24)", "Sub-FO", 17, 16, Block(2), 0, 3, ByFormat("SHF1 ")},
        {Edges, "PROV", "(25)", "Pre/Overshoot Gain", 18, 17, Block(3), 0, 3, ByFormat("PROV ")},
        {Edges, "LT1", "(26)", "Y Edge Enhancement", 19, 18, Block(4), 0, 3, ByFormat("LT1 ")},

        {Global,
         "TINT",
         "(20)",
         "Main Tint",
         14,
         25,
         One(32, 2085),
         2,
         63,
         {"Global ", false, "TINT "},
         "",
         kShiftedTooltip},
        {Global,
         "SHPM",
         "(6)",
         "Main Sharpness",
         25,
         13,
         One(71, 2228),
         4,
         15,
         {"Global ", false, "Sharpness (SHPM) "},
         "",
         kShiftedTooltip},

        {Iris, "OT1", "(01)", "Low Threshold Voltage", 6, 5, catalog::Iris(0), 0, 255,
         OfIris("OT1 ")},
        {Iris, "IT2", "(02)", "High Threshold Voltage", 7, 6, catalog::Iris(1), 0, 255,
         OfIris("1T2 ")},
        {Iris, "CN0", "(03)", "Low Contrast Setting", 8, 7, catalog::Iris(2), 0, 63,
         OfIris("CN0 ")},
        {Iris, "CN1", "(04)", "Mid Contrast Setting", 9, 8, catalog::Iris(3), 0, 63,
         OfIris("CN1 ")},
        {Iris, "CN2", "(05)", "High Contrast Setting", 10, 9, catalog::Iris(4), 0, 63,
         OfIris("CN2 ")},
        {Iris, "BR0", "(06)", "Low Brightness Setting", 11, 10, catalog::Iris(5), 0, 63,
         OfIris("BR0 ")},
        {Iris, "BR1", "(07)", "Mid Brightness Setting", 12, 11, catalog::Iris(6), 0, 63,
         OfIris("BR1 ")},
        {Iris, "BR2", "(08)", "High Brightness Setting", 13, 12, catalog::Iris(7), 0, 63,
         OfIris("BR2 ")},

        {Picture, "DCOL", "(27)", "Dynamic Color On-Off", 20, 19, Block(5), 0, 1,
         ByFormat("DCOL ")},
        {Picture, "CTIL", "(28)", "Color Overlap/Transition", 21, 20, Block(6), 0, 3,
         ByFormat("CTIL ")},
        {Picture, "DPIC", "(32)", "Dynamic Picture Control", 22, 21, Block(7), 0, 3,
         ByFormat("DPIC ")},
        {Picture, "DTC", "(33)", "DC Restoration Control", 23, 22, Block(8), 0, 3,
         ByFormat("DTC ")},
        {Picture,
         "CLP",
         "(22)",
         "Clamp Pulse Phase",
         24,
         24,
         {CellPlace{69, 2507}, {}, CellPlace{70, 2549}, {}},
         0,
         15,
         {"Defl Jung ", true, "CLP "}},
    }};
}();

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

/// `byte` with the value stored in its field; the bits below survive.
constexpr std::uint8_t WithField(std::uint8_t byte, std::uint8_t value, int shift) {
    return static_cast<std::uint8_t>((byte & ((1 << shift) - 1)) | (value << shift));
}

/// What the status line calls the cell: it ends with a blank.
std::string StatusLineName(int cell);

/// Format and code, such as "480i CR02", "Global TINT" or "Iris OT1".
std::string CellTitle(int cell);

/// Code and, of a setting that has one, format: "R-YR 480p", "TINT".
std::string SettingName(int cell, char separator = ' ');

/// The bits of the cell's byte that its range takes: "bits 2 to 7", "bit 0".
std::string BitsText(int cell);

/// The cells by page, setting and format.
std::vector<int> CellsInOrder();

/// The cell whose byte lies at an EEPROM address, if a named setting does.
std::optional<int> CellAtAddress(int address);

/// The title of that cell; empty if there is none.
std::string SettingNameAt(int address);

/// The same of a device: named settings are those of the primary EEPROM.
std::string SettingNameOn(TargetDevice device, int address);

/// The group whose base address is `address`, if there is one.
const SettingGroup* GroupAtBase(int address);

}  // namespace tarnwell
