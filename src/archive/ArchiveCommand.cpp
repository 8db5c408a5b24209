#include "archive/ArchiveCommand.h"

namespace tarnwell {

namespace {

constexpr Message kTooLarge{"The file is too large to be an archive.", "E R R O R - File Mismatch",
                            BoxStyle::Exclamation};
constexpr Message kNoIntelHex{"The file is not an Intel HEX file, as its name says.",
                              "E R R O R - File Mismatch", BoxStyle::Exclamation};
constexpr Message kNotWhole{
    "The file cannot be read as a whole;\r\nIt was not taken for the comparison.",
    "E R R O R - File Mismatch", BoxStyle::Exclamation};

constexpr Message kGone{"The file is not there any more, and was taken out of the list:", "I N F O",
                        BoxStyle::Information};

}  // namespace

std::optional<std::string> ArchiveCommand::AskArchive(FileRequest::Kind kind,
                                                      std::string_view title,
                                                      std::string proposedName) {
    return user_.AskFile(
        {kind, title, std::move(proposedName), state_.archiveFolder, texts_.filter});
}

void ArchiveCommand::SetArchiveFolder(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    state_.archiveFolder = slash == 0 ? "/" : path.substr(0, slash);
}

bool ArchiveCommand::SaveText(const std::string& path, std::string_view text) {
    SetArchiveFolder(path);
    if (!WriteArchive(path, text))
        return false;
    Used(path);
    return true;
}

void ArchiveCommand::Used(const std::string& path) {
    recent_.Use(path);
    screen_.Changed(Shown::Menus);
}

bool ArchiveCommand::IsThere(const std::string& path) {
    if (ArchiveFile(path).Kind() != ArchiveKind::Missing)
        return true;
    user_.ShowBox(Box(kGone).WithLine(path));
    recent_.Forget(path);
    screen_.Changed(Shown::Menus);
    return false;
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
        case ArchiveKind::NoIntelHex:
            return Refuse(kNoIntelHex);
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
