// Saving the cells as a settings archive and loading them back.
#include "archive/SettingsArchive.h"

#include "archive/SRecord.h"

namespace tarnwell {

namespace {

constexpr std::string_view kProposedName = "Tarnwell-Settings";
constexpr std::string_view kHiddenMenuName = "Quillmer.mot";

constexpr std::string_view kLoadTitle = "Load Settings";
constexpr std::string_view kSaveCancelled = "Settings Save Cancelled";
constexpr std::string_view kLoadCanceled = "Load Settings Canceled";

constexpr Message kEmptyCells{
    "There are empty settings values;\r\nread or load the settings first.", "E R R O R",
    BoxStyle::Exclamation};
constexpr Message kNoSRecords{
    "The file is not an S-Record File;\r\nThe settings values were not loaded.",
    "A B O R T - File Load", BoxStyle::Exclamation};
constexpr Message kNoSettings{
    "File is not a Tarnwell Settings file;\r\nThe Settings were not loaded.",
    "A B O R T - File Load", BoxStyle::Exclamation};
constexpr Message kCorrupt{
    "Data in the Settings file may be corrupt;\r\n\r\nSettings were not loaded.",
    "E R R O R - Checksum", BoxStyle::Exclamation};

}  // namespace

SettingsArchive::SettingsArchive(const CommandContext& context, SettingCells& cells,
                                 SettingsEngine& settings)
    : ArchiveCommand(context), cells_(cells), settings_(settings) {}

void SettingsArchive::SaveSettings() {
    const CommandScope scope(statusBar_);
    if (settings_.RefuseOnSecondary())
        return;
    if (cells_.AnyIsEmpty()) {
        user_.ShowBox(kEmptyCells);
        return Post(kSaveCancelled);
    }
    const auto path =
        AskArchive(FileRequest::Kind::Save, "Save Settings As...", std::string(kProposedName));
    if (!path || !SaveTo(*path))
        return Post(kSaveCancelled);
    const Aside aside(steps_);
    for (int cell = 0; cell < kCellCount; ++cell)
        cells_.SetColour(cell, CellColour::Normal);
    Post("Settings Saved to Archive Disk File");
}

bool SettingsArchive::SaveTo(const std::string& path) {
    SetArchiveFolder(path);
    return WriteArchive(path, SettingsRecords(cells_));
}

void SettingsArchive::LoadSettings() {
    const CommandScope scope(statusBar_);
    const auto path =
        AskArchive(FileRequest::Kind::OpenAnyName, kLoadTitle, std::string(kProposedName));
    if (!path)
        return Post(kLoadCanceled);
    if (path->ends_with(kHiddenMenuName)) {
        state_.fillItemVisible = true;
        screen_.Changed(Shown::Menus);
        return;
    }
    LoadSettingsFile(*path);
}

void SettingsArchive::LoadSettingsFile(const std::string& path) {
    const CommandScope scope(statusBar_);
    if (!settings_.RefuseOnSecondary())
        LoadFrom(path);
}

void SettingsArchive::LoadFrom(const std::string& path) {
    SetArchiveFolder(path);
    ArchiveFile file(path);
    if (MayLoad(file))
        LoadRecords(file, path);
}

std::optional<SettingDigits> SettingsArchive::AskValues() {
    const CommandScope scope(statusBar_);
    const auto path = AskArchive(FileRequest::Kind::Open, kLoadTitle, "");
    if (!path) {
        Post(kLoadCanceled);
        return std::nullopt;
    }
    SetArchiveFolder(*path);
    ArchiveFile file(*path);
    if (!MayLoad(file))
        return std::nullopt;
    SettingDigits digits;
    const LoadEnd end = LoadSettingsRecords(file, digits);
    Tell(end);
    if (end != LoadEnd::Complete)
        return std::nullopt;
    return digits;
}

bool SettingsArchive::MayLoad(const ArchiveFile& file) {
    switch (file.Kind()) {
        case ArchiveKind::Settings:
            return true;
        case ArchiveKind::Image:
        case ArchiveKind::OtherValues:
        case ArchiveKind::Foreign:
            Refuse(kNoSettings);
            break;
        case ArchiveKind::NoSRecords:
            Refuse(kNoSRecords);
            break;
        case ArchiveKind::LineTooLong:
            Refuse(kLineTooLong);
            break;
        case ArchiveKind::TooLarge:
            Refuse(kTooLarge);
            break;
        case ArchiveKind::Empty:
        case ArchiveKind::NotRegular:
        case ArchiveKind::Missing:
        case ArchiveKind::Unreadable:
            Post(kLoadCanceled);
            break;
    }
    return false;
}

void SettingsArchive::LoadRecords(ArchiveFile& file, const std::string& path) {
    const Step step(steps_, LoadOf(path));
    SettingDigits digits;
    const LoadEnd end = LoadSettingsRecords(file, digits);
    ShowValues(digits);
    if (end == LoadEnd::Complete)
        Post("Settings Loaded from Archive Disk File");
    else
        Tell(end);
}

void SettingsArchive::Tell(LoadEnd end) {
    switch (end) {
        case LoadEnd::Complete:
            return;
        case LoadEnd::WrongChecksum:
            return Refuse(kCorrupt);
        case LoadEnd::LineTooLong:
            return Refuse(kLineTooLong);
        case LoadEnd::NoTerminator:
        case LoadEnd::BadRecord:
        case LoadEnd::TooManyAddresses:
            return Post(kLoadCanceled);
    }
}

void SettingsArchive::ShowValues(const SettingDigits& digits) {
    for (int cell = 0; cell < kCellCount; ++cell) {
        const std::string& given = digits[static_cast<std::size_t>(cell)];
        if (given.empty())
            continue;
        if (state_.numberMode == NumberMode::Hex)
            cells_.SetCaption(cell, given);
        else
            cells_.ShowValue(cell, ByteAt(given, 0));
        cells_.SetMark(cell, Mark::Save);
    }
}

void SettingsArchive::Refuse(const Message& box) {
    user_.ShowBox(box);
    Post("Load Settings Failed");
}

}  // namespace tarnwell
