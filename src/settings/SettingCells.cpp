#include "settings/SettingCells.h"

#include <algorithm>
#include <utility>

namespace tarnwell {

std::optional<std::uint8_t> ValueOf(const CellContents& cell, NumberMode mode) {
    if (cell.empty)
        return std::nullopt;
    return static_cast<std::uint8_t>(std::clamp(ParseNumber(cell.caption, mode), 0, 255));
}

SettingCells::SettingCells(const ProgramState& state, SettingsView& view)
    : state_(state), view_(view) {}

void SettingCells::ShowValue(int cell, std::uint8_t value) {
    SetCaption(cell, NumberText(value, state_.numberMode));
}

void SettingCells::ShowRead(int cell, std::uint8_t value) {
    ShowValue(cell, value);
    SetLastRead(cell, value);
}

void SettingCells::SetCaption(int cell, std::string caption) {
    At(cell).caption = std::move(caption);
    At(cell).empty = false;
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
        At(cell).caption.clear();
        At(cell).empty = true;
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

void SettingCells::ConvertNumbers(NumberMode mode) {
    for (int cell = 0; cell < kCellCount; ++cell) {
        At(cell).caption = ConvertedNumber(Caption(cell), mode);
        view_.SettingCellChanged(cell);
    }
}

}  // namespace tarnwell
