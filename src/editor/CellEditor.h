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

    /// A paste into the open entry: several bytes are entered as by Paste, and one behind 0x is
    /// the entry's new text. False for any other text, which goes where the caret is.
    bool PasteIntoEntry(std::string_view text);

    /// A character typed while the grid itself has the focus. With the editor off it enters
    /// nothing; the first time the status line says how to switch it on.
    void CharacterTyped(std::string_view character);

    /// The user scrolled the grid: an open entry is abandoned.
    void Scrolled();

    void KeyPressed(EditKey key);

    /// The user changed the edit box's text.
    void TextEdited(std::string text) { grid_.SetEditText(std::move(text)); }

    /// Commits an open entry as on leaving its cell, wherever the user goes.
    void SettleEntry();

    /// Says which byte is being edited.
    std::string Description() const;

  private:
    enum class Commit : std::uint8_t { Settled, Refused };

    void BeginCellEdit(std::string_view character);
    bool CheckEditValue();
    void TellOutOfRange();
    Commit CommitCellEdit();
    Commit LeaveCell();
    void CommitAndMove(GridCell target);
    void TellSwitch();
    bool EditorIsOn() const { return state_.editor == EditorSwitch::On; }

    DataGrid& grid_;
    PendingWrites& pending_;
    bool toldSwitch_ = false;
};

}  // namespace tarnwell
