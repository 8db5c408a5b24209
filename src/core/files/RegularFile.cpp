#include "core/files/RegularFile.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

namespace tarnwell {

RegularFile::RegularFile(const std::string& path, int access) : fault_(Open(path, access)) {}

RegularFile::~RegularFile() {
    if (descriptor_ >= 0)
        close(descriptor_);
}

FileFault RegularFile::Open(const std::string& path, int access) {
    if (stat(path.c_str(), &about_) != 0)
        return errno == ENOENT || errno == ENOTDIR ? FileFault::Missing : FileFault::Unreadable;
    if (!S_ISREG(about_.st_mode))
        return FileFault::NotRegular;
    // Another file may have taken its place meanwhile.
    descriptor_ = open(path.c_str(), access | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    if (descriptor_ < 0 || fstat(descriptor_, &about_) != 0)
        return FileFault::Unreadable;
    return S_ISREG(about_.st_mode) ? FileFault::None : FileFault::NotRegular;
}

}  // namespace tarnwell
