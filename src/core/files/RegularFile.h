// Regular files, told from whatever else may have their name.
#pragma once

#include <sys/stat.h>

#include <cstdint>
#include <string>

namespace tarnwell {

enum class FileFault : std::uint8_t { None, Missing, NotRegular, TooLarge, Unreadable };

/// Opens a regular file that exists. A pipe or a device is refused unopened, so that nothing waits
/// for it and nothing happens to it.
class RegularFile {
  public:
    /// `access` as open() takes it.
    RegularFile(const std::string& path, int access);
    ~RegularFile();
    RegularFile(const RegularFile&) = delete;
    RegularFile& operator=(const RegularFile&) = delete;

    /// What keeps it from being used, if anything does.
    FileFault Fault() const { return fault_; }
    int Descriptor() const { return descriptor_; }
    const struct stat& About() const { return about_; }

  private:
    FileFault Open(const std::string& path, int access);

    struct stat about_ {};
    int descriptor_ = -1;
    FileFault fault_;
};

}  // namespace tarnwell
