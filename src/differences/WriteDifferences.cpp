#include "differences/WriteDifferences.h"

#include "differences/Comparison.h"
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

/// What will change, a line for each setting and each byte with other bits.
std::string ChangesText(const std::vector<DifferenceRow>& rows, const ProgramState& state) {
    const NumberMode mode = state.numberMode;
    const auto names = [&](int address) { return SettingNameOn(state.targetDevice, address); };
    std::string text;
    for (const DifferenceRow& row : rows) {
        for (const Mismatch& byte : row.bytes) {
            const DifferenceTexts texts = row.cell ? TextsOf(row, mode) : TextsOf(byte, mode);
            text += (text.empty() ? "" : "\n") +
                    AddressText(byte.address, mode, row.cell ? ByteNames(names) : ByteNames()) +
                    ": " + texts[kLeftColumn] + " becomes " + texts[kRightColumn];
        }
    }
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
    const DifferenceCount count = CountDifferences(state_.targetDevice, buffer_, present);
    if (count.bytes == 0) {
        statusBar_.PutStatus("");
        user_.ShowBox(kNothingDiffers);
        return false;
    }
    Box question = kAskWrite;
    question.text = "Write " + Counted(count.bytes, "byte") + " to the " +
                    DeviceName(state_.targetDevice) + " EEProm?";
    question.details = ChangesText(DifferenceRows(state_.targetDevice, present, buffer_), state_);
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
