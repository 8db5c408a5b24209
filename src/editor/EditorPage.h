// The data editor as a page: its switch, and the questions that settle the grid's edits.
#pragma once

#include "editor/CellEditor.h"

namespace tarnwell {

class EditorPage final : private Command {
  public:
    EditorPage(const CommandContext& context, DataGrid& grid, PendingWrites& pending,
               CellEditor& cellEditor, EditorView& view);

    /// A click on the editor switch.
    void ToggleEditor();

    /// Shows the text column beside the grid's numbers, or hides it.
    void ToggleTextColumn();

    /// The tab control shows `page`. Leaving the data editor with edits in the grid asks what
    /// becomes of them; entering it shows the warning.
    void SwitchPage(Page page);

    /// Turns to the page and makes the byte at `address` the current one.
    void ShowByte(int address);

    /// Commits an open entry.
    void SettleEntry() { cellEditor_.SettleEntry(); }

    /// The queue's button. What an open entry asks as the tenth is not asked again.
    void WritePending();

    /// Takes an entry of the queue back, if it is still there once an open entry was settled.
    void TakeBackPending(int row);

    /// Opening a menu whose commands work on the buffer: asks what becomes of the grid's edits.
    /// False if they stay only in the grid.
    bool SettleGridEdits();

    /// Before a command that refills the grid: asks whether edits in it may be discarded, which
    /// they are only when it comes to RefillGrid.
    bool MayRefillGrid();

    /// Fills the grid from the buffer; edits that were in it are gone.
    void RefillGrid();

    /// The same as a step of undo, where the user has agreed to it for a write.
    void DiscardGridEdits();

  private:
    bool AskAndSettle(const Message& question);
    bool AskAndDiscard();
    void ApplyEditorSwitch();
    void SetLayout(SizeMode mode);
    void ShowWarning();

    DataGrid& grid_;
    PendingWrites& pending_;
    CellEditor& cellEditor_;
    EditorView& view_;
};

}  // namespace tarnwell
