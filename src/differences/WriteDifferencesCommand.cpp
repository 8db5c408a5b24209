#include "differences/WriteDifferencesCommand.h"

#include "command/WriteTexts.h"
#include "core/Words.h"
#include "differences/DifferenceTexts.h"
#include "settings/Catalog.h"

namespace tarnwell {

namespace {

constexpr Message kHoldsBuffer{"The EEProm already holds the memory buffer.", "I N F O",
                               BoxStyle::Information};
constexpr Message kHoldsAll{"The EEProm already holds what is to be written.", "I N F O",
                            BoxStyle::Information};
constexpr Message kAskWrite{"Write 1 byte to the Primary EEProm?", "V E R I F Y",
                            BoxStyle::YesNoExclamation};

std::string WrittenText(int bytes) {
    return "EEP Verified OK; " + Counted(bytes, "Byte") + " Written";
}

}  // namespace

constexpr WriteDifferencesCommand::Manner WriteDifferencesCommand::kWrite{
    WriteKind::Differences, {"Write ", " to the "}, kHoldsBuffer, Others::AsWanted};
constexpr WriteDifferencesCommand::Manner WriteDifferencesCommand::kRestore{
    WriteKind::Restore, {"Restore ", " of the "}, kHoldsBuffer, Others::AsWanted};
constexpr WriteDifferencesCommand::Manner WriteDifferencesCommand::kWriteSome{
    WriteKind::Selected, {"Write ", " to the "}, kHoldsAll, Others::AsTheyAre};
constexpr WriteDifferencesCommand::Manner WriteDifferencesCommand::kTakeBack{
    WriteKind::TakeBack, {"Take back ", " of the "}, kHoldsAll, Others::AsTheyAre};

constexpr WriteDifferencesCommand::Manner WriteDifferencesCommand::kGoBack{
    WriteKind::GoBack, {"Restore ", " of the "}, kHoldsAll, Others::AsWanted};

WriteDifferencesCommand::WriteDifferencesCommand(const CommandContext& context,
                                                 DeviceReader& reader, ImageArchive& images,
                                                 const NameBook& book, const MemoryBuffer& buffer)
    : Command(context), reader_(reader), images_(images), book_(book), buffer_(buffer) {}

void WriteDifferencesCommand::WriteDifferencesToEep() {
    const CommandScope scope(statusBar_);
    if (!HoldsImage(state_, buffer_)) {
        user_.ShowBox(kMustReadFirst);
        return;
    }
    WriteBuffer(kWrite);
}

void WriteDifferencesCommand::Restore(const KeptImage& kept) {
    const CommandScope scope(statusBar_);
    if (images_.LoadKeptImage(kept, ImageArchive::Discard::AskedIfChanged))
        WriteBuffer(kRestore);
}

void WriteDifferencesCommand::WriteSome(const WantedOf& wantedOf,
                                        std::optional<MemoryBuffer>& held) {
    const CommandScope scope(statusBar_);
    Write(kWriteSome, wantedOf, held);
}

void WriteDifferencesCommand::TakeBack(const WantedOf& wantedOf) {
    const CommandScope scope(statusBar_);
    std::optional<MemoryBuffer> held;
    Write(kTakeBack, wantedOf, held);
}

void WriteDifferencesCommand::GoBack(const MemoryBuffer& image) {
    const CommandScope scope(statusBar_);
    std::optional<MemoryBuffer> held;
    Write(
        kGoBack, [&](const MemoryBuffer& /*present*/) { return image; }, held);
}

void WriteDifferencesCommand::WriteBuffer(const Manner& manner) {
    std::optional<MemoryBuffer> held;
    Write(
        manner, [this](const MemoryBuffer& /*present*/) { return buffer_; }, held);
}

void WriteDifferencesCommand::Write(const Manner& manner, const WantedOf& wantedOf,
                                    std::optional<MemoryBuffer>& held) {
    const BusClaim claim(i2c_);
    MemoryBuffer present{};
    if (i2c_.CheckBus(Quiet::No) != BusCheck::Ok || reader_.Read(present) != DeviceReading::Taken)
        return;
    held = present;
    if (!Differs(present, wantedOf(present), manner) ||
        !MayGoOn(writeGuard_.ReadAgain(present, wantedOf(present))))
        return;
    held = present;
    const MemoryBuffer wanted = wantedOf(present);
    if (!Differs(present, wanted, manner) || !MayWrite(present, wanted, manner))
        return;
    PageWriter writer(i2c_, statusBar_, writeGuard_);
    WriteAndTell(writer, present, wanted, manner.others);
    held = writer.Held();
}

bool WriteDifferencesCommand::Differs(const MemoryBuffer& present, const MemoryBuffer& wanted,
                                      const Manner& manner) {
    if (!Mismatches(wanted, present).empty())
        return true;
    statusBar_.PutStatus("");
    user_.ShowBox(manner.nothingDiffers);
    return false;
}

bool WriteDifferencesCommand::MayWrite(const MemoryBuffer& present, const MemoryBuffer& wanted,
                                       const Manner& manner) {
    const auto rows = DifferenceRows(book_, state_.targetDevice, present, wanted);
    const DifferenceCount count = CountDifferences(rows);
    Box box = kAskWrite;
    box.text = std::string(manner.question[0]) + Counted(count.bytes, "byte");
    box.text.append(manner.question[1]).append(EepromName(state_.targetDevice)).append("?");
    box.details = ChangesText(rows, state_.numberMode);
    return writeGuard_.Wants(manner.kind,
                             std::move(box).WithLine(DifferencesText(count) + ".").WithDefaultNo(),
                             &wanted) &&
           writeGuard_.MayWrite();
}

void WriteDifferencesCommand::WriteAndTell(PageWriter& writer, const MemoryBuffer& present,
                                           const MemoryBuffer& wanted, Others others) {
    if (writer.Write(present, wanted, others) == Transfer::Aborted)
        TellAborted(writer, others);
    else if (writer.Left().empty())
        PostWritten(WrittenText(writer.Confirmed()));
    else
        TellLeft(writer);
}

void WriteDifferencesCommand::TellAborted(const PageWriter& writer, Others others) {
    const bool rest = i2c_.IsStopped() && others == Others::AsWanted;
    i2c_.AbortOperation(writer.ConfirmedText() + (rest ? kWriteTheRest : ""), {});
}

void WriteDifferencesCommand::TellLeft(const PageWriter& writer) {
    TellNotVerified("ERROR: EEP and Memory Buffer Values Do Not Match!",
                    Box(kImageNotVerified).WithLine(writer.ConfirmedText()), writer.Left());
}

}  // namespace tarnwell
