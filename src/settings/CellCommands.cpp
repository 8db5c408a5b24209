#include "settings/CellCommands.h"

#include <algorithm>

namespace tarnwell {

bool CellCommands::CanCopy(int cell) const {
    const Setting& setting = *Cell(cell).setting;
    const auto value = cells_.Value(cell);
    return HasPlace() && value && *value <= setting.maximum &&
           std::ranges::count_if(setting.cells, &CellPlace::Exists) > 1;
}

void CellCommands::CopyToAllFormats(int cell) {
    const CommandScope scope(statusBar_);
    const std::uint8_t value = *cells_.Value(cell);
    const Setting& setting = *Cell(cell).setting;
    const Step step(steps_, {.what = std::string(setting.code) + " in All Formats", .to = value});
    for (const CellPlace& place : setting.cells) {
        if (!place.Exists() || cells_.Value(place.cell) == value)
            continue;
        cells_.ShowValue(place.cell, value);
        cells_.SetMark(place.cell, Mark::Save);
        cells_.SetColour(place.cell, CellColour::Changed);
    }
    Post(std::string(setting.code) + " Value Copied to All Formats");
}

bool CellCommands::CanRevert(int cell) const {
    const auto read = cells_.LastRead(cell);
    return HasPlace() && read && (cells_.Value(cell) != read || cells_.MarkOf(cell) == Mark::Save);
}

void CellCommands::Revert(int cell) {
    const CommandScope scope(statusBar_);
    const Step step(steps_, {"Revert of " + CellTitle(cell)});
    cells_.ShowValue(cell, *cells_.LastRead(cell));
    cells_.SetMark(cell, Mark::Clean);
    cells_.SetColour(cell, CellColour::Normal);
    Post(StatusLineName(cell) + "Value Reverted");
}

}  // namespace tarnwell
