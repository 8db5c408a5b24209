// Editing one setting's value: from the click on its cell to the end of the edit.
#pragma once

#include <optional>
#include <string>

#include "settings/SettingsEngine.h"

namespace tarnwell {

class ValueEditor final : private Command {
  public:
    ValueEditor(const CommandContext& context, SettingCells& cells, SettingsView& view);

    /// A click on a cell: shows the value editor, and handles the edit's end when it has closed.
    void CellClicked(int cell);

    /// A character typed on a cell: does the same if it is a digit of the number mode, with which
    /// the value editor then begins.
    void CharacterTyped(int cell, char character);

    /// Whether a value is being edited.
    bool IsOpen() const { return edit_.has_value(); }

    int EditedCell() const { return edit_->EditCellIndex; }

    /// Names the edited cell, its range and the value before.
    std::string Description() const;

    /// The largest value that the edited cell takes.
    int Maximum() const;

    /// The edited cell's value, at most Maximum(); 0 for an empty cell.
    int StartValue() const;

    /// What the user has made of the value so far.
    int Value() const { return edit_->value; }

    /// The value has come to `value` other than by digits.
    void StepTo(int value);

    /// The first digit replaces the value, the next ones are put behind it. One that would lead
    /// beyond the range is told on the status line and changes nothing. False if `character` is no
    /// digit of the number mode.
    bool TypeDigit(char character);

    /// Takes the value's last digit away; without any it is 0.
    void EraseDigit();

    std::string Readout(int value) const;

    enum class Accepted : std::uint8_t { Changed, Unchanged };

    /// OK: takes the value into the cell if it reads otherwise; the dialog stays open if not.
    Accepted Accept();

  private:
    void EditCell(int cell, std::optional<char> digit);
    Accepted EndEdit();
    bool RefuseOnSecondary();

    struct Edit {
        int EditCellIndex;
        Mark mark;          ///< before the click
        CellColour colour;  ///< before the click
        int value;
        bool typing;  ///< the value is made of typed digits, more of which may follow
    };

    SettingCells& cells_;
    SettingsView& view_;
    std::optional<Edit> edit_;
};

}  // namespace tarnwell
