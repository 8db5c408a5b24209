#include "core/SmallFile.h"

#include <filesystem>
#include <fstream>
#include <iterator>

namespace tarnwell {

namespace {

FileFault FaultOf(const std::string& path) {
    std::error_code error;
    switch (std::filesystem::status(path, error).type()) {
        case std::filesystem::file_type::not_found:
            return FileFault::Missing;
        case std::filesystem::file_type::none:
            return FileFault::Unreadable;
        case std::filesystem::file_type::regular:
            break;
        default:
            return FileFault::NotRegular;
    }
    const std::uintmax_t size = std::filesystem::file_size(path, error);
    return !error && size > kSmallFileBytes ? FileFault::TooLarge : FileFault::None;
}

}  // namespace

SmallFile ReadSmallFile(const std::string& path) {
    if (const FileFault fault = FaultOf(path); fault != FileFault::None)
        return {fault};
    std::ifstream file(path, std::ios::binary);
    std::string content(std::istreambuf_iterator<char>(file), {});
    if (!file.is_open() || file.bad())
        return {FileFault::Unreadable};
    return {FileFault::None, std::move(content)};
}

}  // namespace tarnwell
