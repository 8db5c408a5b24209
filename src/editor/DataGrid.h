// The data editor's grid: its own texts of the buffer's bytes, the current cell, the edit box.
#pragma once

#include <array>
#include <bitset>
#include <map>
#include <optional>
#include <span>
#include <string>

#include "core/Shared.h"
#include "core/user/NumberModeMenu.h"
#include "image/MemoryBuffer.h"

namespace tarnwell {

inline constexpr int kGridRows = 512;
inline constexpr int kBytesPerRow = 16;

/// A byte's cell; the columns of bytes are 1 to 16, column 0 shows the row's address.
struct GridCell {
    int row = 0;
    int column = 1;

    bool operator==(const GridCell&) const = default;
    int Address() const { return row * kBytesPerRow + column - 1; }
    static GridCell At(int address) { return {address / kBytesPerRow, address % kBytesPerRow + 1}; }
};

/// Neighbouring bytes of the grid.
struct GridRange {
    int first;  ///< address
    int last;   ///< address, not before the first
};

/// What the grid holds of each byte.
struct GridContents {
    using Bytes = std::array<std::uint8_t, kEepromBytes>;
    using Marks = std::bitset<kEepromBytes>;

    Shared<Bytes> bytes;               ///< 0 where a cell is empty
    Marks empty = ~Marks();            ///< until the grid is filled
    std::map<int, std::string> texts;  ///< by address, where one is not its byte's own
    Marks changed;                     ///< and neither transferred nor discarded yet

    bool operator==(const GridContents&) const = default;
    ShownByte At(int address) const;
    void Put(int address, const ShownByte& shown);
    bool ShowsSame(const GridContents& other, int address) const;

    /// Each cell shows its byte in its own form.
    void ForgetTexts();
};

/// In which form of the bytes the user is: their numbers, or the characters beside them.
enum class GridSide : std::uint8_t { Bytes, Text };

/// Whether the text column shows the byte as itself, which ASCII does, or as a dot.
constexpr bool IsCharacter(std::uint8_t byte) {
    return byte >= ' ' && byte <= '~';
}

enum class EditSelection : std::uint8_t { WholeText, CaretAtEnd };

/// What the data editor tells the widgets that show it.
class EditorView {
  public:
    virtual ~EditorView() = default;
    virtual void GridRefilled() = 0;  ///< every text, heading and address
    virtual void GridCellChanged(GridCell cell) = 0;
    virtual void CurrentCellMoved() = 0;
    virtual void EditBoxOpened(EditSelection selection) = 0;
    virtual void EditBoxTextChanged() = 0;
    virtual void EditBoxClosed() = 0;
    virtual void PendingWritesChanged() = 0;
    virtual void FocusGrid() = 0;

    /// Turns to the data editor's page.
    virtual void TurnToEditor() = 0;

    /// Shows the warning modally; whether the user wants to see it again.
    virtual bool ShowWarningAgain() = 0;
};

class DataGrid final : public NumberDisplay {
  public:
    DataGrid(ProgramState& state, StatusBar& statusBar, Screen& screen, MemoryBuffer& buffer,
             EditorView& view);

    /// Lays out headings and addresses; the data cells stay empty.
    void SetupGrid();

    /// Copies the whole buffer into the grid. An open entry ends.
    void FillGrid();

    /// Copies the whole grid into the buffer and refreshes its checksum.
    void TransferGrid();

    void ConvertNumbers(NumberMode mode) override;

    std::string Text(GridCell cell) const { return Shown(cell).Text(state_.numberMode); }
    ShownByte Shown(GridCell cell) const { return contents_.At(cell.Address()); }
    const GridContents::Bytes& Bytes() const { return *contents_.bytes; }
    std::string RowAddressText(int row) const;
    std::string HeadingText(int offset) const;

    const GridContents& Contents() const { return contents_; }
    void SetContents(GridContents contents);

    /// Whether the cell's byte was changed and neither transferred nor discarded yet.
    bool IsChanged(GridCell cell) const;

    GridCell Current() const { return current_; }
    void MoveCurrent(GridCell cell);

    /// Makes `cell` the current one and selects what lies between it and the one where the
    /// selection began.
    void SelectTo(GridCell cell);

    /// What is selected: at least the current cell.
    GridRange Selection() const;

    GridSide Side() const { return side_; }
    void SetSide(GridSide side);

    /// Gives a cell its edited byte.
    void Enter(int address, const ShownByte& entered);

    /// Gives the bytes from `first` on to the grid and to the buffer at once.
    void EnterInBuffer(int first, std::span<const std::uint8_t> bytes);

    /// Gives a byte what it was before an edit.
    void TakeBack(int address, const ShownByte& before);

    /// Sets or clears the mark that the grid holds edits that the buffer does not.
    void SetGridChanged(bool changed);

    bool EntryIsOpen() const { return entryIsOpen_; }
    const std::string& EditText() const { return editText_; }
    void OpenEntry(std::string text, EditSelection selection);

    /// What the user or the program made of the edit box's text.
    void SetEditText(std::string text);

    /// Hides the edit box; it holds the current cell's text again.
    void AbandonEntry();

    /// Hides the edit box and empties it.
    void CloseEntry();

  private:
    void Move(GridCell cell, std::optional<GridCell> anchor);
    void EndEntry(std::string text);
    void ShowBufferChanged();
    static std::size_t Index(GridCell cell) { return static_cast<std::size_t>(cell.Address()); }

    ProgramState& state_;
    StatusBar& statusBar_;
    Screen& screen_;
    MemoryBuffer& buffer_;
    EditorView& view_;
    GridContents contents_;
    GridCell current_;
    std::optional<GridCell> anchor_;  ///< where the selection began
    GridSide side_ = GridSide::Bytes;
    std::string editText_;
    bool entryIsOpen_ = false;
};

}  // namespace tarnwell
