#include "differences/WriteDifferences.h"

#include "core/Number.h"
#include "differences/DifferenceCount.h"
#include "image/WriteTexts.h"
#include "settings/Catalog.h"

namespace tarnwell {

namespace {

constexpr Message kNothingDiffers{"The EEProm already holds the memory buffer.", "I N F O",
                                  BoxStyle::Information};
constexpr Message kAskWrite{"Write 1 byte to the Primary EEProm?", "V E R I F Y",
                            BoxStyle::YesNoExclamation};

std::string DeviceName(TargetDevice device) {
    return device == TargetDevice::Primary ? "Primary" : "Secondary";
}

/// What will change, a line each.
std::string ChangesText(const std::vector<Mismatch>& differing, const ProgramState& state) {
    const auto names = [&](int address) { return SettingNameOn(state.targetDevice, address); };
    std::string text;
    for (const Mismatch& byte : differing)
        text += (text.empty() ? "" : "\n") + AddressText(byte.address, state.numberMode, names) +
                ": " + NumberText(byte.found, state.numberMode) + " becomes " +
                NumberText(byte.expected, state.numberMode);
    return text;
}

std::string WrittenText(int bytes) {
    return "EEP Verified OK; " + Counted(bytes, "Byte") + " Written";
}

}  // namespace

WriteDifferences::WriteDifferences(const CommandContext& context, DeviceReader& reader,
                                   const MemoryBuffer& buffer)
    : Command(context), reader_(reader), buffer_(buffer) {}

void WriteDifferences::WriteDifferencesToEep() {
    const CommandScope scope(statusBar_);
    if (!HoldsImage(state_, buffer_)) {
        user_.ShowBox(kMustReadFirst);
        return;
    }
    const BusClaim claim(i2c_);
    if (i2c_.CheckBus(Quiet::No) != BusCheck::Ok)
        return;
    MemoryBuffer present{};
    if (reader_.Read(present) == DeviceReading::Taken && MayWrite(present))
        WriteAndTell(present);
}

bool WriteDifferences::MayWrite(const MemoryBuffer& present) {
    const std::vector<Mismatch> differing = Differences(buffer_, present);
    if (differing.empty()) {
        statusBar_.PutStatus("");
        user_.ShowBox(kNothingDiffers);
        return false;
    }
    const DifferenceCount count = CountDifferences(state_.targetDevice, buffer_, present);
    Box question = kAskWrite;
    question.text = "Write " + Counted(count.bytes, "byte") + " to the " +
                    DeviceName(state_.targetDevice) + " EEProm?";
    question.details = ChangesText(differing, state_);
    if (user_.ShowBox(std::move(question).WithLine(DifferencesText(count) + ".").WithDefaultNo()) !=
        Answer::Yes) {
        Post(kWriteCancelled);
        return false;
    }
    return writeGuard_.MayWrite();
}

void WriteDifferences::WriteAndTell(const MemoryBuffer& present) {
    DifferenceWriter writer(i2c_, statusBar_);
    if (writer.Write(present, buffer_) == Transfer::Aborted)
        i2c_.AbortOperation(writer.ConfirmedText());
    else if (writer.Left().empty())
        Post(WrittenText(writer.Confirmed()));
    else
        TellLeft(writer);
}

void WriteDifferences::TellLeft(const DifferenceWriter& writer) {
    statusBar_.ShowStatus("ERROR: EEP and Memory Buffer Values Do Not Match!", kMismatchSeconds);
    user_.Beep();
    Box box = Box(kImageNotVerified).WithLine(writer.ConfirmedText());
    const auto names = [&](int address) { return SettingNameOn(state_.targetDevice, address); };
    box.details = MismatchText(writer.Left(), state_.numberMode, names);
    user_.ShowBox(box);
    statusBar_.PutStatus("");
}

}  // namespace tarnwell
