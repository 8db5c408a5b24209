#include "settings/ValueEditor.h"

#include <algorithm>

#include "image/WriteTexts.h"

namespace tarnwell {

ValueEditor::ValueEditor(const CommandContext& context, SettingCells& cells, SettingsView& view)
    : Command(context), cells_(cells), view_(view) {}

void ValueEditor::CellClicked(int cell) {
    if (state_.targetDevice == TargetDevice::Secondary) {
        const CommandScope scope(statusBar_);
        user_.ShowBox(kNoSettingsOnSecondary);
        return;
    }
    edit_ = Edit{cell, cells_.MarkOf(cell), cells_.Colour(cell)};
    cells_.SetColour(cell, CellColour::Editing);
    view_.ShowFormEdit();
    EndEdit();
}

int ValueEditor::Maximum() const {
    return Cell(edit_->EditCellIndex).setting->maximum;
}

int ValueEditor::StartValue() const {
    return std::min<int>(cells_.Value(edit_->EditCellIndex).value_or(0), Maximum());
}

std::string ValueEditor::Readout(int value) const {
    return NumberText(static_cast<std::uint32_t>(value), state_.numberMode);
}

ValueEditor::Accepted ValueEditor::Accept(const std::string& readout) {
    const int cell = edit_->EditCellIndex;
    if (!cells_.IsEmpty(cell) && readout == cells_.Caption(cell)) {
        cells_.SetMark(cell, Mark::False);
        return Accepted::Unchanged;
    }
    cells_.SetCaption(cell, readout);
    cells_.SetMark(cell, Mark::Changed);
    return Accepted::Changed;
}

void ValueEditor::EndEdit() {
    const Edit edit = *edit_;
    edit_.reset();
    if (cells_.MarkOf(edit.EditCellIndex) == Mark::Changed) {
        Post(StatusLineName(edit.EditCellIndex) + "Value Changed");
        cells_.SetMark(edit.EditCellIndex, Mark::Save);
        cells_.SetColour(edit.EditCellIndex, CellColour::Changed);
        return;
    }
    Post("Value Change Aborted");
    const bool waits = edit.mark == Mark::Save;
    cells_.SetMark(edit.EditCellIndex, waits ? Mark::Save : Mark::Clean);
    cells_.SetColour(edit.EditCellIndex, waits ? edit.colour : CellColour::Normal);
}

}  // namespace tarnwell
