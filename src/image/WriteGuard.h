// The safety net under the commands that write: what was read of a device is kept before the next
// write to it.
#pragma once

#include <array>
#include <deque>
#include <optional>
#include <string>

#include "image/MemoryBuffer.h"

namespace tarnwell {

class BackupStore {
  public:
    virtual ~BackupStore() = default;

    /// Puts a device's image on the disk, beside those kept before; false if that failed.
    [[nodiscard]] virtual bool Keep(TargetDevice device, const MemoryBuffer& image) = 0;

    /// Where the images are kept.
    virtual const std::string& Folder() const = 0;
};

class WriteGuard {
  public:
    WriteGuard(const ProgramState& state, StatusBar& statusBar, User& user, BackupStore& store);

    /// The whole target device was read. Kept is each image that differs from the one before.
    void DeviceRead(const EepromArray& image);

    /// Call before the first byte of a command that writes to the target device. Asks only if
    /// there is something to keep and that fails; false, with a status line, if the user then
    /// does not want to write.
    [[nodiscard]] bool MayWrite();

  private:
    struct Device {
        std::optional<MemoryBuffer> lastRead;
        std::deque<MemoryBuffer> unkept;  ///< in the order in which they were read
    };
    bool WantsNoBackup();
    Device& Target() { return devices_[static_cast<std::size_t>(state_.targetDevice)]; }

    const ProgramState& state_;
    StatusBar& statusBar_;
    User& user_;
    BackupStore& store_;
    std::array<Device, 2> devices_;
};

}  // namespace tarnwell
