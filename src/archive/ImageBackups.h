// The folder of image archives that the program keeps by itself.
#pragma once

#include <string>
#include <vector>

#include "core/Calendar.h"
#include "image/WriteGuard.h"

namespace tarnwell {

/// An image that is kept, as its name tells.
struct KeptImage {
    std::string path;
    TargetDevice device;
    std::string timestamp;  ///< when it was kept, as Calendar::Timestamp: 20261124-195230
    int number;             ///< from 1, among those of that second
};

/// The newest twenty images and the oldest one of each device, each an ordinary image archive named
/// by time and device: Tarnwell-20261124-195230-Pri.mot. Other files in the folder are left alone.
class ImageBackups final : public BackupStore {
  public:
    ImageBackups(std::string folder, const Calendar& calendar);

    bool Keep(TargetDevice device, const MemoryBuffer& image) override;
    const std::string& Folder() const override { return folder_; }

    /// All of them, newest first.
    std::vector<KeptImage> All() const;

    /// The path of the newest kept image of the device that equals `image`, or empty.
    std::string PathOf(TargetDevice device, const MemoryBuffer& image) const;

    /// The path of the image kept last by this run, or empty.
    const std::string& LastKept() const { return lastKept_; }

  private:
    std::string FreeName(TargetDevice device) const;
    void RemoveOld(const std::string& keptPath) const;

    std::string folder_;
    std::string lastKept_;
    const Calendar& calendar_;
};

}  // namespace tarnwell
