#include "editor/DataGrid.h"

#include <algorithm>
#include <utility>

namespace tarnwell {

DataGrid::DataGrid(ProgramState& state, StatusBar& statusBar, Screen& screen, MemoryBuffer& buffer,
                   EditorView& view)
    : state_(state), statusBar_(statusBar), screen_(screen), buffer_(buffer), view_(view) {}

void DataGrid::SetupGrid() {
    view_.GridRefilled();
}

void DataGrid::FillGrid() {
    CloseEntry();
    auto& texts = contents_.texts.Edit();
    for (std::size_t address = 0; address < texts.size(); ++address)
        texts[address] = NumberText(buffer_[address], state_.numberMode);
    contents_.changed.reset();
    view_.GridRefilled();
}

void DataGrid::TransferGrid() {
    std::ranges::copy(Bytes(), buffer_.begin());
    contents_.changed.reset();
    view_.GridRefilled();
    SetGridChanged(false);
    statusBar_.ShowCrc(mCRC32::BufferCrcText(buffer_));
    state_.BufferChanged = true;
    statusBar_.ShowStatus("Data Grid Values Transfered to Memory Buffer", kResultSeconds);
}

void DataGrid::ConvertNumbers(NumberMode mode) {
    for (std::string& text : contents_.texts.Edit())
        text = ConvertedNumber(text, mode);
    view_.GridRefilled();
    SetEditText(ConvertedNumber(editText_, mode));
}

const std::string& DataGrid::Text(GridCell cell) const {
    return (*contents_.texts)[Index(cell)];
}

void DataGrid::SetContents(GridContents contents) {
    contents_ = std::move(contents);
    view_.GridRefilled();
}

std::array<std::uint8_t, kEepromBytes> DataGrid::Bytes() const {
    std::array<std::uint8_t, kEepromBytes> bytes{};
    std::ranges::transform(*contents_.texts, bytes.begin(), [this](const std::string& text) {
        return static_cast<std::uint8_t>(ParseNumber(text, state_.numberMode));
    });
    return bytes;
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

std::string DataGrid::SelectionText() const {
    const GridRange selection = Selection();
    std::string text = Text(GridCell::At(selection.first));
    for (int address = selection.first + 1; address <= selection.last; ++address)
        text.append(" ").append(Text(GridCell::At(address)));
    return text;
}

void DataGrid::SetCurrentText(const std::string& text) {
    contents_.texts.Edit()[Index(current_)] = text;
    contents_.changed.set(Index(current_));
    view_.GridCellChanged(current_);
}

void DataGrid::TakeBackText(int address, const std::string& text) {
    const GridCell cell = GridCell::At(address);
    contents_.texts.Edit()[Index(cell)] = text;
    contents_.changed.set(Index(cell), ParseNumber(text, state_.numberMode) !=
                                           buffer_[static_cast<std::size_t>(address)]);
    view_.GridCellChanged(cell);
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
