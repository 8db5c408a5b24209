#include "cli/tools/Writing.h"

#include "command/WriteTexts.h"
#include "core/Words.h"

namespace tarnwell::cli {

namespace {

/// More than all settings have; only an image has more.
constexpr std::size_t kMostLines = 100;

std::vector<ByteChange> ChangesOf(const ByteValues& values, const MemoryBuffer& present) {
    std::vector<ByteChange> changes;
    for (const auto& [address, value] : values)
        changes.push_back({address, present[static_cast<std::size_t>(address)], value});
    return changes;
}

bool IsConfirmed(const Arguments& arguments, const Writing& writing,
                 const std::vector<ByteChange>& changes) {
    if (arguments.yes)
        return true;
    std::string text;
    if (arguments.device == TargetDevice::Secondary)
        text = std::string(kWarnOfSecondary.text) + "\n";
    std::erase(text, '\r');
    text += "To be written to the " + EepromName(arguments.device) + ":\n" +
            ChangeLines(changes, arguments.device, kMostLines, arguments.book);
    return AgreesOnTerminal(text + writing.question);
}

MemoryBuffer With(MemoryBuffer image, const ByteValues& values) {
    for (const auto& [address, value] : values)
        image[static_cast<std::size_t>(address)] = value;
    return image;
}

bool WriteAndVerify(Device& device, const Writing& writing, const MemoryBuffer& present) {
    if (writing.how == How::ByteByByte)
        return device.Write(writing.values) && device.ReadBack(writing.values, writing.notVerified);
    return device.WriteDifferences(present, With(present, writing.values), writing.others);
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

void WriteConfirmed(const Arguments& arguments, Device& device, Report& report,
                    const Writing& writing, const MemoryBuffer& present) {
    const std::vector<ByteChange> changes = ChangesOf(writing.values, present);
    report.written = 0;
    if (changes.empty())
        return report.End(Status::Done, "The EEProm already holds what is to be written.");
    if (arguments.dryRun) {
        report.planned = changes;
        report.doubts = device.Doubts(writing.kind, With(present, writing.values));
        return report.End(Status::Done, std::string(kOnlyPlanned));
    }
    if (!device.Fits(writing.kind, With(present, writing.values)))
        return;
    if (!IsConfirmed(arguments, writing, changes))
        return report.End(Status::NotConfirmed, std::string(kWriteCancelled) + ".");
    if (writing.how == How::ByteByByte && !device.MakeSure())
        return;
    if (!device.KeepBackup(writing.keep, present))
        return;
    const bool isVerified = WriteAndVerify(device, writing, present);
    const bool isRecorded = device.EndWrite();
    if (isVerified)
        report.End(Status::Done, writing.done);
    if (!isRecorded)
        report.End(isVerified ? Status::File : report.status,
                   report.message + (isVerified ? "." : "") +
                       " The record of the set has not got it: " + device.LastLine());
}

}  // namespace tarnwell::cli
