#include "editor/CellEditor.h"

#include <algorithm>
#include <utility>

#include "core/Words.h"

namespace tarnwell {

namespace {

constexpr Message kOutOfRangeDecimal{
    "The new value was out of range and \r\nhas been discarded. Try again.", "W A R N I N G",
    BoxStyle::Exclamation};
constexpr Message kOutOfRangeHex{
    "The new value was out of range and\r\nhas been discarded. Try again.", "W A R N I N G",
    BoxStyle::Exclamation};

constexpr Message kAskHex{"Are these bytes hexadecimal?\r\n", "P A S T E", BoxStyle::YesNoQuestion};
constexpr Message kAskIntoBuffer{"", "P A S T E", BoxStyle::YesNoQuestion};
constexpr Message kAskFillIntoBuffer{"", "F I L L", BoxStyle::YesNoQuestion};
constexpr std::size_t kBytesOfReading = 12;

/// A reading's first bytes, in `mode`.
std::string ReadingText(std::span<const std::uint8_t> bytes, NumberMode mode) {
    std::string text;
    for (const std::uint8_t byte : bytes.first(std::min(bytes.size(), kBytesOfReading)))
        text += ' ' + NumberText(byte, mode);
    return text + (bytes.size() > kBytesOfReading ? " ..." : "");
}

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
    if (EditorIsOn() && grid_.Side() == GridSide::Bytes)
        BeginCellEdit({});
}

void CellEditor::CharacterTyped(std::string_view character) {
    if (!EditorIsOn())
        TellSwitch();
    else if (grid_.Side() == GridSide::Text)
        TypeText(character);
    else
        BeginCellEdit(character);
}

void CellEditor::TypeText(std::string_view character) {
    if (character.size() != 1 || !IsCharacter(static_cast<std::uint8_t>(character.front())))
        return;
    const CommandScope scope(statusBar_);
    const int address = grid_.Current().Address();
    if (EnterByte(address, static_cast<std::uint8_t>(character.front())) &&
        address < kEepromBytes - 1)
        grid_.MoveCurrent(Stepped(grid_.Current(), 1));
}

void CellEditor::ChangeSide() {
    if (state_.textColumn)
        SetSide(grid_.Side() == GridSide::Bytes ? GridSide::Text : GridSide::Bytes);
}

void CellEditor::SetSide(GridSide side) {
    SettleEntry();
    grid_.SetSide(side);
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
    if (Put(address, after) == Commit::Settled)
        return Commit::Settled;
    grid_.SetEditText(before.Text(state_.numberMode));
    grid_.SetGridChanged(gridWasChanged);
    return Commit::Refused;
}

CellEditor::Commit CellEditor::Put(int address, const ShownByte& after) {
    if (pending_.IsFull() && !pending_.MakeRoom()) {
        Post("Pending EEP Writes Are Full; Change Discarded");
        return Commit::Refused;
    }
    const ShownByte before = grid_.Shown(GridCell::At(address));
    grid_.Enter(address, after);
    pending_.AddPendingWrite({address, before, after});
    return Commit::Settled;
}

bool CellEditor::EnterByte(int address, std::uint8_t value) {
    const CommandScope scope(statusBar_);
    const auto before = grid_.Shown(GridCell::At(address)).Byte();
    if (before == value)
        return true;
    const Step step(steps_, {.what = "Byte", .address = address, .from = before, .to = value});
    return Put(address, {value}) == Commit::Settled;
}

void CellEditor::EnterBytes(std::string step, const std::map<int, std::uint8_t>& bytes) {
    const Step kept(steps_, {std::move(step)});
    const auto changing = std::ranges::count_if(bytes, [this](const auto& byte) {
        return grid_.Shown(GridCell::At(byte.first)).Byte() != byte.second;
    });
    if (changing > 1 && changing > pending_.Room())
        return Post("Pending EEP Writes Have No Room for Two Bytes; Change Discarded");
    for (const auto& [address, value] : bytes)
        if (!EnterByte(address, value))
            return;
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
    const auto bytes = PastedBytes(text);
    const int first = grid_.Current().Address();
    if (!bytes || first + static_cast<int>(bytes->size()) > kEepromBytes)
        return TellOutOfRange();
    Enter("Paste", first, *bytes);
}

/// A single number is of the mode, if it can be.
ByteReadings::Bytes CellEditor::PastedBytes(std::string_view text) {
    const ByteReadings read = ReadingsOf(text);
    if (state_.numberMode == NumberMode::Hex)
        return read.hex;
    if (!read.AreTwo() || read.hex->size() == 1)
        return read.decimal ? read.decimal : read.hex;
    const Box question =
        Box(kAskHex)
            .WithLine("Yes: decimal" + ReadingText(*read.hex, NumberMode::Decimal))
            .WithLine("No: decimal" + ReadingText(*read.decimal, NumberMode::Decimal));
    return user_.ShowBox(question) == Answer::Yes ? read.hex : read.decimal;
}

void CellEditor::FillSelection() {
    const CommandScope scope(statusBar_);
    SettleEntry();
    const auto [first, last] = grid_.Selection();
    const int bytes = last - first + 1;
    const auto count = static_cast<std::size_t>(bytes);
    const std::string prompt = "Enter a value from 0 to " + NumberText(255, state_.numberMode) +
                               " for " + Counted(count, "byte") + "...";
    const auto answer =
        user_.AskText({prompt, "F I L L   S E L E C T I O N", NumberText(0, state_.numberMode)});
    if (!answer)
        return;
    const auto value = NumberFromText(*answer, state_.numberMode, 255);
    if (!value)
        return TellOutOfRange();
    grid_.MoveCurrent(GridCell::At(first));
    Enter("Fill", first, std::vector(count, static_cast<std::uint8_t>(*value)));
    SettleEntry();
    grid_.MoveCurrent(GridCell::At(first));
    grid_.SelectTo(GridCell::At(last));
}

/// As if each were typed, if the queue has room for those that are other than before.
void CellEditor::Enter(std::string_view what, int first, std::span<const std::uint8_t> bytes) {
    const Step step(steps_, {std::string(what) + " of " + Counted(bytes.size(), "Byte")});
    int changing = 0;
    for (int address = first; const std::uint8_t byte : bytes)
        changing += grid_.Shown(GridCell::At(address++)).Byte() == byte ? 0 : 1;
    if (changing > pending_.Room())
        return EnterInBuffer(what, first, bytes);
    for (int address = first; const std::uint8_t byte : bytes)
        if (!EnterByte(address++, byte))
            return;
    grid_.CloseEntry();
    MoveTo(GridCell::At(std::min(first + static_cast<int>(bytes.size()), kEepromBytes - 1)));
}

void CellEditor::EnterInBuffer(std::string_view what, int first,
                               std::span<const std::uint8_t> bytes) {
    const int last = first + static_cast<int>(bytes.size()) - 1;
    Box question = what == "Paste" ? kAskIntoBuffer : kAskFillIntoBuffer;
    question.text =
        std::string(what) + " " + Counted(bytes.size(), "byte") +
        "? They go into the memory buffer; Write Differences brings them to the EEProm.";
    if (user_.ShowBox(question) != Answer::Yes)
        return;
    grid_.CloseEntry();
    origin_.Note(BufferChange::BytesTransferred);
    grid_.EnterInBuffer(first, bytes);
    pending_.Forget({first, last});
    MoveTo(GridCell::At(std::min(last + 1, kEepromBytes - 1)));
    Post(Counted(bytes.size(), "Byte") + " Entered in the Memory Buffer");
}

bool CellEditor::PasteIntoEntry(std::string_view text) {
    const auto parts = SplitBytes(text);
    if (parts.size() > 1) {
        Paste(text);
        return true;
    }
    if (parts.empty())
        return false;
    const bool isHex = HasHexPrefix(parts.front());
    if (const auto [decimal, hex] = ReadingsOf(text); hex && (isHex || !decimal))
        grid_.SetEditText(NumberText(hex->front(), state_.numberMode));
    else if (isHex)
        TellOutOfRange();
    else
        return false;
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
        case EditKey::Side:
            return ChangeSide();
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
