// Editing one setting's value: from the click on its cell to the end of the edit.
#pragma once

#include <optional>
#include <string>

#include "settings/EditedValue.h"
#include "settings/LiveValue.h"
#include "settings/SettingsEngine.h"

namespace tarnwell {

class ValueEditor final : public EditedValue, private Command {
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
    int Maximum() const override;

    /// The edited cell's value, at most Maximum(); 0 for an empty cell.
    int StartValue() const;

    /// Whether Live has written the value, or will.
    std::string Note() const override;

    /// OK: takes the value into the cell if it reads otherwise.
    Accepted Accept() override;

    LiveValue* Live() override { return &live_; }

  private:
    void TellRange() override;
    void Turned() override { live_.Turn(Value()); }
    void EditCell(int cell, std::optional<char> digit);
    Accepted EndEdit();
    void EndWritten(int cell);
    bool RefuseOnSecondary();

    struct Edit {
        int EditCellIndex;
        Mark mark;               ///< before the click
        CellColour colour;       ///< before the click
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
