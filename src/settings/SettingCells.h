// The value cells of the settings pages: their captions, marks and colours.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>

#include "core/user/NumberModeMenu.h"
#include "settings/Catalog.h"

namespace tarnwell {

/// A cell's pending mark.
enum class Mark : std::uint8_t {
    Clean,
    Changed,     ///< accepted in the value editor; the end of the edit is not handled yet
    Save,        ///< waits to be written to the EEPROM
    EepWritten,  ///< written, waits for its read-back
    False,       ///< OK was pressed without a change
};

enum class CellColour : std::uint8_t { Normal, Editing, Changed };

/// All that a cell holds.
struct CellContents {
    ShownByte shown{};
    Mark mark = Mark::Clean;
    CellColour colour = CellColour::Normal;
    bool empty = false;
    bool given = false;                      ///< a value was shown: the 0 of the start is nobody's
    std::optional<std::uint8_t> lastRead{};  ///< or found there after it was written

    bool operator==(const CellContents&) const = default;

    /// Nothing for an empty cell.
    std::optional<std::uint8_t> Value() const {
        return empty ? std::nullopt : std::optional(shown.value);
    }
};

/// What the settings tell the widgets that show them.
class SettingsView {
  public:
    virtual ~SettingsView() = default;
    virtual void SettingCellChanged(int cell) = 0;

    /// Turns to the cell's page and gives the cell the focus.
    virtual void ShowCell(int cell) = 0;

    /// Shows the value editor modally.
    virtual void ShowFormEdit() = 0;
};

class SettingCells final : public NumberDisplay {
  public:
    SettingCells(const ProgramState& state, SettingsView& view);

    std::string Caption(int cell) const { return At(cell).shown.Text(state_.numberMode); }

    /// Whether the cell holds no value. A number-mode change makes an empty cell read "0", which
    /// still is no value.
    bool IsEmpty(int cell) const { return At(cell).empty; }

    std::optional<std::uint8_t> Value(int cell) const { return At(cell).Value(); }

    /// Whether the cell shows a value that its setting does not have.
    bool IsOutOfRange(int cell) const { return Value(cell) > Cell(cell).setting->maximum; }

    void Show(int cell, const ShownByte& shown);
    void ShowValue(int cell, std::uint8_t value) { Show(cell, {value}); }

    /// Shows a value as it was read.
    void ShowRead(int cell, std::uint8_t value);

    /// The value that was last read for the cell, or found there after it was written.
    std::optional<std::uint8_t> LastRead(int cell) const { return At(cell).lastRead; }
    void SetLastRead(int cell, std::uint8_t value) { At(cell).lastRead = value; }

    Mark MarkOf(int cell) const { return At(cell).mark; }
    void SetMark(int cell, Mark mark);

    CellColour Colour(int cell) const { return At(cell).colour; }
    void SetColour(int cell, CellColour colour);

    const CellContents& Contents(int cell) const { return At(cell); }
    void SetContents(int cell, CellContents contents);

    /// Empties every caption; marks and colours stay.
    void ClearSettingCells();

    bool AnyIsEmpty() const;
    bool AnyHasMark(Mark mark) const;

    /// Whether the value is in the midst of an edit, or waits to be written.
    bool IsMarked(int cell) const {
        return MarkOf(cell) == Mark::Changed || MarkOf(cell) == Mark::Save;
    }

    /// How many values of a page wait to be written.
    int WaitingOn(Page page) const;

    void ConvertNumbers(NumberMode mode) override;

  private:
    CellContents& At(int cell) { return cells_[static_cast<std::size_t>(cell)]; }
    const CellContents& At(int cell) const { return cells_[static_cast<std::size_t>(cell)]; }

    const ProgramState& state_;
    SettingsView& view_;
    std::array<CellContents, kCellCount> cells_;
};

}  // namespace tarnwell
