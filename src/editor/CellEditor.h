// In-place editing of the grid: the edit box, its keys and the commit of a changed byte.
#pragma once

#include <map>
#include <string>
#include <string_view>

#include "editor/ByteTexts.h"
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
    Side,  ///< F6: on to the text column
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

    /// Enters the bytes of `text` from the current cell on. It is hexadecimal where it cannot be
    /// decimal; where the number mode leaves it open, the user is asked. If a part of it is no
    /// byte, or has no place in the grid, the box of an entry out of range refuses them all.
    void Paste(std::string_view text);

    /// Gives all bytes of the selection a value that the user is asked for.
    void FillSelection();

    /// Enters a byte as if it were typed into its cell; false if the queue had no room for it.
    [[nodiscard]] bool EnterByte(int address, std::uint8_t value);

    /// Enters bytes by their addresses, as one step and as if each were typed, if the queue has
    /// room for all of them; else that is told.
    void EnterBytes(std::string step, const std::map<int, std::uint8_t>& bytes);

    /// A paste into the open entry: several bytes are entered as by Paste, and one that can only be
    /// hexadecimal is the entry's new text. False for any other text, which goes where the caret
    /// is.
    bool PasteIntoEntry(std::string_view text);

    /// A character typed while the grid itself has the focus: it begins an entry or, in the text
    /// column, is the byte. With the editor off it enters nothing; the first time the status line
    /// says how to switch it on.
    void CharacterTyped(std::string_view character);

    /// Goes from the numbers to the text column, if it is shown, or back.
    void ChangeSide();
    void SetSide(GridSide side);

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
    ByteReadings::Bytes PastedBytes(std::string_view text);
    void Enter(std::string_view what, int first, std::span<const std::uint8_t> bytes);
    void EnterInBuffer(std::string_view what, int first, std::span<const std::uint8_t> bytes);
    void TypeText(std::string_view character);
    Commit Put(int address, const ShownByte& after);
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
