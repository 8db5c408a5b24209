// The image archive: a whole EEPROM image as a file of S-records.
#pragma once

#include "archive/ArchiveCommand.h"
#include "archive/ArchiveFile.h"
#include "archive/ImageBackups.h"
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

    /// The image of a file that the user picks; the buffer stays as it is. Nothing if the file is
    /// not taken as a whole, which a box has told.
    std::optional<MemoryBuffer> AskImage();

    /// The same of the file `path`.
    std::optional<MemoryBuffer> ReadImageFile(const std::string& path);

    /// Loads an image that the program kept, as the menu does a file that is picked; one of the
    /// other device is asked about.
    void LoadKeptImage(const KeptImage& kept);

  private:
    static const Texts kTexts;

    std::string ProposedName() const;
    bool MayReplaceBuffer();
    bool MayDiscardImage();
    void LoadFrom(const std::string& path);
    bool MayLoad(const ArchiveFile& file);
    bool WantsForeign(ArchiveKind kind);
    void LoadRecords(ArchiveFile& file, const std::string& path);
    void TellThatItStopped(LoadEnd end);
    void ShowBuffer();

    const Calendar& calendar_;
    MemoryBuffer& buffer_;
    BufferDisplays& displays_;
};

}  // namespace tarnwell
