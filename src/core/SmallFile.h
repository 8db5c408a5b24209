// Files that are read whole, because none that the program can use is large.
#pragma once

#include <cstdint>
#include <string>

namespace tarnwell {

inline constexpr std::uintmax_t kSmallFileBytes = 1U << 20U;

enum class FileFault : std::uint8_t { None, Missing, NotRegular, TooLarge, Unreadable };

struct SmallFile {
    FileFault fault = FileFault::None;
    std::string content{};
};

/// Reads the file `path` of at most kSmallFileBytes; nothing else is opened.
SmallFile ReadSmallFile(const std::string& path);

}  // namespace tarnwell
