#include "settings/ValueEditor.h"

#include <algorithm>

#include "command/WriteTexts.h"

namespace tarnwell {

ValueEditor::ValueEditor(const CommandContext& context, MemoryBuffer& buffer,
                         EditorPage& editorPage, SettingCells& cells, SettingsView& view)
    : EditedValue(context.state),
      Command(context),
      buffer_(buffer),
      editorPage_(editorPage),
      cells_(cells),
      view_(view),
      live_(context) {}

void ValueEditor::CellClicked(int cell) {
    if (RefuseOnSecondary())
        return;
    EditCell(cell, std::nullopt);
}

void ValueEditor::CharacterTyped(int cell, char character) {
    if (!FilterKey(character, state_.numberMode) || RefuseOnSecondary())
        return;
    EditCell(cell, character);
}

bool ValueEditor::RefuseOnSecondary() {
    if (state_.targetDevice == TargetDevice::Primary)
        return false;
    const CommandScope scope(statusBar_);
    user_.ShowBox(kNoSettingsOnSecondary);
    return true;
}

void ValueEditor::EditCell(int cell, std::optional<char> digit) {
    const auto before = cells_.Value(cell);
    Step step(steps_, {});
    edit_ = Edit{cell, cells_.MarkOf(cell), cells_.Colour(cell)};
    BeginAt(StartValue());
    live_.Edit(cell);
    cells_.SetColour(cell, CellColour::Editing);
    statusBar_.StopTimer();
    statusBar_.PutInBackground(Description());
    if (digit)
        TypeDigit(*digit);
    view_.ShowFormEdit();
    if (cells_.MarkOf(cell) != Mark::Changed)
        live_.TakeBack();
    live_.End();
    if (EndEdit() == Accepted::Changed)
        step.Call({.what = CellTitle(cell), .from = before, .to = cells_.Value(cell)});
    else
        step.Forget();
}

std::string ValueEditor::Description() const {
    const int cell = edit_->EditCellIndex;
    return SettingName(cell) + ": 0 to " + Readout(Maximum()) + ", was " +
           (cells_.IsEmpty(cell) ? "empty" : cells_.Caption(cell));
}

void ValueEditor::TellRange() {
    Post(SettingName(edit_->EditCellIndex) + " goes from 0 to " + Readout(Maximum()));
}

std::string ValueEditor::Note() const {
    return live_.Holds(Value()) ? "Written" : live_.IsOn() ? "Waits" : "";
}

int ValueEditor::Maximum() const {
    return Cell(edit_->EditCellIndex).setting->maximum;
}

int ValueEditor::StartValue() const {
    return std::min<int>(cells_.Value(edit_->EditCellIndex).value_or(0), Maximum());
}

ValueEditor::Accepted ValueEditor::Accept() {
    const int cell = edit_->EditCellIndex;
    if (live_.IsOn() && !live_.Write(Value()))
        return Accepted::Unchanged;
    edit_->isWritten = live_.Holds(Value());
    if (!edit_->isWritten && !cells_.IsEmpty(cell) && Readout(Value()) == cells_.Caption(cell)) {
        cells_.SetMark(cell, Mark::False);
        return Accepted::Unchanged;
    }
    cells_.ShowValue(cell, static_cast<std::uint8_t>(Value()));
    cells_.SetMark(cell, Mark::Changed);
    return Accepted::Changed;
}

/// As a write of all values leaves them, but that no other one goes to the memory buffer.
void ValueEditor::EndWritten(int cell) {
    const std::uint8_t value = *cells_.Value(cell);
    cells_.SetLastRead(cell, value);
    cells_.SetMark(cell, Mark::Clean);
    cells_.SetColour(cell, CellColour::Normal);
    if (HoldsImage(state_, buffer_) && !state_.GridChanged && ValueIn(buffer_, cell) != value) {
        PutValue(buffer_, cell, value);
        origin_.Note(BufferChange::SettingsMerged);
        editorPage_.RefillGrid();
        state_.BufferChanged = true;
        statusBar_.ShowCrc(mCRC32::BufferCrcText(buffer_));
    }
    Post(kSettingsWritten);
}

ValueEditor::Accepted ValueEditor::EndEdit() {
    const Edit edit = *edit_;
    edit_.reset();
    if (cells_.MarkOf(edit.EditCellIndex) == Mark::Changed) {
        if (edit.isWritten) {
            EndWritten(edit.EditCellIndex);
            return Accepted::Changed;
        }
        Post(StatusLineName(edit.EditCellIndex) + "Value Changed");
        cells_.SetMark(edit.EditCellIndex, Mark::Save);
        cells_.SetColour(edit.EditCellIndex, CellColour::Changed);
        return Accepted::Changed;
    }
    Post("Value Change Aborted");
    const bool waits = edit.mark == Mark::Save;
    cells_.SetMark(edit.EditCellIndex, waits ? Mark::Save : Mark::Clean);
    cells_.SetColour(edit.EditCellIndex, waits ? edit.colour : CellColour::Normal);
    return Accepted::Unchanged;
}

}  // namespace tarnwell
