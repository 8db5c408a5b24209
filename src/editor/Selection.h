// What is done with the bytes that are selected in the grid, besides changing them.
#pragma once

#include <string>

#include "command/Command.h"
#include "editor/DataGrid.h"

namespace tarnwell {

class Selection final : private Command {
  public:
    Selection(const CommandContext& context, const DataGrid& grid)
        : Command(context), grid_(grid) {}

    bool IsOfSeveral() const { return grid_.Selection().first != grid_.Selection().last; }

    /// The texts that are shown, but of hexadecimals two digits each, with blanks between them.
    std::string Text(NumberMode mode) const;

    /// "2401 to 2403: 3 bytes, sum 3F, CRC32 352441C2": the sum modulo 65536, and the checksum that
    /// the status bar shows of a whole image, both in hexadecimal.
    std::string Summary() const;

    /// Saves the bytes as they are as a file that the user is asked for.
    void Save();

  private:
    std::span<const std::uint8_t> Bytes() const;

    const DataGrid& grid_;
};

}  // namespace tarnwell
