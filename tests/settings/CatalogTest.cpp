// The catalog against a table of its own.
#include "settings/Catalog.h"

#include <gtest/gtest.h>

namespace tarnwell {
namespace {

struct Row {
    std::string title, name;  ///< '%' stands for the format
    std::vector<int> cells, addresses;
    int shift, maximum;
};

const std::vector<Row> kRows{
    {"% R-YR", "% R-YR ", {2, 8, 14, 20}, {2365, 2401, 2437, 2473}, 0, 15},
    {"% R-YB", "% R-YB ", {3, 9, 15, 21}, {2366, 2402, 2438, 2474}, 0, 15},
    {"% G-YR", "% G-YR ", {4, 10, 16, 22}, {2367, 2403, 2439, 2475}, 0, 15},
    {"% G-YB", "% G-YB ", {5, 11, 17, 23}, {2368, 2404, 2440, 2476}, 0, 15},
    {"% CR02", "% CR02 ", {0, 6, 12, 18}, {2363, 2399, 2435, 2471}, 0, 255},
    {"% CB02", "% CB02 ", {1, 7, 13, 19}, {2364, 2400, 2436, 2472}, 0, 255},
    {"% SHRP", "% SHRP ", {33, 42, 51, 60}, {2348, 2384, 2420, 2456}, 0, 255},
    {"% SSH1", "% SSH1 ", {34, 43, 52, 61}, {2349, 2385, 2421, 2457}, 0, 3},
    {"% SHF1", "% SHF1 ", {35, 44, 53, 62}, {2350, 2386, 2422, 2458}, 0, 3},
    {"% PROV", "% PROV ", {36, 45, 54, 63}, {2351, 2387, 2423, 2459}, 0, 3},
    {"% LT1", "% LT1 ", {37, 46, 55, 64}, {2352, 2388, 2424, 2460}, 0, 3},
    {"Global TINT", "Global TINT ", {32}, {2085}, 2, 63},
    {"Global SHPM", "Global Sharpness (SHPM) ", {71}, {2228}, 4, 15},
    {"Iris OT1", "Iris OT1 ", {24}, {2328}, 0, 255},
    {"Iris IT2", "Iris 1T2 ", {25}, {2329}, 0, 255},
    {"Iris CN0", "Iris CN0 ", {26}, {2330}, 0, 63},
    {"Iris CN1", "Iris CN1 ", {27}, {2331}, 0, 63},
    {"Iris CN2", "Iris CN2 ", {28}, {2332}, 0, 63},
    {"Iris BR0", "Iris BR0 ", {29}, {2333}, 0, 63},
    {"Iris BR1", "Iris BR1 ", {30}, {2334}, 0, 63},
    {"Iris BR2", "Iris BR2 ", {31}, {2335}, 0, 63},
    {"% DCOL", "% DCOL ", {38, 47, 56, 65}, {2353, 2389, 2425, 2461}, 0, 1},
    {"% CTIL", "% CTIL ", {39, 48, 57, 66}, {2354, 2390, 2426, 2462}, 0, 3},
    {"% DPIC", "% DPIC ", {40, 49, 58, 67}, {2355, 2391, 2427, 2463}, 0, 3},
    {"% DTC", "% DTC ", {41, 50, 59, 68}, {2356, 2392, 2428, 2464}, 0, 3},
    {"480i CLP", "Defl Jung 480i CLP ", {69}, {2507}, 0, 15},
    {"1080i CLP", "Defl Jung 1080i CLP ", {70}, {2549}, 0, 15},
};

std::string WithFormat(std::string text, std::size_t column) {
    const char* const formats[] = {"480i", "480p", "1080i", "VGA"};
    const auto place = text.find('%');
    return place == std::string::npos ? text : text.replace(place, 1, formats[column]);
}

TEST(CatalogTest, EveryCellIsWhatTheTableSays) {
    int cells = 0;
    for (const Row& row : kRows) {
        for (std::size_t column = 0; column < row.cells.size(); ++column, ++cells) {
            const int cell = row.cells[column];
            EXPECT_EQ(Cell(cell).address, row.addresses[column]) << cell;
            EXPECT_EQ(Cell(cell).setting->shift, row.shift) << cell;
            EXPECT_EQ(Cell(cell).setting->maximum, row.maximum) << cell;
            EXPECT_EQ(StatusLineName(cell), WithFormat(row.name, column));
            EXPECT_EQ(CellTitle(cell), WithFormat(row.title, column));
            EXPECT_EQ(CellAtAddress(row.addresses[column]), cell);
        }
    }
    EXPECT_EQ(cells, kCellCount);
    EXPECT_EQ(CellAtAddress(2508), std::nullopt);
}

TEST(CatalogTest, Groups) {
    const std::array<SettingGroup, kGroupCount> expected{{{0, 6, 2363, 0},
                                                          {0, 6, 2399, 6},
                                                          {0, 6, 2435, 12},
                                                          {0, 6, 2471, 18},
                                                          {0, 8, 2328, 24},
                                                          {2, 1, 2085, 32},
                                                          {0, 9, 2348, 33},
                                                          {0, 9, 2384, 42},
                                                          {0, 9, 2420, 51},
                                                          {0, 9, 2456, 60},
                                                          {0, 1, 2507, 69},
                                                          {0, 1, 2549, 70},
                                                          {4, 1, 2228, 71}}};
    EXPECT_EQ(SettingGroups, expected);
    EXPECT_EQ(GroupAtBase(2384), &SettingGroups[7]);
    EXPECT_EQ(GroupAtBase(2385), nullptr);
}

}  // namespace
}  // namespace tarnwell
