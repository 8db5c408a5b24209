#include "cli/tools/Writing.h"

#include "cli/tools/Terminal.h"
#include "differences/DifferenceCount.h"
#include "image/WriteTexts.h"

namespace tarnwell::cli {

namespace {

/// More than all settings have; only an image has more.
constexpr std::size_t kMostLines = 100;

std::string QuestionText(const Arguments& arguments, const Writing& writing,
                         const std::vector<ByteChange>& changes) {
    std::string text;
    if (arguments.device == TargetDevice::Secondary)
        text = std::string(kWarnOfSecondary.text) + "\n";
    std::erase(text, '\r');
    text += "To be written to the ";
    text += arguments.device == TargetDevice::Primary ? "Primary" : "Secondary";
    text += " EEProm:\n" + ChangeLines(changes, kMostLines);
    return text + writing.question.text;
}

bool IsConfirmed(const Arguments& arguments, const Writing& writing,
                 const std::vector<ByteChange>& changes) {
    if (arguments.yes)
        return true;
    return AgreesOnTerminal(QuestionText(arguments, writing, changes));
}

}  // namespace

bool CanBeConfirmed(const Arguments& arguments, Report& report) {
    if (arguments.yes || arguments.dryRun || HasTerminal())
        return true;
    report.End(Status::NotConfirmed,
               "Nothing was written: nobody can be asked without a terminal. Say --yes to write "
               "without a question.");
    return false;
}

std::vector<ByteChange> ChangesOf(const ByteValues& values, const MemoryBuffer& image) {
    std::vector<ByteChange> changes;
    for (const auto& [address, value] : values)
        changes.push_back({address, image[static_cast<std::size_t>(address)], value});
    return changes;
}

void WriteConfirmed(const Arguments& arguments, Device& device, Report& report,
                    const Writing& writing, const MemoryBuffer& image) {
    const std::vector<ByteChange> changes = ChangesOf(writing.values, image);
    report.written = 0;
    if (arguments.dryRun) {
        report.planned = changes;
        return report.End(Status::Done, "Nothing was written. This would be:");
    }
    if (!IsConfirmed(arguments, writing, changes))
        return report.End(Status::NotConfirmed, std::string(kWriteCancelled) + ".");
    if (!device.KeepBackup() || !device.Write(writing.values) || !device.ReadBack(writing.values))
        return;
    if (report.mismatches.empty())
        report.End(Status::Done, std::string(writing.done));
    else
        report.End(Status::Unverified, OneLine(writing.notVerified));
}

void WriteOnlyDifferences(const Arguments& arguments, Device& device, Report& report,
                          const MemoryBuffer& wanted, const MemoryBuffer& present) {
    Writing writing{{}, kAskWriteImage, {}, kImageNotVerified};
    for (const Mismatch& byte : Differences(wanted, present))
        writing.values[byte.address] = byte.expected;
    const bool restores = arguments.command == Command::Restore;
    const int count = static_cast<int>(writing.values.size());
    writing.question.text = (restores ? "Restore " : "Write ") + Counted(count, "byte") +
                            (restores ? " of the " : " to the ") +
                            (arguments.device == TargetDevice::Primary ? "Primary" : "Secondary") +
                            " EEProm?";
    report.written = 0;
    if (count == 0)
        return report.End(Status::Done, "The EEProm already holds what is to be written.");
    const std::vector<ByteChange> changes = ChangesOf(writing.values, present);
    if (arguments.dryRun) {
        report.planned = changes;
        return report.End(Status::Done, "Nothing was written. This would be:");
    }
    if (!IsConfirmed(arguments, writing, changes))
        return report.End(Status::NotConfirmed, std::string(kWriteCancelled) + ".");
    const auto keep = restores ? Backup::UnlessKept : Backup::Always;
    if (device.KeepBackup(keep, present) && device.WriteDifferences(present, wanted) &&
        report.mismatches.empty())
        report.End(Status::Done, "EEP Verified OK; " + Counted(count, "Byte") + " Written");
}

}  // namespace tarnwell::cli
