// The image archive: a whole EEPROM image as a file of S-records.
#pragma once

#include "archive/ArchiveFile.h"
#include "archive/SRecord.h"
#include "core/Calendar.h"
#include "image/WholeDevice.h"

namespace tarnwell {

class ImageArchive final : private Command {
  public:
    ImageArchive(const CommandContext& context, const Calendar& calendar, MemoryBuffer& buffer,
                 BufferDisplays& displays);

    void SaveImage();
    void LoadImage();

    /// The same with the file `path`, a full path, which nobody is asked for.
    void LoadImageFile(const std::string& path);

  private:
    enum class Header : std::uint8_t { Accepted, Refused, Unreadable };
    enum class Records : std::uint8_t { Complete, Corrupt, Unusable };

    std::string ProposedName() const;
    [[nodiscard]] bool SaveTo(const std::string& path);
    bool MayReplaceBuffer();
    void LoadFrom(const std::string& path);
    Header CheckHeader(ArchiveReader& archive);
    void LoadBuffer(ArchiveReader& archive);
    Records StoreRecords(ArchiveReader& archive);
    void ShowBuffer();

    const Calendar& calendar_;
    MemoryBuffer& buffer_;
    BufferDisplays& displays_;
};

}  // namespace tarnwell
