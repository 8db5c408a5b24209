// In-place editing of the grid: the edit box, its keys and the commit of a changed byte.
#pragma once

#include <string>
#include <string_view>

#include "editor/PendingWrites.h"

namespace tarnwell {

/// The keys that the edit box acts on itself.
enum class EditKey : std::uint8_t {
    Backspace,
    Next,      ///< Tab, Right: wraps at the ends of a row and of the grid
    Previous,  ///< Shift+Tab: wraps likewise
    Left,
    Down,  ///< Enter, Down
    Up,
    Escape,
};

class CellEditor final : private Command {
  public:
    CellEditor(const CommandContext& context, DataGrid& grid, PendingWrites& pending);

    /// A click on the current cell, or any way into it.
    void Click();

    /// Makes `cell` the current one, with the events of leaving and entering a cell; whether the
    /// old cell could be left.
    bool MoveTo(GridCell cell);

    /// Selects what lies between `cell` and where the selection began; an open entry is committed.
    void SelectTo(GridCell cell);

    /// Enters the bytes of `text` from the current cell on as if each were typed. If one of them is
    /// no byte, or has no place in the grid, the box of an entry out of range refuses them all.
    void Paste(std::string_view text);

    /// A character typed while the grid itself has the focus.
    void CharacterTyped(std::string_view character);

    /// The user scrolled the grid: an open entry is abandoned.
    void Scrolled();

    void KeyPressed(EditKey key);

    /// The user changed the edit box's text.
    void TextEdited(std::string text) { grid_.SetEditText(std::move(text)); }

    /// Commits an open entry as on leaving its cell, wherever the user goes.
    void SettleEntry();

  private:
    enum class Commit : std::uint8_t { Settled, Refused };

    void BeginCellEdit(std::string_view character);
    bool CheckEditValue();
    void TellOutOfRange();
    Commit CommitCellEdit();
    Commit LeaveCell();
    void CommitAndMove(GridCell target);
    bool EditorIsOn() const { return state_.editor == EditorSwitch::On; }

    DataGrid& grid_;
    PendingWrites& pending_;
    EditRecord record_;
};

}  // namespace tarnwell
