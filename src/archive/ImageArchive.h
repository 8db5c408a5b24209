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

    /// The same with one that was used before.
    void LoadRecentImage(const std::string& path);

    using ArchiveCommand::AskToLook;

    /// The image of a file that the user picked, now or before; the buffer stays as it is. Nothing
    /// if the file is not taken as a whole, which a box has told.
    std::optional<MemoryBuffer> LookAt(const std::string& path);

    /// The same of a file that nobody picked.
    std::optional<MemoryBuffer> ReadImageFile(const std::string& path);

    enum class Discard : std::uint8_t {
        Asked,
        AskedIfChanged,  ///< since the target device was read
    };

    /// Loads an image that the program kept, as the menu does a file that is picked; one of the
    /// other device is asked about. Whether the buffer holds the whole of it now.
    bool LoadKeptImage(const KeptImage& kept, Discard present = Discard::Asked);

  private:
    static const Texts kTexts;

    std::string ProposedName() const;
    bool MayReplaceBuffer();
    bool MayDiscardImage(Discard present = Discard::Asked);
    void LoadFrom(const std::string& path);
    bool MayLoad(const ArchiveFile& file);
    bool WantsForeign(ArchiveKind kind);
    bool LoadRecords(ArchiveFile& file, const std::string& path, std::string_view loaded);
    void TellThatItStopped(LoadEnd end);
    void ShowBuffer();

    const Calendar& calendar_;
    MemoryBuffer& buffer_;
    BufferDisplays& displays_;
};

}  // namespace tarnwell
