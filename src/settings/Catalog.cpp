#include "settings/Catalog.h"

#include <algorithm>

#include "core/Pages.h"

namespace tarnwell {

namespace {

std::string_view Format(const CellInfo& info) {
    return kFormats[static_cast<std::size_t>(info.column)];
}

}  // namespace

std::string StatusLineName(int cell) {
    const CellInfo& info = Cell(cell);
    const StatusName& name = info.setting->statusName;
    std::string text(name.prefix);
    if (name.withFormat)
        text.append(Format(info)).append(" ");
    return text.append(name.name);
}

std::string CellTitle(int cell) {
    const CellInfo& info = Cell(cell);
    const std::string_view group =
        info.setting->statusName.withFormat ? Format(info) : Info(info.setting->page).caption;
    return std::string(group).append(" ").append(info.setting->code);
}

std::string SettingName(int cell, char separator) {
    const CellInfo& info = Cell(cell);
    std::string name(info.setting->code);
    if (info.setting->statusName.withFormat)
        name.append(1, separator).append(Format(info));
    return name;
}

std::string BitsText(BitRange bits) {
    if (bits.lowest == bits.highest)
        return "bit " + std::to_string(bits.lowest);
    return "bits " + std::to_string(bits.lowest) + " to " + std::to_string(bits.highest);
}

std::string BitsText(int cell) {
    return BitsText(BitsOf(*Cell(cell).setting));
}

std::vector<int> CellsInOrder() {
    std::vector<int> cells;
    for (const Setting& setting : kCatalog) {
        for (const CellPlace& place : setting.cells) {
            if (place.Exists())
                cells.push_back(place.cell);
        }
    }
    return cells;
}

std::optional<int> CellAtAddress(int address) {
    const auto found = std::ranges::find(kCells, address, &CellInfo::address);
    if (found == kCells.end())
        return std::nullopt;
    return static_cast<int>(found - kCells.begin());
}

const SettingGroup* GroupAtBase(int address) {
    const auto found = std::ranges::find(SettingGroups, address, &SettingGroup::baseAddress);
    return found == SettingGroups.end() ? nullptr : &*found;
}

}  // namespace tarnwell
