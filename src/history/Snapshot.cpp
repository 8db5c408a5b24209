#include "history/Snapshot.h"

namespace tarnwell {

Snapshot UndoableParts::Take() const {
    Snapshot now{.buffer = buffer,
                 .origin = origin,
                 .grid = grid.Contents(),
                 .cells = {},
                 .pending = pending.Contents(),
                 .EepRead = state.EepRead,
                 .BufferChanged = state.BufferChanged,
                 .GridChanged = state.GridChanged,
                 .target = state.targetDevice,
                 .crc = std::string(statusBar.Text(Panel::Crc)),
                 .names = names.Layers()};
    for (int cell = 0; cell < kCellCount; ++cell)
        now.cells[static_cast<std::size_t>(cell)] = cells.Contents(cell);
    return now;
}

void UndoableParts::Restore(const Snapshot& to) const {
    buffer = to.buffer;
    state.EepRead = to.EepRead;
    state.BufferChanged = to.BufferChanged;
    if (state.targetDevice != to.target) {
        state.targetDevice = to.target;
        screen.Changed(Shown::Menus);
        screen.Changed(Shown::EepPanel);
    }
    if (grid.Contents() != to.grid)
        grid.SetContents(to.grid);
    if (state.GridChanged != to.GridChanged)
        grid.SetGridChanged(to.GridChanged);
    if (pending.Contents() != to.pending)
        pending.SetContents(to.pending);
    for (int cell = 0; cell < kCellCount; ++cell) {
        const CellContents& contents = to.cells[static_cast<std::size_t>(cell)];
        if (cells.Contents(cell) != contents)
            cells.SetContents(cell, contents);
    }
    if (statusBar.Text(Panel::Crc) != to.crc || origin != to.origin) {
        origin = to.origin;
        statusBar.ShowCrc(to.crc);
    }
    if (names.Layers() != to.names) {
        names.Restore(to.names);
        screen.Changed(Shown::Names);
    }
}

}  // namespace tarnwell
