#include "cli/tools/Files.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <filesystem>

#include "archive/ImageRecords.h"
#include "archive/SRecord.h"
#include "archive/SettingsRecords.h"
#include "cli/tools/Interruption.h"
#include "cli/tools/SystemCalendar.h"
#include "core/files/AtomicFile.h"
#include "core/files/UserFolders.h"
#include "program/NoWindow.h"

namespace tarnwell::cli {

namespace {

/// What is to be used is named; why it cannot be, and what to do.
constexpr std::string_view KindText(ArchiveKind kind) {
    switch (kind) {
        case ArchiveKind::OtherValues:
            return "holds values that another program keeps, no image and no settings.";
        case ArchiveKind::Foreign:
            return "holds S-records of another program. If they are 24C64 data, save them as an "
                   "image in the window, or turn them into NAME.bin.";
        case ArchiveKind::NoSRecords:
            return "is not an S-Record file. If it holds the 8192 bytes as they are, name it "
                   "NAME.bin.";
        case ArchiveKind::Empty:
            return "is empty.";
        case ArchiveKind::LineTooLong:
            return "has a line that is too long: it is not an S-Record file.";
        case ArchiveKind::TooLarge:
            return "is too large to be an archive.";
        case ArchiveKind::NotRegular:
            return "is no regular file.";
        case ArchiveKind::Missing:
            return "does not exist.";
        case ArchiveKind::Unreadable:
        case ArchiveKind::Image:
        case ArchiveKind::Settings:
            break;
    }
    return "cannot be read.";
}

constexpr std::string_view EndText(LoadEnd end) {
    switch (end) {
        case LoadEnd::NoTerminator:
            return "ends before its last record: a part of it is missing.";
        case LoadEnd::LineTooLong:
            return "has a line that is too long.";
        case LoadEnd::BadRecord:
            return "has a record that does not belong into such an archive.";
        case LoadEnd::TooManyAddresses:
            return "has too many addresses; it is not a proper 24C64 EEProm data file.";
        case LoadEnd::WrongChecksum:
        case LoadEnd::Complete:
            break;
    }
    return "may be corrupt: a checksum is wrong.";
}

bool IsPlain(const std::string& name, const Arguments& arguments) {
    return name == kStandardStream ? arguments.raw : name.ends_with(".bin");
}

SmallFile FromStandardInput() {
    SmallFile file;
    std::array<char, 4096> part;
    for (ssize_t length = 1; length > 0;) {
        length = ReadStandardInput(part);
        if (length < 0)
            return {FileFault::Unreadable};
        file.content.append(part.data(), static_cast<std::size_t>(length));
        if (file.content.size() > kSmallFileBytes)
            return {FileFault::TooLarge};
    }
    return file;
}

class Loading {
  public:
    Loading(const std::string& name, Report& report)
        : name_(name == kStandardStream ? "Standard input" : name), report_(report) {}

    std::optional<Content> FromBytes(const SmallFile& file) {
        if (file.fault != FileFault::None)
            return Fail(KindText(ArchiveFile(file).Kind()));
        if (file.content.size() != kEepromBytes)
            return Fail("has " + std::to_string(file.content.size()) + " bytes, not 8192.");
        Content content;
        std::ranges::copy(file.content, content.image.emplace().begin());
        return content;
    }

    std::optional<Content> FromArchive(SmallFile file) {
        ArchiveFile archive(std::move(file));
        Content content;
        switch (archive.Kind()) {
            case ArchiveKind::Image: {
                content.image.emplace().fill(0xFF);
                const LoadEnd end = LoadImageRecords(archive, *content.image);
                return Finish(end, std::move(content));
            }
            case ArchiveKind::Settings:
                return FromSettings(archive);
            default:
                return Fail(KindText(archive.Kind()));
        }
    }

  private:
    std::optional<Content> FromSettings(ArchiveFile& archive) {
        SettingDigits digits;
        Content content;
        const LoadEnd end = LoadSettingsRecords(archive, digits);
        for (std::size_t cell = 0; cell < digits.size(); ++cell) {
            if (!digits[cell].empty())
                content.values[static_cast<int>(cell)] = ByteAt(digits[cell], 0);
        }
        return Finish(end, std::move(content));
    }

