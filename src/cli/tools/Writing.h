// What every command that writes to the device goes through: backup, question, write, verification.
#pragma once

#include "cli/tools/Device.h"

namespace tarnwell::cli {

/// Each value as it is, or what the device does not hold, a page at a time.
enum class How : std::uint8_t { ByteByByte, ByDifferences };

/// A write with the texts that belong to it.
struct Writing {
    ByteValues values;
    std::string question;
    std::string done;
    Box notVerified;
    How how = How::ByteByByte;
    WriteKind kind = WriteKind::Differences;  ///< of which it is judged whether it fits
    Backup keep = Backup::Always;
    Others others = Others::AsWanted;
};

inline constexpr std::string_view kOnlyPlanned = "Nothing was written. This would be:";

/// Whether somebody can agree to a write; if not, ends the command before the bus is touched.
[[nodiscard]] bool CanBeConfirmed(const Arguments& arguments, Report& report);

/// `present` is the device's image, just read.
void WriteConfirmed(const Arguments& arguments, Device& device, Report& report,
                    const Writing& writing, const MemoryBuffer& present);

}  // namespace tarnwell::cli
