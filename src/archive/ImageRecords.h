// The lines of an image archive.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "image/MemoryBuffer.h"

namespace tarnwell {

inline constexpr std::string_view kImageHeader =
    "S021000048616C7620446F726E205461726E77656C6C203202024461746146696C65E7";

/// Header, a record for each 16 bytes that are not all erased, terminator.
std::vector<std::string> ImageRecords(const MemoryBuffer& image);

}  // namespace tarnwell
