// Saving the cells as a settings archive and loading them back.
#include "archive/SettingsArchive.h"

#include <algorithm>

#include "archive/SRecord.h"

namespace tarnwell {

namespace {

constexpr std::string_view kProposedName = "Tarnwell-Settings";
constexpr std::string_view kHiddenMenuName = "Quillmer.mot";

constexpr std::string_view kSettingsSaveCancelled = "Settings Save Cancelled";
constexpr std::string_view kLoadCanceled = "Load Settings Canceled";

constexpr Message kEmptyCells{
    "There are empty settings values;\r\nread or load the settings first.", "E R R O R",
    BoxStyle::Exclamation};
constexpr Message kMisfit{
    "A value in the Settings file does not fit;\r\n"
    "Its record and those behind it were not loaded.",
    "E R R O R - File Mismatch", BoxStyle::Exclamation};
constexpr Message kNotAllValues{
    "The file does not have all settings;\r\nThose that it does not have count as equal.",
    "I N F O", BoxStyle::Information};

}  // namespace

constexpr ArchiveCommand::Texts SettingsArchive::kTexts{
    .loadTitle = "Load Settings",
    .filter = kArchiveFilter,
    .noSRecords = {"The file is not an S-Record File;\r\nThe settings values were not loaded.",
                   "A B O R T - File Load", BoxStyle::Exclamation},
    .otherKind = {"File is not a Tarnwell Settings file;\r\nThe Settings were not loaded.",
                  "A B O R T - File Load", BoxStyle::Exclamation},
    .corrupt = {"Data in the Settings file may be corrupt;\r\n\r\nSettings were not loaded.",
                "E R R O R - Checksum", BoxStyle::Exclamation},
    .cancelled = kLoadCanceled,
    .failed = "Load Settings Failed"};

SettingsArchive::SettingsArchive(const CommandContext& context, SettingCells& cells,
                                 SettingsEngine& settings)
    : ArchiveCommand(context, kTexts, context.state.recentSettings),
      cells_(cells),
      settings_(settings) {}

void SettingsArchive::SaveSettings() {
    const CommandScope scope(statusBar_);
    if (settings_.RefuseOnSecondary())
        return;
    if (cells_.AnyIsEmpty()) {
        user_.ShowBox(kEmptyCells);
        return Post(kSettingsSaveCancelled);
    }
    const auto path =
        AskArchive(FileRequest::Kind::Save, "Save Settings As...", std::string(kProposedName));
    if (!path || !SaveText(*path, ArchiveText(SettingsRecords(cells_))))
        return Post(kSettingsSaveCancelled);
    const Aside aside(steps_);
    for (int cell = 0; cell < kCellCount; ++cell)
        cells_.SetColour(cell, CellColour::Normal);
    Post("Settings Saved to Archive Disk File");
}

void SettingsArchive::LoadSettings() {
    const CommandScope scope(statusBar_);
    const auto path =
        AskArchive(FileRequest::Kind::OpenAnyName, kTexts.loadTitle, std::string(kProposedName));
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

void SettingsArchive::LoadRecentSettings(const std::string& path) {
    const CommandScope scope(statusBar_);
    if (IsThere(path))
        LoadSettingsFile(path);
}

void SettingsArchive::LoadFrom(const std::string& path) {
    SetArchiveFolder(path);
    ArchiveFile file(path);
    if (MayLoad(file) && LoadRecords(file, path))
        Used(path);
}

std::optional<SettingDigits> SettingsArchive::LookAt(const std::string& path) {
    const CommandScope scope(statusBar_);
    ArchiveFile file(path);
    if (!IsThere(path) || !CanBeRead(file) || !MayLoad(file))
        return std::nullopt;
    auto values = Whole(file, LoadSettingsRecords);
    if (values && std::ranges::count(*values, "") > 0)
        user_.ShowBox(kNotAllValues);
    if (values)
        Used(path);
    return values;
}

bool SettingsArchive::MayLoad(const ArchiveFile& file) {
    if (file.Kind() == ArchiveKind::Settings)
        return true;
    RefuseKind(file.Kind());
    return false;
}

bool SettingsArchive::LoadRecords(ArchiveFile& file, const std::string& path) {
    const Step step(steps_, LoadOf(path));
    SettingDigits digits;
    const LoadEnd end = LoadSettingsRecords(file, digits);
    ShowValues(digits);
    switch (end) {
        case LoadEnd::Complete:
            Post("Settings Loaded from Archive Disk File");
            return true;
        case LoadEnd::WrongChecksum:
            Refuse(kTexts.corrupt);
            return false;
        case LoadEnd::LineTooLong:
            Refuse(kLineTooLong);
            return false;
        case LoadEnd::BadRecord:
            if (!digits.misfit.empty())
                user_.ShowBox(Box(kMisfit).WithLine(digits.misfit));
            [[fallthrough]];
        case LoadEnd::NoTerminator:
        case LoadEnd::TooManyAddresses:
            break;
    }
    Post(kLoadCanceled);
    return false;
}

void SettingsArchive::ShowValues(const SettingDigits& digits) {
    for (int cell = 0; cell < kCellCount; ++cell) {
        const std::string& given = digits[static_cast<std::size_t>(cell)];
        if (given.empty())
            continue;
        if (state_.numberMode == NumberMode::Hex)
            cells_.Show(cell, ShownByteFrom(given, NumberMode::Hex));
        else
            cells_.ShowValue(cell, ByteAt(given, 0));
        cells_.SetMark(cell, Mark::Save);
    }
}

}  // namespace tarnwell
