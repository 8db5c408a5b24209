// Files that appear under their name only when they are complete and on the disk.
#include "core/AtomicFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <utility>

namespace tarnwell {

namespace {

constexpr mode_t kPermissionBits = 07777;

std::string PartName(const std::string& name) {
    return name + ".part";
}

bool KeepPermissions(int part, const std::string& name) {
    struct stat before {};
    struct stat now {};
    if (stat(name.c_str(), &before) != 0)
        return errno == ENOENT;
    if (fstat(part, &now) != 0)
        return false;
    const mode_t wanted = before.st_mode & kPermissionBits;
    return (now.st_mode & kPermissionBits) == wanted || fchmod(part, wanted) == 0;
}

/// Some file systems cannot do this, or the folder may only be written: no failure.
bool SyncFolderOf(const std::string& name) {
    const std::size_t slash = name.rfind('/');
    const std::string folder = slash == std::string::npos ? "." : name.substr(0, slash + 1);
    const int descriptor = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0)
        return errno == EACCES;
    const bool synced = fsync(descriptor) == 0 || errno == EINVAL || errno == ENOTSUP;
    return close(descriptor) == 0 && synced;
}

}  // namespace

AtomicFile::AtomicFile(std::string name)
    : name_(std::move(name)),
      descriptor_(open(PartName(name_).c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666)),
      failed_(descriptor_ < 0) {}

AtomicFile::~AtomicFile() {
    if (descriptor_ >= 0)
        close(descriptor_);
}

void AtomicFile::Write(std::string_view bytes) {
    while (!failed_ && !bytes.empty()) {
        const ssize_t written = write(descriptor_, bytes.data(), bytes.size());
        if (written > 0)
            bytes.remove_prefix(static_cast<std::size_t>(written));
        else
            failed_ = written == 0 || errno != EINTR;
    }
}

bool AtomicFile::Commit() {
    failed_ = failed_ || !KeepPermissions(descriptor_, name_) || fsync(descriptor_) != 0;
    const int descriptor = std::exchange(descriptor_, -1);
    if (descriptor >= 0 && close(descriptor) != 0)
        failed_ = true;
    failed_ =
        failed_ || std::rename(PartName(name_).c_str(), name_.c_str()) != 0 || !SyncFolderOf(name_);
    return !failed_;
}

}  // namespace tarnwell
