#include "archive/ArchiveCommand.h"

namespace tarnwell {

namespace {

constexpr Message kTooLarge{"The file is too large to be an archive.", "E R R O R - File Mismatch",
                            BoxStyle::Exclamation};
constexpr Message kNotWhole{
    "The file cannot be read as a whole;\r\nIt was not taken for the comparison.",
    "E R R O R - File Mismatch", BoxStyle::Exclamation};

}  // namespace

std::optional<std::string> ArchiveCommand::AskArchive(FileRequest::Kind kind,
                                                      std::string_view title,
                                                      std::string proposedName) {
    return user_.AskFile({kind, title, std::move(proposedName), state_.archiveFolder});
}

void ArchiveCommand::SetArchiveFolder(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    state_.archiveFolder = slash == 0 ? "/" : path.substr(0, slash);
}

bool ArchiveCommand::SaveLines(const std::string& path, const std::vector<std::string>& lines) {
    SetArchiveFolder(path);
    return WriteArchive(path, lines);
}

void ArchiveCommand::RefuseKind(ArchiveKind kind) {
    switch (kind) {
        case ArchiveKind::Image:
        case ArchiveKind::Settings:
        case ArchiveKind::OtherValues:
        case ArchiveKind::Foreign:
            return Refuse(texts_.otherKind);
        case ArchiveKind::NoSRecords:
            return Refuse(texts_.noSRecords);
        case ArchiveKind::LineTooLong:
            return Refuse(kLineTooLong);
        case ArchiveKind::TooLarge:
            return Refuse(kTooLarge);
        case ArchiveKind::Empty:
        case ArchiveKind::NotRegular:
        case ArchiveKind::Missing:
        case ArchiveKind::Unreadable:
            return Post(texts_.cancelled);
    }
}

void ArchiveCommand::Refuse(const Box& box) {
    user_.ShowBox(box);
    Post(texts_.failed);
}

std::optional<std::string> ArchiveCommand::AskToLook() {
    auto path = AskArchive(FileRequest::Kind::Open, texts_.loadTitle, "");
    if (path)
        SetArchiveFolder(*path);
    else
        Post(texts_.cancelled);
    return path;
}

bool ArchiveCommand::CanBeRead(const ArchiveFile& file) {
    switch (file.Kind()) {
        case ArchiveKind::Empty:
        case ArchiveKind::NotRegular:
        case ArchiveKind::Missing:
        case ArchiveKind::Unreadable:
            Refuse(kNotWhole);
            return false;
        default:
            return true;
    }
}

void ArchiveCommand::RefusePart(LoadEnd end) {
    if (end == LoadEnd::WrongChecksum)
        Refuse(texts_.corrupt);
    else
        Refuse(end == LoadEnd::LineTooLong ? kLineTooLong : kNotWhole);
}

}  // namespace tarnwell
