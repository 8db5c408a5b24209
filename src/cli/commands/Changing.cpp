// The commands that change the device, or an archive in its place.
#include "cli/commands/Commands.h"
#include "cli/tools/Files.h"
#include "cli/tools/Records.h"
#include "cli/tools/Writing.h"
#include "command/WriteTexts.h"
#include "core/Words.h"
#include "sets/Replay.h"

namespace tarnwell::cli {

namespace {

Writing OfSettings(ByteValues bytes) {
    return {std::move(bytes), std::string(kAskWriteSettings.text), std::string(kSettingsWritten),
            kSettingsNotVerified};
}

Writing OfImage(ByteValues bytes) {
    return {.values = std::move(bytes),
            .question = std::string(kAskWriteImage.text),
            .done = std::string(kImageWritten),
            .notVerified = kImageNotVerified,
            .kind = WriteKind::Image};
}

/// `ask` is what stands before and behind the number of bytes in the question.
Writing OfDifferences(ByteValues bytes, const std::array<std::string, 2>& ask) {
    Writing writing = OfImage(std::move(bytes));
    writing.question = ask[0] + Counted(writing.values.size(), "byte") + ask[1] + "?";
    writing.done = "EEP Verified OK; " + Counted(writing.values.size(), "Byte") + " Written";
    writing.how = How::ByDifferences;
    writing.kind = WriteKind::Differences;
    return writing;
}

void KeepOnlyDifferent(ByteValues& bytes, const MemoryBuffer& present) {
    std::erase_if(bytes, [&](const auto& byte) {
        return byte.second == present[static_cast<std::size_t>(byte.first)];
    });
}

/// The bytes in which the device has these values, with the other bits as they are, or nothing if
/// they could not be read. `image` gets the bytes as they were read for this.
std::optional<ByteValues> BytesWith(const NamedNumbers& values, Device& device,
                                    MemoryBuffer& image) {
    ByteValues bytes;
    for (const auto& [named, value] : values) {
        for (const int address : {named->address, named->low.value_or(named->address)}) {
            std::uint8_t& present = image[static_cast<std::size_t>(address)];
            if (!bytes.contains(address) && !device.ReadAgreed(address, present))
                return std::nullopt;
            bytes[address] = present;
        }
    }
    MemoryBuffer wanted = image;
    for (const auto& [named, value] : values)
        PutValue(wanted, *named, value);
    for (auto& [address, byte] : bytes)
        byte = wanted[static_cast<std::size_t>(address)];
    return bytes;
}

NamedNumbers Numbered(const CellValues& values) {
    NamedNumbers numbers;
    for (const Named& setting : BuiltInNames()) {
        if (const auto value = values.find(*setting->cell); value != values.end())
            numbers.push_back({setting, value->second});
    }
    return numbers;
}

/// The bytes that bring the device, which holds `present`, to what a file holds.
std::optional<ByteValues> BytesOf(const Content& content, Device& device, MemoryBuffer& present) {
    if (!content.image)
        return BytesWith(Numbered(content.values), device, present);
    ByteValues bytes;
    for (int address = 0; address < kEepromBytes; ++address)
        bytes[address] = (*content.image)[static_cast<std::size_t>(address)];
    return bytes;
}

NameList NamesIn(const NamedNumbers& values) {
    NameList names;
    for (const auto& [named, value] : values)
        names.push_back(named);
    return names;
}

/// Of differences what is to be written over is read a second time before anybody is asked.
bool IsSureOf(const ByteValues& bytes, How how, Device& device, MemoryBuffer& present) {
    if (how == How::ByteByByte)
        return true;
    MemoryBuffer wanted = present;
    for (const auto& [address, value] : bytes)
        wanted[static_cast<std::size_t>(address)] = value;
    return device.ReadAgain(present, wanted);
}

/// Reads the device, and writes to it what `writingOf` makes of the file's bytes.
template <typename WritingOf>
void WriteContent(const Content& content, const Arguments& arguments, Device& device,
                  Report& report, How how, WritingOf writingOf) {
    MemoryBuffer present{};
    report.file = content.path;
    if ((!content.image && RefusesSettings(arguments, report)) ||
        !CanBeConfirmed(arguments, report) || !device.Open() || !device.ReadImage(present))
        return;
    if (content.image) {
        report.crc = mCRC32::BufferCrcText(*content.image);
        device.TheProgram().origin = OriginOf(content.path, *content.image);
    }
    auto bytes = BytesOf(content, device, present);
    if (!bytes || !IsSureOf(*bytes, how, device, present))
        return;
    Writing writing = writingOf(std::move(*bytes), present);
    writing.others = content.image ? Others::AsWanted : Others::AsTheyAre;
    WriteConfirmed(arguments, device, report, writing, present);
}

}  // namespace

void Write(const Arguments& arguments, Device& device, Report& report) {
    const auto content = Load(arguments.file, arguments, report);
    if (!content)
        return;
    WriteContent(*content, arguments, device, report,
                 arguments.differences ? How::ByDifferences : How::ByteByByte,
                 [&](ByteValues bytes, const MemoryBuffer& present) {
                     if (!arguments.differences)
                         return content->image ? OfImage(std::move(bytes))
                                               : OfSettings(std::move(bytes));
                     KeepOnlyDifferent(bytes, present);
                     return OfDifferences(std::move(bytes),
                                          {"Write ", " to the " + EepromName(arguments.device)});
                 });
}

/// What the device holds is kept only where no backup has it.
void Restore(const Arguments& arguments, Device& device, Report& report) {
    const auto content = LoadSide(arguments.file, arguments, report);
    if (!content)
        return;
    WriteContent(*content, arguments, device, report, How::ByDifferences,
                 [&](ByteValues bytes, const MemoryBuffer& present) {
                     KeepOnlyDifferent(bytes, present);
                     Writing writing = OfDifferences(
                         std::move(bytes), {"Restore ", " of the " + EepromName(arguments.device)});
                     writing.keep = Backup::UnlessKept;
                     writing.kind = WriteKind::Restore;
                     return writing;
                 });
}

/// What the reading finds otherwise than known is in the history by then, as written again.
void TakeBackEvents(const Arguments& arguments, Device& device, Report& report) {
    const auto before = LoadHistory(arguments, report);
    MemoryBuffer present{};
    if (!before || !HasEvents(*before, arguments, report) || !CanBeConfirmed(arguments, report) ||
        !device.Open() || !device.ReadImage(present))
        return;
    const auto history = LoadHistory(arguments, report);
    if (!history)
        return;
    TakeBack back = TakeBackOf(*history, arguments.device, {arguments.events},
                               arguments.alsoNewer ? Newer::AlsoTakenBack : Newer::LeftOut);
    report.newer = std::move(back.newer);
    report.unknown = std::move(back.unknown);
    if (!IsSureOf(back.values, How::ByDifferences, device, present))
        return;
    KeepOnlyDifferent(back.values, present);
    Writing writing = OfDifferences(std::move(back.values),
                                    {"Take back ", " of the " + EepromName(arguments.device)});
    writing.kind = WriteKind::TakeBack;
    writing.others = Others::AsTheyAre;
    WriteConfirmed(arguments, device, report, writing, present);
}

void Set(const Arguments& arguments, Device& device, Report& report) {
    MemoryBuffer image;
    if (RefusesNames(NamesIn(arguments.values), arguments, report) ||
        !CanBeConfirmed(arguments, report) || !device.Open() || !device.ReadImage(image))
        return;
    auto bytes = BytesWith(arguments.values, device, image);
    if (!bytes)
        return;
    KeepOnlyDifferent(*bytes, image);
    report.settings = arguments.values;
    if (bytes->empty()) {
        report.written = 0;
        return report.End(Status::Done, OneLine(kNoSettingsChanged));
    }
    WriteConfirmed(arguments, device, report, OfSettings(std::move(*bytes)), image);
}

void SetInFile(const Arguments& arguments, Report& report) {
    if (RefusesNames(NamesIn(arguments.values), arguments, report) ||
        !MaySave(*arguments.output, arguments, report))
        return;
    auto content = Load(*arguments.image, arguments, report);
    if (!content)
        return;
    for (const auto& [named, value] : arguments.values) {
        if (content->image)
            PutValue(*content->image, *named, value);
        else if (named->cell)
            content->values[*named->cell] = static_cast<std::uint8_t>(value);
        else
            return report.End(Status::File, *arguments.image + " holds settings, no image.");
    }
    report.settings = arguments.values;
    if (content->image)
        report.crc = mCRC32::BufferCrcText(*content->image);
    if (arguments.dryRun)
        return report.End(Status::Done, std::string(kOnlyPlanned));
    Save(*arguments.output, *content, arguments, report);
}

void Poke(const Arguments& arguments, Device& device, Report& report) {
    MemoryBuffer image;
    if (!CanBeConfirmed(arguments, report) || !device.Open() || !device.ReadImage(image))
        return;
    const auto count = static_cast<int>(arguments.byteValues.size());
    WriteConfirmed(arguments, device, report,
                   {.values = arguments.byteValues,
                    .question = AskWriteBytes(count).text,
                    .done = std::string(kBytesWritten),
                    .notVerified = kBytesNotVerified},
                   image);
}

}  // namespace tarnwell::cli
