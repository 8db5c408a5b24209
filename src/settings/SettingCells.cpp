#include "settings/SettingCells.h"

#include <algorithm>
#include <utility>

namespace tarnwell {

SettingCells::SettingCells(const ProgramState& state, SettingsView& view)
    : state_(state), view_(view) {}

void SettingCells::ShowRead(int cell, std::uint8_t value) {
    ShowValue(cell, value);
    SetLastRead(cell, value);
}

void SettingCells::Show(int cell, const ShownByte& shown) {
    At(cell).shown = shown;
    At(cell).empty = false;
    At(cell).given = true;
    view_.SettingCellChanged(cell);
}

void SettingCells::SetMark(int cell, Mark mark) {
    At(cell).mark = mark;
    view_.SettingCellChanged(cell);
}

void SettingCells::SetColour(int cell, CellColour colour) {
    At(cell).colour = colour;
    view_.SettingCellChanged(cell);
}

void SettingCells::SetContents(int cell, CellContents contents) {
    At(cell) = std::move(contents);
    view_.SettingCellChanged(cell);
}

void SettingCells::ClearSettingCells() {
    for (int cell = 0; cell < kCellCount; ++cell) {
        At(cell).shown = {0, ""};
        At(cell).empty = true;
        At(cell).given = false;
        At(cell).lastRead.reset();
        view_.SettingCellChanged(cell);
    }
}

bool SettingCells::AnyIsEmpty() const {
    return std::ranges::any_of(cells_, &CellContents::empty);
}

bool SettingCells::AnyHasMark(Mark mark) const {
    return std::ranges::find(cells_, mark, &CellContents::mark) != cells_.end();
}

int SettingCells::WaitingOn(Page page) const {
    int waiting = 0;
    for (int cell = 0; cell < kCellCount; ++cell) {
        const bool waits = MarkOf(cell) == Mark::Save && !IsEmpty(cell);
        waiting += waits && Cell(cell).setting->page == page ? 1 : 0;
    }
    return waiting;
}

void SettingCells::ConvertNumbers(NumberMode /*mode*/) {
    for (int cell = 0; cell < kCellCount; ++cell) {
        At(cell).shown.text.reset();
        view_.SettingCellChanged(cell);
    }
}

}  // namespace tarnwell
