// Archive files as a whole: what kind a file is, its lines, and writing one.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/files/SmallFile.h"

namespace tarnwell {

inline constexpr std::string_view kImageHeader =
    "S021000048616C7620446F726E205461726E77656C6C203202024461746146696C65E7";
inline constexpr std::string_view kSettingsHeader =
    "S021000048616C7620446F726E205461726E77656C6C2032020253657474696E677390";

/// In what form a file keeps an image.
enum class ImageFormat : std::uint8_t { SRecords, Plain, IntelHex };

/// What a file is, as far as its size and its first line tell.
enum class ArchiveKind : std::uint8_t {
    Image,
    Settings,
    OtherValues,  ///< values that another program keeps, by its header no image
    Foreign,      ///< data that do not name their program
    NoSRecords,
    NoIntelHex,  ///< by its name it would be
    Empty,
    LineTooLong,  ///< the first one
    TooLarge,
    NotRegular,
    Missing,
    Unreadable,
};

/// What ended the reading of an archive's records.
enum class LoadEnd : std::uint8_t {
    Complete,
    NoTerminator,
    LineTooLong,
    BadRecord,      ///< of another type, too short for its address, or with what does not fit
    WrongChecksum,  ///< its data were taken all the same, if they go into an image
    TooManyAddresses,
};

/// An archive that is read once, from its first line to its last.
class ArchiveFile {
  public:
    explicit ArchiveFile(const std::string& path);

    /// Of what was read already, maybe from a stream. An archive of this program is of S-records
    /// whatever the format.
    ArchiveFile(SmallFile file, ImageFormat format);
    ArchiveFile(const ArchiveFile&) = delete;
    ArchiveFile& operator=(const ArchiveFile&) = delete;

    ArchiveKind Kind() const { return kind_; }
    ImageFormat Format() const { return format_; }

    /// All of it, whatever was read of it.
    const std::string& Content() const { return content_; }

    /// The next line behind the header without its line break, CR LF or LF; nothing where the file
    /// ends and where the line is longer than any record could be.
    std::optional<std::string_view> NextLine();

    /// Why there is no next line: NoTerminator or LineTooLong.
    LoadEnd EndOfLines() const;

  private:
    ArchiveKind KindOfContent();
    ArchiveKind KindOfHeader();

    std::string content_;
    std::string_view rest_;
    ImageFormat format_;
    ArchiveKind kind_;
};

/// The lines, each ended by CR LF.
std::string ArchiveText(const std::vector<std::string>& lines);

/// Writes the file `path`; false if it could not be completed, which leaves a former file of that
/// name as it was.
[[nodiscard]] bool WriteArchive(const std::string& path, std::string_view text);

}  // namespace tarnwell
