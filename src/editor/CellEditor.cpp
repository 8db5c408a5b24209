#include "editor/CellEditor.h"

#include <algorithm>
#include <utility>

#include "core/Words.h"
#include "editor/ByteTexts.h"

namespace tarnwell {

namespace {

constexpr Message kOutOfRangeDecimal{
    "The new value was out of range and \r\nhas been discarded. Try again.", "W A R N I N G",
    BoxStyle::Exclamation};
constexpr Message kOutOfRangeHex{
    "The new value was out of range and\r\nhas been discarded. Try again.", "W A R N I N G",
    BoxStyle::Exclamation};

/// The cell `steps` bytes further, from the grid's end on at its start and the reverse.
GridCell Stepped(GridCell cell, int steps) {
    return GridCell::At((cell.Address() + steps + kEepromBytes) % kEepromBytes);
}

/// `text`, in UTF-8, without its last character.
std::string WithoutLastCharacter(std::string text) {
    const auto isContinuation = [](char byte) {
        return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
    };
    while (!text.empty() && isContinuation(text.back()))
        text.pop_back();
    if (!text.empty())
        text.pop_back();
    return text;
}

std::string TypedText(std::string_view character, NumberMode mode) {
    if (character.size() == 1) {
        if (const auto capital = FilterKey(character.front(), mode))
            return {*capital};
    }
    return std::string(character);
}

}  // namespace

CellEditor::CellEditor(const CommandContext& context, DataGrid& grid, PendingWrites& pending)
    : Command(context), grid_(grid), pending_(pending) {}

void CellEditor::Click() {
    if (EditorIsOn())
        BeginCellEdit({});
}

void CellEditor::CharacterTyped(std::string_view character) {
    if (EditorIsOn())
        BeginCellEdit(character);
    else
        TellSwitch();
}

void CellEditor::TellSwitch() {
    if (!std::exchange(toldSwitch_, true))
        Post("Data Editor Is Off; Click OFF Above the Grid to Change Bytes");
}

void CellEditor::Scrolled() {
    if (grid_.EntryIsOpen())
        grid_.AbandonEntry();
}

void CellEditor::BeginCellEdit(std::string_view character) {
    const bool typed = !character.empty() && static_cast<unsigned char>(character.front()) > ' ';
    if (typed)
        grid_.OpenEntry(TypedText(character, state_.numberMode), EditSelection::CaretAtEnd);
    else
        grid_.OpenEntry(grid_.Text(grid_.Current()), EditSelection::WholeText);
    statusBar_.StopTimer();
    statusBar_.PutInBackground(Description());
}

std::string CellEditor::Description() const {
    return "Editing EEPROM Address: " +
           NumberText(static_cast<std::uint32_t>(grid_.Current().Address()), state_.numberMode);
}

bool CellEditor::CheckEditValue() {
    if (ByteFromText(grid_.EditText(), state_.numberMode))
        return true;
    grid_.SetEditText(grid_.Text(grid_.Current()));
    TellOutOfRange();
    return false;
}

void CellEditor::TellOutOfRange() {
    user_.ShowBox(state_.numberMode == NumberMode::Decimal ? kOutOfRangeDecimal : kOutOfRangeHex);
}

CellEditor::Commit CellEditor::CommitCellEdit() {
    const int address = grid_.Current().Address();
    const ShownByte before = grid_.Shown(grid_.Current());
    if (!grid_.EntryIsOpen() || grid_.EditText() == before.Text(state_.numberMode))
        return Commit::Settled;
    const ShownByte after = ShownByteFrom(grid_.EditText(), state_.numberMode);

    Step step(steps_,
              {.what = "Byte", .address = address, .from = before.Byte(), .to = after.value});
    const bool gridWasChanged = state_.GridChanged;
    grid_.SetGridChanged(true);
    if (!CheckEditValue()) {
        step.Forget();
        return Commit::Settled;
    }
    if (pending_.IsFull() && !pending_.MakeRoom()) {
        grid_.SetEditText(before.Text(state_.numberMode));
        grid_.SetGridChanged(gridWasChanged);
        statusBar_.ShowStatus("Pending EEP Writes Are Full; Change Discarded", kResultSeconds);
        return Commit::Refused;
    }
    grid_.EnterCurrent(after);
    grid_.SetGridChanged(true);
    pending_.AddPendingWrite({address, before, after});
    return Commit::Settled;
}

CellEditor::Commit CellEditor::LeaveCell() {
    if (!EditorIsOn() || !grid_.EntryIsOpen())
        return Commit::Settled;
    if (!grid_.EditText().empty() && CommitCellEdit() == Commit::Refused)
        return Commit::Refused;
    grid_.CloseEntry();
    return Commit::Settled;
}

bool CellEditor::MoveTo(GridCell cell) {
    const CommandScope scope(statusBar_);
    if (cell == grid_.Current())
        return true;
    if (LeaveCell() == Commit::Refused)
        return false;
    grid_.MoveCurrent(cell);
    Click();
    return true;
}

void CellEditor::SelectTo(GridCell cell) {
    const CommandScope scope(statusBar_);
    if (LeaveCell() == Commit::Settled)
        grid_.SelectTo(cell);
}

void CellEditor::Paste(std::string_view text) {
    if (!EditorIsOn())
        return TellSwitch();
    const CommandScope scope(statusBar_);
    const auto bytes = BytesFromText(text, state_.numberMode);
    const int first = grid_.Current().Address();
    if (!bytes || first + static_cast<int>(bytes->size()) > kEepromBytes)
        return TellOutOfRange();
    const Step step(steps_, {"Paste of " + Counted(bytes->size(), "Byte")});
    for (const std::uint8_t byte : *bytes) {
        BeginCellEdit({});
        grid_.SetEditText(NumberText(byte, state_.numberMode));
        if (CommitCellEdit() == Commit::Refused)
            return;
        if (grid_.Current().Address() < kEepromBytes - 1)
            MoveTo(Stepped(grid_.Current(), 1));
    }
}

bool CellEditor::PasteIntoEntry(std::string_view text) {
    const auto parts = SplitBytes(text);
    if (parts.size() > 1) {
        Paste(text);
        return true;
    }
    if (parts.empty() || !HasHexPrefix(parts.front()))
        return false;
    if (const auto bytes = BytesFromText(text, state_.numberMode))
        grid_.SetEditText(NumberText(bytes->front(), state_.numberMode));
    else
        TellOutOfRange();
    return true;
}

void CellEditor::SettleEntry() {
    const CommandScope scope(statusBar_);
    if (LeaveCell() == Commit::Refused)
        grid_.CloseEntry();
}

void CellEditor::KeyPressed(EditKey key) {
    const GridCell cell = grid_.Current();
    switch (key) {
        case EditKey::Backspace:
            grid_.SetEditText(WithoutLastCharacter(grid_.EditText()));
            return;
        case EditKey::Escape:
            grid_.AbandonEntry();
            return;
        case EditKey::Next:
            return CommitAndMove(Stepped(cell, 1));
        case EditKey::Previous:
            return CommitAndMove(Stepped(cell, -1));
        case EditKey::Left:
            return CommitAndMove({cell.row, std::max(cell.column - 1, 1)});
        case EditKey::Down:
            return CommitAndMove({std::min(cell.row + 1, kGridRows - 1), cell.column});
        case EditKey::Up:
            return CommitAndMove({std::max(cell.row - 1, 0), cell.column});
    }
}

void CellEditor::CommitAndMove(GridCell target) {
    const CommandScope scope(statusBar_);
    // A cell is itself empty until the grid is filled for the first time.
    const bool emptied = grid_.EditText().empty() && !grid_.Text(grid_.Current()).empty();
    if (grid_.EntryIsOpen() && emptied)
        grid_.SetEditText("0");
    if (CommitCellEdit() == Commit::Settled)
        MoveTo(target);
}

}  // namespace tarnwell
