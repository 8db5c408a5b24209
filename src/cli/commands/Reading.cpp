// The commands that find out and change nothing.
#include "cli/commands/Commands.h"
#include "cli/tools/Device.h"
#include "cli/tools/Files.h"
#include "cli/tools/Output.h"
#include "cli/tools/SystemCalendar.h"
#include "core/Words.h"
#include "core/files/SmallFile.h"

namespace tarnwell::cli {

/// The last check is that of the device asked for: what it says is the cause.
void Check(const Arguments& arguments, Device& device, Report& report) {
    Program& program = device.TheProgram();
    device.Claim();
    const auto answers = [&](TargetDevice target, Quiet quiet) {
        program.state.targetDevice = target;
        return device.TheBus().CheckAnswer(quiet) == BusCheck::Ok;
    };
    const bool primaryAsked = arguments.device == TargetDevice::Primary;
    const bool other =
        answers(primaryAsked ? TargetDevice::Secondary : TargetDevice::Primary, Quiet::Yes);
    const bool asked = answers(arguments.device, Quiet::No);
    report.devices = {primaryAsked ? asked : other, primaryAsked ? other : asked};
    if (asked)
        report.End(Status::Done, "The bus is in order.");
    else
        report.End(Status::Bus, device.LastLine());
}

void Read(const Arguments& arguments, Device& device, Report& report) {
    Content content;
    if (!MaySave(arguments.file, arguments, report) || !device.Open() ||
        !device.ReadImage(content.image.emplace()))
        return;
    device.GiveBack();
    report.crc = mCRC32::BufferCrcText(*content.image);
    Save(arguments.file, content, arguments, report);
}

void Peek(const Arguments& arguments, Device& device, Report& report) {
    if (!device.Open())
        return;
    for (const ByteRange& range : arguments.ranges) {
        if (!device.ReadBytes(range, report.data))
            return;
    }
}

namespace {

/// What a watch finds, as it is found.
class WatchLines {
  public:
    WatchLines(const Arguments& arguments, const Watch& watch)
        : arguments_(arguments), watch_(watch) {}

    /// Prints what is new since the last call, at most as many changes as were asked for; false if
    /// that failed.
    [[nodiscard]] bool Print() {
        bool printed = true;
        for (; told_ < watch_.Changes().size() && !IsDone(); ++told_) {
            const WatchedChange& change = watch_.Changes()[told_];
            printed = cli::Print(arguments_.json ? JsonText(change) : PlainText(change), stdout) &&
                      printed;
        }
        if (watch_.Failure() == failure_)
            return printed;
        failure_ = watch_.Failure();
        const std::string message =
            failure_.empty() ? "The EEPROM is read again." : failure_ + " It is tried again.";
        PrintError(message);
        return !arguments_.json ||
               (cli::Print(JsonText(SystemCalendar().ZonedTime(), watch_.Device(), message),
                           stdout) &&
                printed);
    }

    bool IsDone() const {
        return arguments_.count > 0 && told_ >= static_cast<std::size_t>(arguments_.count);
    }

  private:
    const Arguments& arguments_;
    const Watch& watch_;
    std::size_t told_ = 0;
    std::string failure_;
};

}  // namespace

void WatchBytes(const Arguments& arguments, Device& device, Report& report) {
    if (!device.Open())
        return;
    device.GiveBack();
    Watch& watch = device.TheProgram().watch;
    WatchLines lines(arguments, watch);
    watch.Begin(arguments.device, arguments.ranges);
    while (!lines.IsDone()) {
        const auto pause = watch.Step();
        if (watch.IsDeclined())
            return device.EndDeclined();
        if (!lines.Print())
            return report.End(Status::File, "The changes could not be written.");
        device.Wait(pause);
    }
}

void Get(const Arguments& arguments, Device& device, Report& report) {
    if (RefusesNames(arguments.names, arguments, report) || !device.Open())
        return;
    MemoryBuffer image{};
    for (const Named& named : arguments.names) {
        std::vector<AddressedByte> bytes;
        if (!device.ReadBytes({named->address, 1}, bytes) ||
            (named->low && !device.ReadBytes({*named->low, 1}, bytes)))
            return;
        for (const auto& [address, value] : bytes)
            image[static_cast<std::size_t>(address)] = value;
        report.settings.push_back({named, ValueIn(image, *named)});
    }
}

void GetFromFile(const Arguments& arguments, Report& report) {
    if (RefusesNames(arguments.names, arguments, report))
        return;
    if (const auto content = Load(*arguments.image, arguments, report))
        ShowSettings(arguments.names, *content, report);
}

namespace {

/// A file that is JSON is one of names, or nothing that the program knows.
bool DescribeNames(const std::string& path, Report& report) {
    const SmallFile file = ReadSmallFile(path);
    if (path == kStandardStream || !file.content.starts_with('{'))
        return false;
    const NamesFile names = tarnwell::NamesIn(file.content, path);
    report.file = path;
    if (names.usable == Usable::No) {
        report.End(Status::File, path + ": " + names.faults.front());
        return true;
    }
    for (const std::string& fault : names.faults)
        PrintError(fault);
    report.nameFaults.insert(report.nameFaults.end(), names.faults.begin(), names.faults.end());
    report.held = names.names;
    report.End(Status::Done, "A file of " + Counted(names.names.size(), "name") + ".");
    return true;
}

}  // namespace

void DescribeFile(const Arguments& arguments, Report& report) {
    if (DescribeNames(arguments.file, report))
        return;
    const auto content = Load(arguments.file, arguments, report);
    if (!content)
        return;
    report.file = content->path;
    if (content->image) {
        report.device = OriginOf(content->path, *content->image).device;
        report.crc = mCRC32::BufferCrcText(*content->image);
        report.bytes = kEepromBytes;
        const TargetDevice device = report.device.value_or(arguments.device);
        NameList own = arguments.book.Own();
        std::erase_if(own, [device](const Named& named) { return named->device != device; });
        ShowSettings(own, *content, report);
        return report.End(Status::Done, "An EEProm image.");
    }
    ShowSettings(BuiltInNames(), *content, report);
    report.End(Status::Done, "A settings archive.");
}

void ListBackups(const Arguments& arguments, Report& report) {
    report.device = arguments.device;
    report.backups = KeptBackups(arguments);
    if (report.backups->empty())
        report.End(Status::Done, "No backup is kept.");
}

}  // namespace tarnwell::cli