    std::optional<Content> Finish(LoadEnd end, Content content) {
        if (end != LoadEnd::Complete)
            return Fail(EndText(end));
        return content;
    }

    std::nullopt_t Fail(std::string_view what) {
        report_.End(Status::File, name_ + " " + std::string(what));
        return std::nullopt;
    }

    std::string name_;
    Report& report_;
};

/// The values in the cells that the window would show them in.
std::vector<std::string> LinesOf(const CellValues& values) {
    const ProgramState state;
    NoWindow window;
    SettingCells cells(state, window);
    for (const auto& [cell, value] : values)
        cells.ShowValue(cell, value);
    return SettingsRecords(cells);
}

std::string BytesOf(const Content& content, bool plain) {
    if (plain)
        return {content.image->begin(), content.image->end() - 1};
    return ArchiveText(content.image ? ImageRecords(*content.image) : LinesOf(content.values));
}

bool SaveBytes(const std::string& name, const std::string& bytes) {
    if (name == kStandardStream)
        return std::fwrite(bytes.data(), 1, bytes.size(), stdout) == bytes.size() &&
               std::fflush(stdout) == 0;
    AtomicFile file(name);
    file.Write(bytes);
    return file.Commit();
}

}  // namespace

std::optional<Content> Load(const std::string& name, const Arguments& arguments, Report& report) {
    SmallFile file = name == kStandardStream ? FromStandardInput() : ReadSmallFile(name);
    Loading loading(name, report);
    return IsPlain(name, arguments) ? loading.FromBytes(file)
                                    : loading.FromArchive(std::move(file));
}

std::vector<KeptImage> KeptBackups(TargetDevice device) {
    const SystemCalendar calendar;
    std::vector<KeptImage> images = ImageBackups(StateFolder() + "/backups", calendar).All();
    std::erase_if(images, [=](const KeptImage& image) { return image.device != device; });
    return images;
}

std::optional<Content> LoadSide(const std::string& name, const Arguments& arguments,
                                Report& report) {
    if (name != kBackupSide && !name.starts_with(std::string(kBackupSide) + ":"))
        return Load(name, arguments, report);
    const std::vector<KeptImage> backups = KeptBackups(arguments.device);
    const std::string_view number =
        name == kBackupSide ? "1" : std::string_view(name).substr(kBackupSide.size() + 1);
    std::size_t index = 0;
    const auto [end, error] = std::from_chars(number.data(), number.data() + number.size(), index);
    if (error != std::errc() || end != number.data() + number.size() || index < 1 ||
        index > backups.size()) {
        report.End(Status::File,
                   "There is no such backup of this EEProm: see 'tarnwell-cli "
                   "backups'.");
        return std::nullopt;
    }
    return Load(backups[index - 1].path, arguments, report);
}

bool MaySave(const std::string& name, const Arguments& arguments, Report& report) {
    std::error_code unreachable;
    if (name == kStandardStream || arguments.force ||
        !std::filesystem::exists(std::filesystem::symlink_status(name, unreachable)))
        return true;
    report.End(Status::File, name + " exists. Say --force to replace it, or give another name.");
    return false;
}

void Save(const std::string& name, const Content& content, const Arguments& arguments,
          Report& report) {
    const bool plain = IsPlain(name, arguments);
    if (!content.image && (plain || content.values.size() != kCellCount))
        return report.End(Status::File, name + (plain ? " would hold bytes that a settings archive "
                                                        "does not have: give it another name."
                                                      : " would hold only a part of the settings: "
                                                        "the archive does not have them all."));
    const std::string shown = name == kStandardStream ? "standard output" : name;
    if (SaveBytes(name, BytesOf(content, plain)))
        report.End(Status::Done, std::string(content.image ? "EEProm Image Saved to Disk: "
                                                           : "Settings Saved to Archive Disk "
                                                             "File: ") +
                                     shown);
    else
        report.End(Status::File, shown +
                                     " could not be saved. Make room for it, or give a name "
                                     "in a folder that you may write in.");
}

}  // namespace tarnwell::cli
