// The forms in which an image is kept besides S-records: the bytes as they are, and Intel HEX.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "archive/ArchiveFile.h"
#include "image/MemoryBuffer.h"

namespace tarnwell {

/// The 8192 bytes as they are.
std::string PlainText(const MemoryBuffer& image);

/// Intel HEX (Intel, Hexadecimal Object File Format, revision A, 1988), as many bytes
/// a line as the S-records have; lines of nothing but FF are left out as there.
std::string IntelHexText(const MemoryBuffer& image);

/// Stores a file's records into an erased image, from the line behind the first on. `end` is the
/// address behind the last byte that it gave. BadRecord if a line is none, or its data go beyond
/// the device.
[[nodiscard]] LoadEnd LoadIntelHex(ArchiveFile& file, MemoryBuffer& image, int& end);

/// What the name says: ".bin" the plain bytes, ".hex" and ".ihx" Intel HEX, in capitals as well.
ImageFormat FormatOf(std::string_view name);

/// The image in the form that is asked for.
std::string ImageText(const MemoryBuffer& image, ImageFormat format);

}  // namespace tarnwell
