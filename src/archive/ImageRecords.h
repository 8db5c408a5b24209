// The lines of an image archive, both ways.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "archive/ArchiveFile.h"
#include "image/MemoryBuffer.h"

namespace tarnwell {

/// Header, a record for each 16 bytes that are not all erased, terminator.
std::vector<std::string> ImageRecords(const MemoryBuffer& image);

/// Stores what a file of any format whose kind was accepted gives into an erased image. It holds
/// what stood before the end, whatever that is.
[[nodiscard]] LoadEnd LoadImageRecords(ArchiveFile& file, MemoryBuffer& image);

/// The same; `end` is the address behind the last byte that the file gave.
[[nodiscard]] LoadEnd LoadImageRecords(ArchiveFile& file, MemoryBuffer& image, int& end);

/// The image of an archive that this program wrote; nothing if the file is not one, or not whole.
std::optional<MemoryBuffer> LoadOwnImage(const std::string& path);

}  // namespace tarnwell
