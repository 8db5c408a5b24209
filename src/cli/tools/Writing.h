// What every command that writes to the device goes through: backup, question, write, verification.
#pragma once

#include "cli/tools/Device.h"

namespace tarnwell::cli {

/// A write with the texts that belong to it.
struct Writing {
    ByteValues values;
    Box question;
    std::string_view done;
    Box notVerified;
};

/// Whether somebody can agree to a write; if not, ends the command before the bus is touched.
[[nodiscard]] bool CanBeConfirmed(const Arguments& arguments, Report& report);

/// The present image of the device with what a write makes of it.
std::vector<ByteChange> ChangesOf(const ByteValues& values, const MemoryBuffer& image);

/// `image` is the device's, just read.
void WriteConfirmed(const Arguments& arguments, Device& device, Report& report,
                    const Writing& writing, const MemoryBuffer& image);

/// Writes and verifies only where the device, which was just read to hold `present`, is not as
/// wanted.
void WriteOnlyDifferences(const Arguments& arguments, Device& device, Report& report,
                          const MemoryBuffer& wanted, const MemoryBuffer& present);

}  // namespace tarnwell::cli
