// Reads a whole device, as often as the user wants, and asks before a reading that is doubtful is
// taken for what the device holds.
#pragma once

#include "command/Command.h"
#include "i2c/Mismatch.h"
#include "image/MemoryBuffer.h"

namespace tarnwell {

/// How the reading of a device ended.
enum class DeviceReading : std::uint8_t {
    Taken,
    Refused,  ///< the user does not want it; the status line says so
    Aborted,  ///< the bus is free again, and the user was told
};

class DeviceReader final : private Command {
  public:
    explicit DeviceReader(const CommandContext& context) : Command(context) {}

    /// Reads the target device after its bus check. `image`, slots 0 to 8191, and what is kept as a
    /// backup change only if the reading is taken.
    [[nodiscard]] DeviceReading Read(MemoryBuffer& image);

  private:
    [[nodiscard]] Transfer ReadPasses(std::vector<MemoryBuffer>& passes);
    bool MayUse(const std::vector<MemoryBuffer>& passes);
    bool MayUseDisagreeing(const std::vector<MemoryBuffer>& passes);
    bool MayUseBlank(const MemoryBuffer& image);
    std::string ReadingsLine(int address, const std::vector<MemoryBuffer>& passes) const;
    bool Wants(Box question, std::string details);
};

}  // namespace tarnwell
