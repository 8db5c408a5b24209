// Undo and redo as the user meets them.
#pragma once

#include "editor/CellEditor.h"
#include "history/History.h"

namespace tarnwell {

class UndoCommands final : private Command {
  public:
    UndoCommands(const CommandContext& context, History& history, CellEditor& cellEditor)
        : Command(context), history_(history), cellEditor_(cellEditor) {}

    /// Takes the last change back. An open entry in the grid is committed before.
    void Undo() { Go(Direction::Undo); }

    /// Makes the change again that was taken back last.
    void Redo() { Go(Direction::Redo); }

  private:
    void Go(Direction direction);
    bool MayChangeTarget(TargetDevice target);

    History& history_;
    CellEditor& cellEditor_;
};

}  // namespace tarnwell
