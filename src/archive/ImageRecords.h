// The lines of an image archive, both ways.
#pragma once

#include <string>
#include <vector>

#include "archive/ArchiveFile.h"
#include "image/MemoryBuffer.h"

namespace tarnwell {

/// Header, a record for each 16 bytes that are not all erased, terminator.
std::vector<std::string> ImageRecords(const MemoryBuffer& image);

/// Stores the records of a file whose header was accepted into an erased image. It holds what stood
/// before the end, whatever that is.
[[nodiscard]] LoadEnd LoadImageRecords(ArchiveFile& file, MemoryBuffer& image);

}  // namespace tarnwell
