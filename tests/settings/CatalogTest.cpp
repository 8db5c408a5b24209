// The catalog against tables of its own.
#include "settings/Catalog.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tarnwell {
namespace {

/// The name on the status line, '%' for the format, the maximum and the cells of each setting.
constexpr const char* kSettings =
    "% R-YR 15: 2 8 14 20\n% R-YB 15: 3 9 15 21\n% G-YR 15: 4 10 16 22\n% G-YB 15: 5 11 17 23\n"
    "% CR02 255: 0 6 12 18\n% CB02 255: 1 7 13 19\n% SHRP 255: 33 42 51 60\n"
    "% SSH1 3: 34 43 52 61\n% SHF1 3: 35 44 53 62\n% PROV 3: 36 45 54 63\n% LT1 3: 37 46 55 64\n"
    "Global TINT 63: 32\nGlobal Sharpness (SHPM) 15: 71\nIris OT1 255: 24\nIris 1T2 255: 25\n"
    "Iris CN0 63: 26\nIris CN1 63: 27\nIris CN2 63: 28\nIris BR0 63: 29\nIris BR1 63: 30\n"
    "Iris BR2 63: 31\n% DCOL 1: 38 47 56 65\n% CTIL 3: 39 48 57 66\n% DPIC 3: 40 49 58 67\n"
    "% DTC 3: 41 50 59 68\nDefl Jung % CLP 15: 69 70\n";

TEST(CatalogTest, EveryCellIsWhatTheTablesSay) {
    std::string settings;
    for (const Setting& setting : kCatalog) {
        std::string line;
        for (std::size_t column = 0; const auto& [cell, address] : setting.cells) {
            const std::string_view format = kFormats.at(column++);
            if (cell < 0)
                continue;
            std::string name = StatusLineName(cell);
            if (const auto at = name.find(format); at != std::string::npos)
                name.replace(at, format.size(), "%");
            name += std::to_string(setting.maximum) + ":";
            EXPECT_TRUE(line.empty() || line.starts_with(name)) << name;
            line = (line.empty() ? name : line) + " " + std::to_string(cell);
        }
        settings += line + "\n";
    }
    EXPECT_EQ(settings, kSettings);
    const SettingGroup groups[kGroupCount] = {
        {0, 6, 2363, 0},  {0, 6, 2399, 6},  {0, 6, 2435, 12}, {0, 6, 2471, 18}, {0, 8, 2328, 24},
        {2, 1, 2085, 32}, {0, 9, 2348, 33}, {0, 9, 2384, 42}, {0, 9, 2420, 51}, {0, 9, 2456, 60},
        {0, 1, 2507, 69}, {0, 1, 2549, 70}, {4, 1, 2228, 71},
    };
    for (const auto& [shift, count, base, first] : groups) {
        EXPECT_THAT(GroupAtBase(base), testing::Pointee(SettingGroup{shift, count, base, first}));
        for (int cell = first; cell < first + count; ++cell) {
            EXPECT_EQ(Cell(cell).address, base + cell - first);
            EXPECT_EQ(Cell(cell).setting->shift, shift);
            EXPECT_EQ(CellAtAddress(Cell(cell).address), cell);
        }
    }
    EXPECT_EQ(GroupAtBase(2364), nullptr);
    EXPECT_EQ(CellAtAddress(2508), std::nullopt);
    EXPECT_EQ(CellTitle(0) + CellTitle(25) + CellTitle(71) + CellTitle(70),
              "480i CR02Iris IT2Global SHPM1080i CLP");
    EXPECT_EQ(BitsText(32) + BitsText(71) + BitsText(38) + BitsText(0),
              "bits 2 to 7bits 4 to 7bit 0bits 0 to 7");
}

}  // namespace
}  // namespace tarnwell
