// All that undo brings back, as one value.
#pragma once

#include <array>
#include <string>

#include "editor/PendingWrites.h"
#include "names/NameBook.h"
#include "settings/SettingCells.h"

namespace tarnwell {

struct Snapshot {
    MemoryBuffer buffer{};
    BufferOrigin origin{};
    GridContents grid;
    std::array<CellContents, kCellCount> cells;
    PendingRows pending;
    bool EepRead = false;
    bool BufferChanged = false;
    bool GridChanged = false;
    TargetDevice target = TargetDevice::Primary;
    std::string crc;
    NameLayers names;

    bool operator==(const Snapshot&) const = default;
};

/// The parts of the program that hold it.
struct UndoableParts {
    ProgramState& state;
    StatusBar& statusBar;
    Screen& screen;
    MemoryBuffer& buffer;
    BufferOrigin& origin;
    DataGrid& grid;
    PendingWrites& pending;
    SettingCells& cells;
    NameBook& names;

    Snapshot Take() const;

    /// Shows what differs from what they hold.
    void Restore(const Snapshot& to) const;
};

}  // namespace tarnwell
