// The image archive: a whole EEPROM image as a file of S-records.
#pragma once

#include "archive/ArchiveCommand.h"
#include "archive/ArchiveFile.h"
#include "core/Calendar.h"
#include "image/WholeDevice.h"

namespace tarnwell {

class ImageArchive final : private ArchiveCommand {
  public:
    ImageArchive(const CommandContext& context, const Calendar& calendar, MemoryBuffer& buffer,
                 BufferDisplays& displays);

    void SaveImage();
    void LoadImage();

    /// The same with the file `path`, a full path, which nobody is asked for.
    void LoadImageFile(const std::string& path);

  private:
    std::string ProposedName() const;
    [[nodiscard]] bool SaveTo(const std::string& path);
    bool MayReplaceBuffer();
    void LoadFrom(const std::string& path);
    bool WantsForeign(ArchiveKind kind);
    void LoadRecords(ArchiveFile& file);
    void TellThatItStopped(LoadEnd end);
    void Refuse(const Box& box);
    void ShowBuffer();

    const Calendar& calendar_;
    MemoryBuffer& buffer_;
    BufferDisplays& displays_;
};

}  // namespace tarnwell
