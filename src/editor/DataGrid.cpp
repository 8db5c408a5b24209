#include "editor/DataGrid.h"

#include <algorithm>
#include <utility>

namespace tarnwell {

ShownByte GridContents::At(int address) const {
    const auto index = static_cast<std::size_t>(address);
    if (empty[index])
        return {0, ""};
    const auto text = texts.find(address);
    return {(*bytes)[index], text == texts.end() ? std::nullopt : std::optional(text->second)};
}

void GridContents::Put(int address, const ShownByte& shown) {
    const auto index = static_cast<std::size_t>(address);
    bytes.Edit()[index] = shown.value;
    empty[index] = !shown.Byte();
    texts.erase(address);
    if (shown.text && shown.Byte())
        texts.emplace(address, *shown.text);
}

bool GridContents::ShowsSame(const GridContents& other, int address) const {
    const auto index = static_cast<std::size_t>(address);
    const bool ownForms = texts.empty() && other.texts.empty();
    return (*bytes)[index] == (*other.bytes)[index] && empty[index] == other.empty[index] &&
           (ownForms || At(address) == other.At(address));
}

void GridContents::ForgetTexts() {
    empty.reset();
    texts.clear();
}

DataGrid::DataGrid(ProgramState& state, StatusBar& statusBar, Screen& screen, MemoryBuffer& buffer,
                   EditorView& view)
    : state_(state), statusBar_(statusBar), screen_(screen), buffer_(buffer), view_(view) {}

void DataGrid::SetupGrid() {
    view_.GridRefilled();
}

void DataGrid::FillGrid() {
    CloseEntry();
    std::copy_n(buffer_.begin(), kEepromBytes, contents_.bytes.Edit().begin());
    contents_.ForgetTexts();
    contents_.changed.reset();
    view_.GridRefilled();
}

void DataGrid::TransferGrid() {
    std::ranges::copy(Bytes(), buffer_.begin());
    contents_.changed.reset();
    ShowBufferChanged();
    statusBar_.ShowStatus("Data Grid Values Transfered to Memory Buffer", kResultSeconds);
}

void DataGrid::ShowBufferChanged() {
    view_.GridRefilled();
    SetGridChanged(contents_.changed.any());
    statusBar_.ShowCrc(mCRC32::BufferCrcText(buffer_));
    state_.BufferChanged = true;
}

void DataGrid::ConvertNumbers(NumberMode mode) {
    contents_.ForgetTexts();
    view_.GridRefilled();
    SetEditText(ConvertedNumber(editText_, mode));
}

void DataGrid::SetContents(GridContents contents) {
    contents_ = std::move(contents);
    view_.GridRefilled();
}

std::string DataGrid::RowAddressText(int row) const {
    return NumberText(static_cast<std::uint32_t>(row * kBytesPerRow), state_.numberMode);
}

std::string DataGrid::HeadingText(int offset) const {
    return NumberText(static_cast<std::uint32_t>(offset), state_.numberMode);
}

bool DataGrid::IsChanged(GridCell cell) const {
    return contents_.changed[Index(cell)];
}

void DataGrid::MoveCurrent(GridCell cell) {
    Move(cell, std::nullopt);
}

void DataGrid::SelectTo(GridCell cell) {
    Move(cell, anchor_.value_or(current_));
}

void DataGrid::Move(GridCell cell, std::optional<GridCell> anchor) {
    current_ = cell;
    anchor_ = anchor;
    view_.CurrentCellMoved();
    statusBar_.ShowBackground();
}

GridRange DataGrid::Selection() const {
    const int current = current_.Address();
    const int anchor = anchor_.value_or(current_).Address();
    return {std::min(current, anchor), std::max(current, anchor)};
}

void DataGrid::SetSide(GridSide side) {
    side_ = side;
    view_.CurrentCellMoved();
}

void DataGrid::Enter(int address, const ShownByte& entered) {
    contents_.Put(address, entered);
    contents_.changed.set(static_cast<std::size_t>(address));
    view_.GridCellChanged(GridCell::At(address));
    SetGridChanged(true);
}

void DataGrid::EnterInBuffer(int first, std::span<const std::uint8_t> bytes) {
    for (int address = first; const std::uint8_t byte : bytes) {
        const auto index = static_cast<std::size_t>(address);
        buffer_[index] = byte;
        contents_.Put(address++, {byte});
        contents_.changed.reset(index);
    }
    ShowBufferChanged();
}

void DataGrid::TakeBack(int address, const ShownByte& before) {
    const auto index = static_cast<std::size_t>(address);
    contents_.Put(address, before);
    contents_.changed.set(index, before.value != buffer_[index]);
    view_.GridCellChanged(GridCell::At(address));
    SetGridChanged(contents_.changed.any());
}

void DataGrid::SetGridChanged(bool changed) {
    state_.GridChanged = changed;
    screen_.Changed(Shown::EditorCaption);
}

void DataGrid::OpenEntry(std::string text, EditSelection selection) {
    anchor_.reset();
    editText_ = std::move(text);
    entryIsOpen_ = true;
    view_.EditBoxOpened(selection);
}

void DataGrid::SetEditText(std::string text) {
    editText_ = std::move(text);
    view_.EditBoxTextChanged();
}

void DataGrid::AbandonEntry() {
    EndEntry(Text(current_));
}

void DataGrid::CloseEntry() {
    EndEntry("");
}

void DataGrid::EndEntry(std::string text) {
    entryIsOpen_ = false;
    SetEditText(std::move(text));
    view_.EditBoxClosed();
    statusBar_.ShowBackground();
}

}  // namespace tarnwell
