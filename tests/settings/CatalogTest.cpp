// The catalog against tables of its own.
#include "settings/Catalog.h"

#include <gtest/gtest.h>

#include <sstream>

namespace tarnwell {
namespace {

TEST(CatalogTest, EveryCellIsWhatTheTablesSay) {
    const SettingGroup groups[kGroupCount] = {
        {0, 6, 2363, 0},  {0, 6, 2399, 6},  {0, 6, 2435, 12}, {0, 6, 2471, 18}, {0, 8, 2328, 24},
        {2, 1, 2085, 32}, {0, 9, 2348, 33}, {0, 9, 2384, 42}, {0, 9, 2420, 51}, {0, 9, 2456, 60},
        {0, 1, 2507, 69}, {0, 1, 2549, 70}, {4, 1, 2228, 71},
    };
    // The name on the status line, the maximum and the cells; '%' stands for the format.
    std::istringstream settings(
        "%_R-YR 15 2 8 14 20 / %_R-YB 15 3 9 15 21 / %_G-YR 15 4 10 16 22 / %_G-YB 15 5 11 17 23 /"
        "%_CR02 255 0 6 12 18 / %_CB02 255 1 7 13 19 / %_SHRP 255 33 42 51 60 /"
        "%_SSH1 3 34 43 52 61 / %_SHF1 3 35 44 53 62 / %_PROV 3 36 45 54 63 / %_LT1 3 37 46 55 64 /"
        "%_DCOL 1 38 47 56 65 / %_CTIL 3 39 48 57 66 / %_DPIC 3 40 49 58 67 / %_DTC 3 41 50 59 68 /"
        "Global_TINT 63 32 / Global_Sharpness_(SHPM) 15 71 / Iris_OT1 255 24 / Iris_1T2 255 25 /"
        "Iris_CN0 63 26 / Iris_CN1 63 27 / Iris_CN2 63 28 / Iris_BR0 63 29 / Iris_BR1 63 30 /"
        "Iris_BR2 63 31 / Defl_Jung_480i_CLP 15 69 / Defl_Jung_1080i_CLP 15 70 /");
    std::array<int, kCellCount> maxima{};
    std::array<std::string, kCellCount> names;
    std::string name;
    for (int maximum = 0; settings >> name >> maximum; settings.clear()) {
        std::ranges::replace(name, '_', ' ');
        std::size_t column = 0;
        for (std::size_t cell = 0; settings >> cell; ++column) {
            maxima.at(cell) = maximum;
            names.at(cell) = name + " ";
            if (name[0] == '%')
                names[cell].replace(0, 1, std::array{"480i", "480p", "1080i", "VGA"}.at(column));
        }
        settings.clear();
        settings.ignore();
    }
    for (std::size_t group = 0; group < kGroupCount; ++group) {
        const auto& [shift, count, base, first] = groups[group];
        EXPECT_EQ(SettingGroups[group], groups[group]);
        EXPECT_EQ(GroupAtBase(base), &SettingGroups[group]);
        for (int index = 0; index < count; ++index) {
            const int cell = first + index;
            EXPECT_EQ(Cell(cell).address, base + index) << cell;
            EXPECT_EQ(Cell(cell).setting->shift, shift) << cell;
            EXPECT_EQ(Cell(cell).setting->maximum, maxima.at(static_cast<std::size_t>(cell)));
            EXPECT_EQ(StatusLineName(cell), names.at(static_cast<std::size_t>(cell)));
            EXPECT_EQ(CellAtAddress(base + index), cell);
        }
    }
    EXPECT_EQ(GroupAtBase(2364), nullptr);
    EXPECT_EQ(CellAtAddress(2508), std::nullopt);
    EXPECT_EQ(CellTitle(0) + CellTitle(25) + CellTitle(71) + CellTitle(70),
              "480i CR02Iris IT2Global SHPM1080i CLP");
}

}  // namespace
}  // namespace tarnwell
