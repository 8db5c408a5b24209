// Saving the cells as a settings archive and loading them back.
#include "archive/SettingsArchive.h"

#include <algorithm>

namespace tarnwell {

namespace {

constexpr std::string_view kSettingsHeader =
    "S021000048616C7620446F726E205461726E77656C6C2032020253657474696E677390";
constexpr std::string_view kProposedName = "Tarnwell-Settings";
constexpr std::string_view kHiddenMenuName = "Quillmer.mot";

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

std::string_view DigitsOf(std::string_view record, int value) {
    const std::size_t position = kS1DataPosition + 2 * static_cast<std::size_t>(value);
    return record.substr(std::min(position, record.size()), 2);
}

/// Whether the two characters are a value that the cell's byte can hold.
bool FitsField(std::string_view digits, int cell) {
    const auto value = ByteFromText(digits, NumberMode::Hex);
    return digits.size() == 2 && value && *value < 256 >> Cell(cell).setting->shift;
}

}  // namespace

SettingsArchive::SettingsArchive(const CommandContext& context, SettingCells& cells,
                                 SettingsEngine& settings)
    : Command(context), cells_(cells), settings_(settings) {}

void SettingsArchive::SaveSettings() {
    const CommandScope scope(statusBar_);
    if (settings_.RefuseOnSecondary())
        return;
    if (cells_.AnyIsEmpty()) {
        user_.ShowBox(kEmptyCells);
        return Post(kSaveCancelled);
    }
    const auto path = AskArchive(user_, state_, FileRequest::Kind::Save, "Save Settings As...",
                                 std::string(kProposedName));
    if (!path || !SaveTo(*path))
        return Post(kSaveCancelled);
    for (int cell = 0; cell < kCellCount; ++cell)
        cells_.SetColour(cell, CellColour::Normal);
    Post("Settings Saved to Archive Disk File");
}

bool SettingsArchive::SaveTo(const std::string& path) {
    SetArchiveFolder(state_, path);
    std::vector<std::string> lines{std::string(kSettingsHeader)};
    for (const SettingGroup& group : SettingGroups)
        lines.push_back(MakeS1Record(cells_, group));
    lines.emplace_back(kTerminator);
    return WriteArchive(path, lines);
}

void SettingsArchive::LoadSettings() {
    const CommandScope scope(statusBar_);
    const auto path = AskArchive(user_, state_, FileRequest::Kind::OpenAnyName, "Load Settings",
                                 std::string(kProposedName));
    if (!path)
        return Post(kLoadCanceled);
    if (path->ends_with(kHiddenMenuName)) {
        state_.fillItemVisible = true;
        screen_.Changed(Shown::Menus);
        return;
    }
    if (settings_.RefuseOnSecondary())
        return;
    SetArchiveFolder(state_, *path);
    switch (LoadFrom(*path)) {
        case Outcome::Loaded:
            return Post("Settings Loaded from Archive Disk File");
        case Outcome::Refused:
            return Post("Load Settings Failed");
        case Outcome::Unusable:
            return Post(kLoadCanceled);
    }
}

SettingsArchive::Outcome SettingsArchive::LoadFrom(const std::string& path) {
    ArchiveReader archive(path);
    const Outcome header = CheckHeader(archive);
    return header == Outcome::Loaded ? LoadRecords(archive) : header;
}

SettingsArchive::Outcome SettingsArchive::CheckHeader(ArchiveReader& archive) {
    const auto header = archive.NextLine();
    if (!header)
        return Outcome::Unusable;
    if (*header == kSettingsHeader)
        return Outcome::Loaded;
    user_.ShowBox(header->starts_with(kHeaderType) ? kNoSettings : kNoSRecords);
    return Outcome::Refused;
}

SettingsArchive::Outcome SettingsArchive::LoadRecords(ArchiveReader& archive) {
    for (int count = 0; count < kGroupCount; ++count) {
        const auto record = archive.NextLine();
        if (!record)
            return Outcome::Unusable;
        if (record->starts_with(kTerminatorType))
            return Outcome::Loaded;
        if (!record->ends_with(RecordChecksum(*record))) {
            user_.ShowBox(kCorrupt);
            return Outcome::Refused;
        }
        if (!LoadRecord(*record))
            return Outcome::Unusable;
    }
    return Outcome::Loaded;
}

/// A record is taken as a whole or not at all.
bool SettingsArchive::LoadRecord(std::string_view record) {
    const int address =
        ByteAt(record, kAddressPosition) * 256 + ByteAt(record, kAddressPosition + 2);
    const SettingGroup* const group = GroupAtBase(address);
    if (group == nullptr)
        return false;
    const int first = group->firstCell;
    const int count = ByteAt(record, kCountPosition) - kS1Overhead;
    if (first + count > kCellCount)
        return false;
    for (int value = 0; value < count; ++value) {
        if (!FitsField(DigitsOf(record, value), first + value))
            return false;
    }
    for (int value = 0; value < count; ++value)
        LoadValue(first + value, DigitsOf(record, value));
    return true;
}

void SettingsArchive::LoadValue(int cell, std::string_view digits) {
    if (state_.numberMode == NumberMode::Hex)
        cells_.SetCaption(cell, std::string(digits));
    else
        cells_.ShowValue(cell, ByteAt(digits, 0));
    cells_.SetMark(cell, Mark::Save);
}

}  // namespace tarnwell
