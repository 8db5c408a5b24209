// Files that are read whole, because none that the program can use is large.
#pragma once

#include <cstddef>

#include "core/files/RegularFile.h"

namespace tarnwell {

inline constexpr std::size_t kSmallFileBytes = 1U << 20U;

struct SmallFile {
    FileFault fault = FileFault::None;
    std::string content{};
};

/// Reads the regular file `path` of at most `most` bytes; of a larger one nothing is read.
SmallFile ReadSmallFile(const std::string& path, std::size_t most = kSmallFileBytes);

}  // namespace tarnwell
