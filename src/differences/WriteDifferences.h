// The command "Write Differences to EEP".
#pragma once

#include "differences/DifferenceWriter.h"
#include "image/Command.h"
#include "image/DeviceReader.h"

namespace tarnwell {

class WriteDifferences final : private Command {
  public:
    WriteDifferences(const CommandContext& context, DeviceReader& reader,
                     const MemoryBuffer& buffer);

    /// Brings the target device to the memory buffer, after a question that names what changes.
    /// Marks, pending writes and the state's flags stay as they are.
    void WriteDifferencesToEep();

  private:
    bool MayWrite(const MemoryBuffer& present);
    void WriteAndTell(const MemoryBuffer& present);
    void TellLeft(const DifferenceWriter& writer);

    DeviceReader& reader_;
    const MemoryBuffer& buffer_;
};

}  // namespace tarnwell
