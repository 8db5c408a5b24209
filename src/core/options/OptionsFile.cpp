#include "core/options/OptionsFile.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <thread>
#include <utility>

#include "core/files/AtomicFile.h"
#include "core/files/LockAttempts.h"
#include "core/files/SmallFile.h"
#include "core/files/UserFolders.h"

namespace tarnwell {

namespace {

/// None for a file that can be used or is absent.
const char* FaultText(FileFault fault) {
    switch (fault) {
        case FileFault::None:
        case FileFault::Missing:
            break;
        case FileFault::NotRegular:
            return "is no regular file";
        case FileFault::TooLarge:
            return "is larger than 1 MiB";
        case FileFault::Unreadable:
            return "cannot be read";
    }
    return nullptr;
}

constexpr const char* kDamaged = "is damaged: a line is neither [group] nor name=value";

std::string_view GroupOf(std::string_view keyPath) {
    return keyPath.substr(keyPath.rfind('\\') + 1);
}

/// Keeps instances of the program from saving at the same time. It ends with the process, leaves no
/// file, and nobody waits long for it: where it cannot be had, a save is in one piece all the same.
class FolderLock {
  public:
    explicit FolderLock(const std::string& folder)
        : descriptor_(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
        constexpr int kAttempts = 100;
        static_cast<void>(
            LockWithin([this] { return flock(descriptor_, LOCK_EX | LOCK_NB) == 0 ? 0 : -errno; },
                       [attempt = 0]() mutable {
                           std::this_thread::sleep_for(kLockPause);
                           return ++attempt < kAttempts;
                       }));
    }
    ~FolderLock() {
        if (descriptor_ >= 0)
            close(descriptor_);
    }
    FolderLock(const FolderLock&) = delete;
    FolderLock& operator=(const FolderLock&) = delete;

  private:
    int descriptor_;
};

}  // namespace

OptionsFile::OptionsFile(std::string path, Access access)
    : path_(std::move(path)), mayWrite_(access == Access::ReadAndWrite) {
    Load();
}

void OptionsFile::Load() {
    const SmallFile file = ReadSmallFile(path_);
    const auto groups = ParseIni(file.content);
    if (const char* const fault = groups ? FaultText(file.fault) : kDamaged) {
        std::fprintf(stderr, "tarnwell: %s %s; it stays as it is, and no options are saved.\n",
                     path_.c_str(), fault);
        mayWrite_ = false;
    }
    groups_ = groups.value_or(IniGroups{});
}

bool OptionsFile::CreateRegKey(std::string_view keyPath) {
    groups_.try_emplace(std::string(GroupOf(keyPath)));
    return true;
}

void OptionsFile::SetRegValue(std::string_view keyPath, std::string_view name,
                              std::string_view value) {
    const auto group = groups_.find(GroupOf(keyPath));
    if (group == groups_.end())
        return;
    const std::string encoded = EncodedValue(value);
    group->second.insert_or_assign(std::string(name), encoded);
    changes_[group->first].insert_or_assign(std::string(name), encoded);
}

std::string OptionsFile::QueryRegValue(std::string_view keyPath, std::string_view name) {
    const auto group = groups_.find(GroupOf(keyPath));
    if (group == groups_.end())
        return {};
    const auto value = group->second.find(name);
    return value == group->second.end() ? std::string() : DecodedValue(value->second);
}

void OptionsFile::Flush() {
    if (!mayWrite_)
        return;
    const std::string folder = std::filesystem::path(path_).parent_path();
    std::error_code ignored;
    std::filesystem::create_directories(folder, ignored);
    const FolderLock lock(folder);
    Load();  // what another instance has saved meanwhile
    MergeChanges();
    if (mayWrite_ && !Save())
        std::fprintf(stderr, "tarnwell: %s could not be saved.\n", path_.c_str());
}

void OptionsFile::MergeChanges() {
    for (auto& [group, values] : std::exchange(changes_, {})) {
        values.merge(groups_[group]);
        groups_[group] = std::move(values);
    }
}

bool OptionsFile::Save() const {
    AtomicFile file(path_);
    file.Write(IniText(groups_));
    return file.Commit();
}

std::string OptionsPath() {
    return ConfigFolder() + "/Tarnwell.ini";
}

}  // namespace tarnwell
