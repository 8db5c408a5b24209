// Editing one setting's value: from the click on its cell to the end of the edit.
#pragma once

#include <optional>
#include <string>

#include "settings/LiveValue.h"
#include "settings/SettingsEngine.h"

namespace tarnwell {

class ValueEditor final : private Command {
  public:
    ValueEditor(const CommandContext& context, MemoryBuffer& buffer, EditorPage& editorPage,
                SettingCells& cells, SettingsView& view);

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

    /// Writes each value at once, from the one that stands now on, as LiveValue does; the timer's
    /// end is told by LiveDue. False if it does not begin.
    [[nodiscard]] bool BeginLive(Timer& timer);
    void PauseLive() { live_.Pause(); }
    void LiveDue() { live_.Due(); }
    bool IsLive() const { return live_.IsOn(); }

    /// Whether the value was written and verified as it stands.
    bool IsWritten() const { return live_.Holds(edit_->value); }

    enum class Accepted : std::uint8_t { Changed, Unchanged };

    /// OK: takes the value into the cell if it reads otherwise; the dialog stays open if not.
    Accepted Accept();

  private:
    void EditCell(int cell, std::optional<char> digit);
    Accepted EndEdit();
    void EndWritten(int cell);
    bool RefuseOnSecondary();

    struct Edit {
        int EditCellIndex;
        Mark mark;          ///< before the click
        CellColour colour;  ///< before the click
        int value;
        bool typing;             ///< the value is made of typed digits, more of which may follow
        bool isWritten = false;  ///< what was accepted
    };

    MemoryBuffer& buffer_;
    EditorPage& editorPage_;
    SettingCells& cells_;
    SettingsView& view_;
    LiveValue live_;
    std::optional<Edit> edit_;
};

}  // namespace tarnwell
