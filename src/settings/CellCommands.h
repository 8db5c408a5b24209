// What a value cell's menu does to the value.
#pragma once

#include "command/Command.h"
#include "settings/SettingCells.h"

namespace tarnwell {

class CellCommands final : private Command {
  public:
    CellCommands(const CommandContext& context, SettingCells& cells)
        : Command(context), cells_(cells) {}

    /// Whether the cells show values of the primary EEPROM, whose bytes the catalog knows.
    bool HasPlace() const { return state_.targetDevice == TargetDevice::Primary; }

    /// Whether the cell has a value within its range, and its setting other formats.
    bool CanCopy(int cell) const;

    /// Gives the setting this value in all its formats; what changes waits to be written.
    void CopyToAllFormats(int cell);

    /// Whether the cell differs from what was last read, or waits.
    bool CanRevert(int cell) const;

    /// Shows what was last read; the value no longer waits.
    void Revert(int cell);

  private:
    SettingCells& cells_;
};

}  // namespace tarnwell
