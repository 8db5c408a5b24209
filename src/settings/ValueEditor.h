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

    /// The largest value that the edited cell takes.
    int Maximum() const;

    /// The edited cell's value, at most Maximum(); 0 for an empty cell.
    int StartValue() const;

    std::string Readout(int value) const;

    enum class Accepted : std::uint8_t { Changed, Unchanged };

    /// OK: takes the readout into the cell if it differs; the dialog stays open if not.
    Accepted Accept(const std::string& readout);

  private:
    void EndEdit();

    /// The cell as it was before the click.
    struct Edit {
        int EditCellIndex;
        Mark mark;
        CellColour colour;
    };

    SettingCells& cells_;
    SettingsView& view_;
    std::optional<Edit> edit_;
};

}  // namespace tarnwell
