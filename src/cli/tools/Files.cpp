#include "cli/tools/Files.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <filesystem>

#include "archive/ImageFormat.h"
#include "archive/ImageRecords.h"
#include "archive/SRecord.h"
#include "archive/SettingsRecords.h"
#include "cli/tools/Interruption.h"
#include "cli/tools/LineUser.h"
#include "cli/words/OperandKinds.h"
#include "command/WriteTexts.h"
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
        case ArchiveKind::NoIntelHex:
            return "is not an Intel HEX file, as its name says.";
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

constexpr std::string_view kNotSaved =
    " could not be saved. Make room for it, or give a name in a folder that you may write in.";

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

ImageFormat FormatIn(const std::string& name, const Arguments& arguments) {
    if (name == kStandardStream)
        return arguments.raw ? ImageFormat::Plain : ImageFormat::SRecords;
    return FormatOf(name);
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

    std::optional<Content> From(ArchiveFile& file) {
        const bool plain = file.Format() == ImageFormat::Plain;
        switch (file.Kind()) {
            case ArchiveKind::Settings:
                return FromSettings(file);
            case ArchiveKind::Foreign:
                if (file.Format() == ImageFormat::SRecords)
                    break;
                if (plain && file.Content().size() != kEepromBytes)
                    return FailSize(file);
                [[fallthrough]];
            case ArchiveKind::Image: {
                Content content;
                const LoadEnd end = LoadImageRecords(file, content.image.emplace());
                return Finish(end, std::move(content));
            }
            case ArchiveKind::TooLarge:
                if (plain && file.Content().size() > kEepromBytes)
                    return FailSize(file);
                break;
            default:
                break;
        }
        return Fail(KindText(file.Kind()));
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
        if (!digits.misfit.empty())
            return Fail(std::string(EndText(end)) + " " + digits.misfit);
        return Finish(end, std::move(content));
    }

    std::optional<Content> Finish(LoadEnd end, Content content) {
        if (end != LoadEnd::Complete)
            return Fail(EndText(end));
        return content;
    }

    std::nullopt_t FailSize(const ArchiveFile& file) {
        return Fail("has " + std::to_string(file.Content().size()) + " bytes, not 8192.");
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

std::string BytesOf(const Content& content, ImageFormat format) {
    return content.image ? ImageText(*content.image, format) : ArchiveText(LinesOf(content.values));
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
    ArchiveFile file(name == kStandardStream ? FromStandardInput() : ReadSmallFile(name),
                     FormatIn(name, arguments));
    auto content = Loading(name, report).From(file);
    if (content)
        content->path = name;
    return content;
}

std::vector<KeptImage> KeptBackups(const Arguments& arguments) {
    std::vector<KeptImage> images =
        KeptImagesIn(arguments.set ? arguments.set->folder : StateFolder() + "/backups");
    std::erase_if(images, [&](const KeptImage& image) { return image.device != arguments.device; });
    return images;
}

std::optional<Content> LoadSide(const std::string& name, const Arguments& arguments,
                                Report& report) {
    if (name != kBackupSide && !name.starts_with(std::string(kBackupSide) + ":"))
        return Load(name, arguments, report);
    const std::vector<KeptImage> backups = KeptBackups(arguments);
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
    const ImageFormat format = FormatIn(name, arguments);
    const bool plain = format != ImageFormat::SRecords;
    if (!content.image && (plain || content.values.size() != kCellCount))
        return report.End(Status::File, name + (plain ? " would hold bytes that a settings archive "
                                                        "does not have: give it another name."
                                                      : " would hold only a part of the settings: "
                                                        "the archive does not have them all."));
    const std::string shown = name == kStandardStream ? "standard output" : name;
    if (SaveBytes(name, BytesOf(content, format)))
        report.End(Status::Done, std::string(content.image ? "EEProm Image Saved to Disk: "
                                                           : "Settings Saved to Archive Disk "
                                                             "File: ") +
                                     shown);
    else
        report.End(Status::File, shown + std::string(kNotSaved));
}

void SaveText(const std::string& name, const std::string& text, std::string_view saved,
              Report& report) {
    const std::string shown = name == kStandardStream ? "standard output" : name;
    if (SaveBytes(name, text))
        report.End(Status::Done, std::string(saved) + shown);
    else
        report.End(Status::File, shown + std::string(kNotSaved));
}

bool RefusesSettings(const Arguments& arguments, Report& report) {
    if (arguments.device == TargetDevice::Primary)
        return false;
    report.End(Status::WrongUse, OneLine(kNoSettingsOnSecondary));
    return true;
}

bool RefusesNames(const NameList& names, const Arguments& arguments, Report& report) {
    const bool hasOwn = std::ranges::any_of(names, [](const Named& named) { return !named->cell; });
    return !hasOwn && RefusesSettings(arguments, report);
}

std::optional<int> ValueOf(const NamedValue& named, const Content& content) {
    if (content.image)
        return ValueIn(*content.image, named);
    const auto value = named.cell ? content.values.find(*named.cell) : content.values.end();
    return value == content.values.end() ? std::nullopt : std::optional<int>(value->second);
}

void ShowSettings(const NameList& names, const Content& content, Report& report) {
    for (const Named& named : names) {
        if (const auto value = ValueOf(*named, content))
            report.settings.push_back({named, *value});
    }
}

}  // namespace tarnwell::cli
