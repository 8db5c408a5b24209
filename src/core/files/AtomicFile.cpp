// Files that appear under their name only when they are complete and on the disk.
#include "core/files/AtomicFile.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <random>
#include <utility>

#include "core/files/RegularFile.h"

namespace tarnwell {

namespace {

constexpr mode_t kPermissionBits = 07777;
constexpr int kMostLinks = 40;  // as the kernel
constexpr int kAttempts = 100;

/// What the name stands for when symbolic links are followed, whether that exists or not.
std::string Followed(std::filesystem::path name) {
    for (int link = 0; link < kMostLinks; ++link) {
        std::error_code noLink;
        const std::filesystem::path target = std::filesystem::read_symlink(name, noLink);
        if (noLink)
            break;
        name = name.parent_path() / target;
    }
    return name;
}

constexpr std::string_view kPartPrefix = ".tarnwell-";
constexpr std::size_t kPartDigits = 8;

/// Short, so that it can stand beside the longest name.
std::string RandomName() {
    char digits[kPartDigits + 1];
    std::snprintf(digits, sizeof digits, "%08x", std::random_device{}());
    return std::string(kPartPrefix) + digits;
}

bool IsPartName(std::string_view name) {
    return name.size() == kPartPrefix.size() + kPartDigits && name.starts_with(kPartPrefix) &&
           name.find_first_not_of("0123456789abcdef", kPartPrefix.size()) == std::string_view::npos;
}

/// Whoever writes a part holds its lock, but for a moment behind its creation.
void RemoveIfLeft(const std::string& part) {
    constexpr std::time_t kSeconds = 60;
    const RegularFile file(part, O_RDONLY | O_NOFOLLOW);
    if (file.Fault() == FileFault::None && std::time(nullptr) - file.About().st_mtime > kSeconds &&
        flock(file.Descriptor(), LOCK_EX | LOCK_NB) == 0)
        unlink(part.c_str());
}

/// What killed programs have left in the folder.
void RemoveLeftParts(const std::string& folder) {
    std::error_code failed;
    for (std::filesystem::directory_iterator entry(folder.empty() ? "." : folder, failed), end;
         !failed && entry != end; entry.increment(failed)) {
        if (IsPartName(entry->path().filename().native()))
            RemoveIfLeft(entry->path());
    }
}

}  // namespace

AtomicFile::AtomicFile(const std::string& name)
    : name_(Followed(name)),
      folder_(name_.substr(0, name_.rfind('/') + 1)),
      failed_(!LookAtFormer(name) || !Create()) {}

AtomicFile::~AtomicFile() {
    if (descriptor_ >= 0)
        close(descriptor_);
    if (!part_.empty())
        unlink(part_.c_str());
    if (lock_ >= 0)
        close(lock_);
}

bool AtomicFile::LookAtFormer(const std::string& name) {
    const RegularFile former(name, O_WRONLY);
    if (former.Fault() == FileFault::None)
        permissions_ = former.About().st_mode & kPermissionBits;
    return former.Fault() == FileFault::None || former.Fault() == FileFault::Missing;
}

bool AtomicFile::Create() {
    RemoveLeftParts(folder_);
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
        std::string part = folder_ + RandomName();
        descriptor_ =
            open(part.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0666);
        if (descriptor_ >= 0)
            part_ = std::move(part);
        if (descriptor_ >= 0 || errno != EEXIST)
            break;
    }
    lock_ = fcntl(descriptor_, F_DUPFD_CLOEXEC, 0);
    if (lock_ >= 0)
        static_cast<void>(flock(lock_, LOCK_EX | LOCK_NB));
    return descriptor_ >= 0;
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
    failed_ = failed_ || !KeepPermissions() || fsync(descriptor_) != 0 || !Close() ||
              std::rename(part_.c_str(), name_.c_str()) != 0;
    if (failed_)
        return false;
    part_.clear();
    return SyncFolder();
}

bool AtomicFile::KeepPermissions() const {
    struct stat now {};
    if (!permissions_)
        return true;
    if (fstat(descriptor_, &now) != 0)
        return false;
    return (now.st_mode & kPermissionBits) == *permissions_ ||
           fchmod(descriptor_, *permissions_) == 0;
}

bool AtomicFile::Close() {
    return close(std::exchange(descriptor_, -1)) == 0;
}

/// Some file systems cannot do this, or the folder may only be written: no failure.
bool AtomicFile::SyncFolder() const {
    const char* const folder = folder_.empty() ? "." : folder_.c_str();
    const int descriptor = open(folder, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0)
        return errno == EACCES;
    const bool synced = fsync(descriptor) == 0 || errno == EINVAL || errno == ENOTSUP;
    return close(descriptor) == 0 && synced;
}

}  // namespace tarnwell
