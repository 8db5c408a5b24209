// The folder of image archives that the program keeps by itself.
#pragma once

#include "core/Calendar.h"
#include "image/WriteGuard.h"

namespace tarnwell {

/// The newest twenty images, each an ordinary image archive named by time and device:
/// Tarnwell-20261124-195230-Pri.mot. Other files in the folder are left alone.
class ImageBackups final : public BackupStore {
  public:
    ImageBackups(std::string folder, const Calendar& calendar);

    bool Keep(TargetDevice device, const MemoryBuffer& image) override;
    const std::string& Folder() const override { return folder_; }

    /// The path of the image kept last by this run, or empty.
    const std::string& LastKept() const { return lastKept_; }

  private:
    std::string FreeName(TargetDevice device) const;
    void RemoveOldest(const std::string& keptName) const;

    std::string folder_;
    std::string lastKept_;
    const Calendar& calendar_;
};

}  // namespace tarnwell
