#include "archive/ArchiveFile.h"

#include <algorithm>

#include "archive/ImageFormat.h"
#include "archive/SRecord.h"
#include "core/files/AtomicFile.h"

namespace tarnwell {

namespace {

constexpr std::string_view kLineEnd = "\r\n";

/// Far beyond the 514 characters of the longest record.
constexpr std::size_t kLongestLine = 65536;

ArchiveKind KindOf(FileFault fault) {
    switch (fault) {
        case FileFault::Missing:
            return ArchiveKind::Missing;
        case FileFault::NotRegular:
            return ArchiveKind::NotRegular;
        case FileFault::TooLarge:
            return ArchiveKind::TooLarge;
        default:
            return ArchiveKind::Unreadable;
    }
}

}  // namespace

ArchiveFile::ArchiveFile(const std::string& path)
    : ArchiveFile(ReadSmallFile(path), FormatOf(path)) {}

ArchiveFile::ArchiveFile(SmallFile file, ImageFormat format)
    : content_(std::move(file.content)), rest_(content_), format_(format) {
    kind_ = file.fault == FileFault::None ? KindOfContent() : KindOf(file.fault);
}

ArchiveKind ArchiveFile::KindOfContent() {
    if (content_.starts_with(kImageHeader) || content_.starts_with(kSettingsHeader))
        format_ = ImageFormat::SRecords;
    if (format_ == ImageFormat::SRecords)
        return KindOfHeader();
    if (content_.empty())
        return ArchiveKind::Empty;
    if (format_ == ImageFormat::IntelHex)
        return content_.starts_with(':') ? ArchiveKind::Foreign : ArchiveKind::NoIntelHex;
    return content_.size() > kEepromBytes ? ArchiveKind::TooLarge : ArchiveKind::Foreign;
}

ArchiveKind ArchiveFile::KindOfHeader() {
    const auto header = NextLine();
    if (!header)
        return rest_.empty() ? ArchiveKind::Empty : ArchiveKind::LineTooLong;
    if (!header->starts_with(kHeaderType))
        return ArchiveKind::NoSRecords;
    if (*header == kImageHeader)
        return ArchiveKind::Image;
    if (*header == kSettingsHeader)
        return ArchiveKind::Settings;
    const bool values = header->ends_with("ColorVal") || header->ends_with("Settings");
    return values ? ArchiveKind::OtherValues : ArchiveKind::Foreign;
}

std::optional<std::string_view> ArchiveFile::NextLine() {
    const std::size_t length = std::min(rest_.find('\n'), rest_.size());
    if (rest_.empty() || length > kLongestLine)
        return std::nullopt;
    const std::string_view line = rest_.substr(0, length);
    rest_.remove_prefix(std::min(length + 1, rest_.size()));
    return line.ends_with('\r') ? line.substr(0, length - 1) : line;
}

LoadEnd ArchiveFile::EndOfLines() const {
    return rest_.empty() ? LoadEnd::NoTerminator : LoadEnd::LineTooLong;
}

std::string ArchiveText(const std::vector<std::string>& lines) {
    std::string content;
    for (const std::string& line : lines)
        content.append(line).append(kLineEnd);
    return content;
}

bool WriteArchive(const std::string& path, std::string_view text) {
    AtomicFile file(path);
    file.Write(text);
    return file.Commit();
}

}  // namespace tarnwell
