// How many bytes and settings tell two images of a device apart, in numbers and in words.
#pragma once

#include <string>

#include "core/ProgramState.h"
#include "image/MemoryBuffer.h"

namespace tarnwell {

/// A byte with a setting that differs and another bit that does counts as a setting and as another
/// byte, and once among the bytes.
struct DifferenceCount {
    int bytes = 0;
    int settings = 0;
    int otherBytes = 0;  ///< with differing bits that belong to no setting
    int places = 0;      ///< runs of neighbouring other bytes
};

/// Named settings are those of the primary EEPROM.
DifferenceCount CountDifferences(TargetDevice device, const MemoryBuffer& left,
                                 const MemoryBuffer& right);

/// "14 bytes differ: 3 settings, 11 other bytes in 2 places", or "No differences".
std::string DifferencesText(const DifferenceCount& count);

/// "1 byte", "2 bytes".
std::string Counted(int count, std::string_view what);

}  // namespace tarnwell
