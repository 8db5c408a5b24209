#include "core/files/SmallFile.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>

namespace tarnwell {

SmallFile ReadSmallFile(const std::string& path, std::size_t most) {
    const RegularFile file(path, O_RDONLY);
    if (file.Fault() != FileFault::None)
        return {file.Fault()};
    if (static_cast<std::uintmax_t>(file.About().st_size) > most)
        return {FileFault::TooLarge};

    SmallFile read;
    std::array<char, 65536> part;
    ssize_t length = 0;
    do {
        length = ::read(file.Descriptor(), part.data(), part.size());
        if (length > 0)
            read.content.append(part.data(), static_cast<std::size_t>(length));
        if (read.content.size() > most)  // it grows
            return {FileFault::TooLarge};
    } while (length > 0 || (length < 0 && errno == EINTR));
    return length < 0 ? SmallFile{FileFault::Unreadable} : read;
}

}  // namespace tarnwell
