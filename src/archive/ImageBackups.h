// The folder of image archives that the program keeps by itself.
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "command/BufferOrigin.h"
#include "core/Calendar.h"
#include "image/MemoryBuffer.h"

namespace tarnwell {

/// An image that is kept, as its name tells.
struct KeptImage {
    std::string path;
    TargetDevice device;
    std::string timestamp;  ///< when it was kept, as Calendar::Timestamp: 20261124-195230
    int number;             ///< from 1, among those of that second
};

/// What the name of a file tells, if it is one of a kept image: Tarnwell-20260102-030405-Pri-2.mot.
std::optional<KeptImage> KeptImageAt(const std::string& path);

/// All images that are kept in a folder, newest first.
std::vector<KeptImage> KeptImagesIn(const std::string& folder);

/// Where an image of a file comes from; `end` is the address behind the last byte that it gave.
BufferOrigin OriginOf(const std::string& path, const MemoryBuffer& image, int end = kEepromBytes);

/// The newest twenty images and the oldest one of each device, each an ordinary image archive named
/// by time and device: Tarnwell-20261124-195230-Pri.mot. Other files in the folder are left alone.
class ImageBackups final {
  public:
    ImageBackups(std::string folder, const Calendar& calendar);

    /// Puts a device's image into the folder, beside those kept before; its path, empty if that
    /// failed.
    [[nodiscard]] std::string Keep(TargetDevice device, const MemoryBuffer& image);

    /// Puts a kept image right; false if that failed.
    [[nodiscard]] static bool Replace(const std::string& path, const MemoryBuffer& image);

    /// The image of a device that was kept last, if there is one.
    std::optional<MemoryBuffer> Newest(TargetDevice device) const;

    const std::string& Folder() const { return folder_; }

    /// Another folder from now on.
    void UseFolder(std::string folder) { folder_ = std::move(folder); }

    /// All of them, newest first.
    std::vector<KeptImage> All() const { return KeptImagesIn(folder_); }

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
