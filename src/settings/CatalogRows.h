// The rows of the catalog: what each named setting is called, where it lives and how far it goes.
#pragma once

#include <array>
#include <string_view>

#include "core/ProgramState.h"

namespace tarnwell {

inline constexpr int kSettingCount = 26;
inline constexpr int kColumnCount = 4;

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
    std::string_view description{};  ///< empty where a neighbour's description covers the row
    int codeLabel;                   ///< index of lblControlName and lblSettingNumber
    int descriptionLabel = -1;       ///< index of lblControlDesc; -1 without a description
    CellPlaces cells;                ///< by column; a setting without formats has column 0 only
    int shift = 0;                   ///< the value fills the byte's bits from this one upward
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
    // clang-format off
    return std::array<Setting, kSettingCount>{{
        {.page = Chroma, .code = "R-YR", .number = "(60)", .description = "Red Saturation",
         .codeLabel = 2, .descriptionLabel = 1, .cells = catalog::Chroma(2), .maximum = 15,
         .statusName = ByFormat("R-YR "), .codeTooltip = " Red Saturation "},
        {.page = Chroma, .code = "R-YB", .number = "(61)", .description = "Red Hue", .codeLabel = 3,
         .descriptionLabel = 2, .cells = catalog::Chroma(3), .maximum = 15,
         .statusName = ByFormat("R-YB "), .codeTooltip = " Red Hue "},
        {.page = Chroma, .code = "G-YR", .number = "(62)", .description = "Green Saturation",
         .codeLabel = 4, .descriptionLabel = 3, .cells = catalog::Chroma(4), .maximum = 15,
         .statusName = ByFormat("G-YR "), .codeTooltip = " Green Saturation "},
        {.page = Chroma, .code = "G-YB", .number = "(63)", .description = "Green Hue",
         .codeLabel = 5, .descriptionLabel = 4, .cells = catalog::Chroma(5), .maximum = 15,
         .statusName = ByFormat("G-YB "), .codeTooltip = " Green Hue "},
        {.page = Chroma, .code = "CR02", .number = "(58)", .description = "White Balance",
         .codeLabel = 0, .descriptionLabel = 0, .cells = catalog::Chroma(0), .maximum = 255,
         .statusName = ByFormat("CR02 ")},
        {.page = Chroma, .code = "CB02", .number = "(59)", .codeLabel = 1,
         .cells = catalog::Chroma(1), .maximum = 255, .statusName = ByFormat("CB02 ")},

        {.page = Edges, .code = "SHRP", .number = "(22)", .description = "Sharpness",
         .codeLabel = 15, .descriptionLabel = 14, .cells = Block(0), .maximum = 255,
         .statusName = ByFormat("SHRP ")},
        {.page = Edges, .code = "SSH1", .number = "(23)", .description = "Sub-Sharpness",
         .codeLabel = 16, .descriptionLabel = 15, .cells = Block(1), .maximum = 3,
         .statusName = ByFormat("SSH1 ")},
        {.page = Edges, .code = "SHF1", .number = "(24)", .description = "Sub-FO", .codeLabel = 17,
         .descriptionLabel = 16, .cells = Block(2), .maximum = 3, .statusName = ByFormat("SHF1 ")},
        {.page = Edges, .code = "PROV", .number = "(25)", .description = "Pre/Overshoot Gain",
         .codeLabel = 18, .descriptionLabel = 17, .cells = Block(3), .maximum = 3,
         .statusName = ByFormat("PROV ")},
        {.page = Edges, .code = "LT1", .number = "(26)", .description = "Y Edge Enhancement",
         .codeLabel = 19, .descriptionLabel = 18, .cells = Block(4), .maximum = 3,
         .statusName = ByFormat("LT1 ")},

        {.page = Global, .code = "TINT", .number = "(20)", .description = "Main Tint",
         .codeLabel = 14, .descriptionLabel = 25, .cells = One(32, 2085), .shift = 2, .maximum = 63,
         .statusName = {"Global ", false, "TINT "}, .cellTooltip = kShiftedTooltip},
        {.page = Global, .code = "SHPM", .number = "(6)", .description = "Main Sharpness",
         .codeLabel = 25, .descriptionLabel = 13, .cells = One(71, 2228), .shift = 4, .maximum = 15,
         .statusName = {"Global ", false, "Sharpness (SHPM) "}, .cellTooltip = kShiftedTooltip},

        {.page = Iris, .code = "OT1", .number = "(01)", .description = "Low Threshold Voltage",
         .codeLabel = 6, .descriptionLabel = 5, .cells = catalog::Iris(0), .maximum = 255,
         .statusName = OfIris("OT1 ")},
        {.page = Iris, .code = "IT2", .number = "(02)", .description = "High Threshold Voltage",
         .codeLabel = 7, .descriptionLabel = 6, .cells = catalog::Iris(1), .maximum = 255,
         .statusName = OfIris("1T2 ")},
        {.page = Iris, .code = "CN0", .number = "(03)", .description = "Low Contrast Setting",
         .codeLabel = 8, .descriptionLabel = 7, .cells = catalog::Iris(2), .maximum = 63,
         .statusName = OfIris("CN0 ")},
        {.page = Iris, .code = "CN1", .number = "(04)", .description = "Mid Contrast Setting",
         .codeLabel = 9, .descriptionLabel = 8, .cells = catalog::Iris(3), .maximum = 63,
         .statusName = OfIris("CN1 ")},
        {.page = Iris, .code = "CN2", .number = "(05)", .description = "High Contrast Setting",
         .codeLabel = 10, .descriptionLabel = 9, .cells = catalog::Iris(4), .maximum = 63,
         .statusName = OfIris("CN2 ")},
        {.page = Iris, .code = "BR0", .number = "(06)", .description = "Low Brightness Setting",
         .codeLabel = 11, .descriptionLabel = 10, .cells = catalog::Iris(5), .maximum = 63,
         .statusName = OfIris("BR0 ")},
        {.page = Iris, .code = "BR1", .number = "(07)", .description = "Mid Brightness Setting",
         .codeLabel = 12, .descriptionLabel = 11, .cells = catalog::Iris(6), .maximum = 63,
         .statusName = OfIris("BR1 ")},
        {.page = Iris, .code = "BR2", .number = "(08)", .description = "High Brightness Setting",
         .codeLabel = 13, .descriptionLabel = 12, .cells = catalog::Iris(7), .maximum = 63,
         .statusName = OfIris("BR2 ")},

        {.page = Picture, .code = "DCOL", .number = "(27)", .description = "Dynamic Color On-Off",
         .codeLabel = 20, .descriptionLabel = 19, .cells = Block(5), .maximum = 1,
         .statusName = ByFormat("DCOL ")},
        {.page = Picture, .code = "CTIL", .number = "(28)",
         .description = "Color Overlap/Transition", .codeLabel = 21, .descriptionLabel = 20,
         .cells = Block(6), .maximum = 3, .statusName = ByFormat("CTIL ")},
        {.page = Picture, .code = "DPIC", .number = "(32)",
         .description = "Dynamic Picture Control", .codeLabel = 22, .descriptionLabel = 21,
         .cells = Block(7), .maximum = 3, .statusName = ByFormat("DPIC ")},
        {.page = Picture, .code = "DTC", .number = "(33)", .description = "DC Restoration Control",
         .codeLabel = 23, .descriptionLabel = 22, .cells = Block(8), .maximum = 3,
         .statusName = ByFormat("DTC ")},
        {.page = Picture, .code = "CLP", .number = "(22)", .description = "Clamp Pulse Phase",
         .codeLabel = 24, .descriptionLabel = 24,
         .cells = {CellPlace{69, 2507}, {}, CellPlace{70, 2549}, {}}, .maximum = 15,
         .statusName = {"Defl Jung ", true, "CLP "}},
    }};
    // clang-format on
}();

}  // namespace tarnwell
