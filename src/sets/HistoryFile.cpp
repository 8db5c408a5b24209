#include "sets/HistoryFile.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <thread>

#include "core/files/LockAttempts.h"

namespace tarnwell {

namespace {

/// More than a person's work of a life makes.
constexpr off_t kMostBytes = off_t{1} << 28U;

/// What the longest event may need.
constexpr std::uintmax_t kRoom = 1U << 20U;

constexpr std::chrono::seconds kPatience{2};

/// An open history that no other program appends to.
class LockedFile {
  public:
    explicit LockedFile(const std::string& path)
        : descriptor_(open(path.c_str(),
                           O_RDWR | O_APPEND | O_CREAT | O_NONBLOCK | O_NOCTTY | O_CLOEXEC, 0666)) {
        const auto deadline = std::chrono::steady_clock::now() + kPatience;
        isHeld_ =
            descriptor_ >= 0 && fstat(descriptor_, &about_) == 0 && S_ISREG(about_.st_mode) &&
            LockWithin([this] { return flock(descriptor_, LOCK_EX | LOCK_NB) == 0 ? 0 : -errno; },
                       [&] {
                           std::this_thread::sleep_for(kLockPause);
                           return std::chrono::steady_clock::now() < deadline;
                       }) == 0 &&
            fstat(descriptor_, &about_) == 0;
    }
    ~LockedFile() {
        if (descriptor_ >= 0)
            close(descriptor_);
    }
    LockedFile(const LockedFile&) = delete;
    LockedFile& operator=(const LockedFile&) = delete;

    bool IsHeld() const { return isHeld_; }
    int Descriptor() const { return descriptor_; }
    off_t Size() const { return about_.st_size; }

    bool EndsInLine() const {
        char last = '\n';
        return Size() == 0 || (pread(descriptor_, &last, 1, Size() - 1) == 1 && last == '\n');
    }

  private:
    struct stat about_ {};
    int descriptor_;
    bool isHeld_ = false;
};

/// A new name in a folder is on the disk only with the folder.
bool SyncFolderOf(const std::string& path) {
    const int folder =
        open(path.substr(0, path.rfind('/') + 1).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (folder < 0)
        return errno == EACCES;
    const bool synced = fsync(folder) == 0 || errno == EINVAL || errno == ENOTSUP;
    return close(folder) == 0 && synced;
}

std::string Content(const RegularFile& file) {
    std::string content(static_cast<std::size_t>(file.About().st_size), '\0');
    std::size_t length = 0;
    for (ssize_t got = 1; got > 0 && length < content.size();) {
        got = read(file.Descriptor(), content.data() + length, content.size() - length);
        if (got < 0 && errno == EINTR)
            got = 1;
        else if (got > 0)
            length += static_cast<std::size_t>(got);
    }
    content.resize(length);
    return content;
}

}  // namespace

SetHistory ReadHistory(const std::string& path) {
    const RegularFile file(path, O_RDONLY);
    SetHistory history;
    if (file.Fault() == FileFault::Missing)
        return history;
    history.fault = file.Fault();
    if (history.fault == FileFault::None && file.About().st_size > kMostBytes)
        history.fault = FileFault::TooLarge;
    if (history.fault != FileFault::None)
        return history;
    const std::string content = Content(file);
    std::string_view rest = content;
    for (int number = 1; !rest.empty(); ++number) {
        const std::size_t end = std::min(rest.find('\n'), rest.size());
        if (auto event = EventOf(rest.substr(0, end))) {
            event->number = number;
            history.events.push_back(*std::move(event));
        } else {
            ++history.skipped;
        }
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    return history;
}

std::optional<HistoryEvent> LastWrite(const std::string& path) {
    const RegularFile file(path, O_RDONLY);
    if (file.Fault() != FileFault::None || file.About().st_size > kMostBytes)
        return std::nullopt;
    const std::string content = Content(file);
    std::string_view rest = content;
    while (!rest.empty()) {
        rest.remove_suffix(rest.back() == '\n' ? 1 : 0);
        const std::size_t begin = rest.rfind('\n') + 1;
        auto event = EventOf(rest.substr(begin));
        if (event && event->kind != EventKind::Read)
            return event;
        rest = rest.substr(0, begin);
    }
    return std::nullopt;
}

bool CanAppend(const std::string& path) {
    const LockedFile file(path);
    struct statvfs disk {};
    return file.IsHeld() && file.Size() < kMostBytes &&
           (fstatvfs(file.Descriptor(), &disk) != 0 ||
            std::uintmax_t{disk.f_bavail} * disk.f_frsize >= kRoom);
}

bool AppendLine(const std::string& path, std::string line) {
    const LockedFile file(path);
    if (!file.IsHeld())
        return false;
    line += '\n';
    if (!file.EndsInLine())
        line.insert(line.begin(), '\n');
    ssize_t written = 0;
    do
        written = write(file.Descriptor(), line.data(), line.size());
    while (written < 0 && errno == EINTR);
    const bool isDone = written == static_cast<ssize_t>(line.size()) &&
                        fsync(file.Descriptor()) == 0 && (file.Size() > 0 || SyncFolderOf(path));
    if (!isDone && written > 0) {
        [[maybe_unused]] const int cut = ftruncate(file.Descriptor(), file.Size());
    }
    return isDone;
}

}  // namespace tarnwell
