#include "editor/DataGrid.h"

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
    for (std::size_t address = 0; address < texts_.size(); ++address)
        texts_[address] = NumberText(buffer_[address], state_.numberMode);
    changed_.reset();
    view_.GridRefilled();
}

void DataGrid::TransferGrid() {
    for (std::size_t address = 0; address < texts_.size(); ++address)
        buffer_[address] =
            static_cast<std::uint8_t>(ParseNumber(texts_[address], state_.numberMode));
    changed_.reset();
    view_.GridRefilled();
    SetGridChanged(false);
    statusBar_.ShowCrc(mCRC32::BufferCrcText(buffer_));
    state_.BufferChanged = true;
    statusBar_.ShowStatus("Data Grid Values Transfered to Memory Buffer", kResultSeconds);
}

void DataGrid::ConvertNumbers(NumberMode mode) {
    for (std::string& text : texts_)
        text = ConvertedNumber(text, mode);
    view_.GridRefilled();
    SetEditText(ConvertedNumber(editText_, mode));
}

const std::string& DataGrid::Text(GridCell cell) const {
    return texts_[Index(cell)];
}

std::string DataGrid::RowAddressText(int row) const {
    return NumberText(static_cast<std::uint32_t>(row * kBytesPerRow), state_.numberMode);
}

std::string DataGrid::HeadingText(int offset) const {
    return NumberText(static_cast<std::uint32_t>(offset), state_.numberMode);
}

bool DataGrid::IsChanged(GridCell cell) const {
    return changed_[Index(cell)];
}

void DataGrid::MoveCurrent(GridCell cell) {
    current_ = cell;
    view_.CurrentCellMoved();
}

void DataGrid::SetCurrentText(const std::string& text) {
    texts_[Index(current_)] = text;
    changed_.set(Index(current_));
    view_.GridCellChanged(current_);
}

void DataGrid::SetGridChanged(bool changed) {
    state_.GridChanged = changed;
    screen_.Changed(Shown::EditorCaption);
}

void DataGrid::OpenEntry(std::string text, EditSelection selection) {
    editText_ = std::move(text);
    entryIsOpen_ = true;
    view_.EditBoxOpened(selection);
}

void DataGrid::SetEditText(std::string text) {
    editText_ = std::move(text);
    view_.EditBoxTextChanged();
}

void DataGrid::AbandonEntry() {
    entryIsOpen_ = false;
    SetEditText(Text(current_));
    view_.EditBoxClosed();
}

void DataGrid::CloseEntry() {
    entryIsOpen_ = false;
    SetEditText("");
    view_.EditBoxClosed();
}

}  // namespace tarnwell
