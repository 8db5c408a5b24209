// The working copy of one EEPROM and the checksum text by which images are compared.
#pragma once

#include <string>

#include "i2c/EepromBus.h"

namespace tarnwell {

/// Slots 0 to 8191 mirror the EEPROM; slot 8192 takes a data record's byte beyond the device.
using MemoryBuffer = EepromArray;

/// Neighbouring bytes of a device.
struct ByteRange {
    int first;
    int count;
};

/// Whether the buffer was ever filled: a saved image is one still, though no flag says so.
inline bool HoldsImage(const ProgramState& state, const MemoryBuffer& buffer) {
    return state.EepRead || state.BufferChanged || buffer != MemoryBuffer{};
}

/// CRC-32 of IEEE 802.3: reflected polynomial 0xEDB88320, preset 0xFFFFFFFF, final complement.
namespace mCRC32 {

/// Fills the table and returns the preset value.
std::uint32_t MakeCrcTable();

/// Runs the CRC over the character codes of `text`.
std::uint32_t CrcAddText(std::string_view text, std::uint32_t value);

std::uint32_t CrcFinal(std::uint32_t value);

/// The checksum of slots 0 to 8191, taken over their values written in hexadecimal one after the
/// other without leading zeros; itself in upper-case hexadecimal without leading zeros.
std::string BufferCrcText(const MemoryBuffer& buffer);

}  // namespace mCRC32

}  // namespace tarnwell
