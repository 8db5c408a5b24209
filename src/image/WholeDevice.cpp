#include "image/WholeDevice.h"

#include <algorithm>
#include <cmath>

#include "command/WriteTexts.h"
#include "core/Words.h"
#include "core/user/Number.h"
#include "image/WholeWrite.h"

namespace tarnwell {

namespace {

constexpr TextRequest kAskFillValue{"Enter DECIMAL value for EEP fill...",
                                    "F I L L   E N T I R E   E E P", "255"};
constexpr Message kBadFillValue{"Please enter a whole number from 0 to 255.", "E R R O R",
                                BoxStyle::Exclamation};

constexpr Message kAskLeaveSettings{
    "Setting values have been changed, but not archived\r\n"
    "to a disk or written to an EEProm.\r\n\r\n"
    "Really select the secondary EEProm without saving the changes?",
    "W A R N I N G", BoxStyle::YesNoExclamation};

std::string_view Trimmed(std::string_view text) {
    constexpr std::string_view kBlanks = " \t\r\n";
    const auto first = text.find_first_not_of(kBlanks);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

bool IsDecimalNumber(std::string_view text) {
    if (text.starts_with('-') || text.starts_with('+'))
        text.remove_prefix(1);
    const auto isDigit = [](char character) { return character >= '0' && character <= '9'; };
    const bool hasDigit = std::ranges::any_of(text, isDigit);
    return hasDigit && std::ranges::count(text, '.') <= 1 &&
           std::ranges::all_of(text, [&](char c) { return c == '.' || isDigit(c); });
}

}  // namespace

std::optional<std::uint8_t> FillValue(std::string_view answer) {
    answer = Trimmed(answer);
    if (!IsDecimalNumber(answer))
        return std::nullopt;
    const double rounded = std::floor(LeadingNumber(answer) + 0.5);
    if (rounded < 0 || rounded > 255)
        return std::nullopt;
    return static_cast<std::uint8_t>(rounded);
}

WholeDevice::WholeDevice(const CommandContext& context, DeviceReader& reader,
                         const Calendar& calendar, MemoryBuffer& buffer, BufferDisplays& displays)
    : Command(context),
      reader_(reader),
      calendar_(calendar),
      buffer_(buffer),
      displays_(displays) {}

void WholeDevice::ReadEntireEep() {
    const CommandScope scope(statusBar_);
    if (!displays_.MayRefillGrid())
        return;
    const BusClaim claim(i2c_);
    if (i2c_.CheckBus(Quiet::No) != BusCheck::Ok)
        return;
    const Step step(steps_, {"Read of " + EepromName(state_.targetDevice)}, Extent::Everything);
    if (reader_.Read(buffer_) != DeviceReading::Taken)
        return;
    origin_ = {.source = BufferOrigin::Source::Device,
               .device = state_.targetDevice,
               .place = BusName(state_),
               .time = calendar_.TimeWithSeconds()};
    origin_.image.Edit() = buffer_;
    Post(EepromName(state_.targetDevice) + " Data Read Into Memory");
    statusBar_.ShowCrc(mCRC32::BufferCrcText(buffer_));
    displays_.FillGrid();
    displays_.ShowSettingsFromBuffer();
    state_.EepRead = true;
}

void WholeDevice::WriteEntireEep() {
    const CommandScope scope(statusBar_);
    const BusClaim claim(i2c_);
    if (i2c_.CheckBus(Quiet::No) != BusCheck::Ok)
        return;
    if (!writeGuard_.Wants(WriteKind::Image, kAskWriteImage))
        return;
    WriteAndVerify(buffer_, {.write = "Please Wait, Writing Buffer to EEProm...",
                             .verify = "EEP Write Complete, Now Verifing Data...",
                             .mismatch = "ERROR: EEP and Memory Buffer Values Do Not Match!",
                             .rest = kWriteTheRest});
}

void WholeDevice::FillEntireEep() {
    const CommandScope scope(statusBar_);
    const BusClaim claim(i2c_);
    if (i2c_.CheckBus(Quiet::No) != BusCheck::Ok)
        return;
    const auto answer = user_.AskText(kAskFillValue);
    const auto value = answer ? FillValue(*answer) : std::nullopt;
    if (!value) {
        if (answer)
            user_.ShowBox(kBadFillValue);
        Post(kWriteCancelled);
        return;
    }
    if (!writeGuard_.Fits(WriteKind::Fill))
        return;
    MemoryBuffer image{};
    image.fill(*value);
    WriteAndVerify(image, {.write = "Please Wait, Writing Fill Value to EEProm...",
                           .verify = "Please Wait, Verifing Fill Value...",
                           .mismatch = "ERROR: EEP and Desired Value Do Not Match!"});
}

void WholeDevice::WriteAndVerify(const MemoryBuffer& image, const Lines& lines) {
    if (!MayGoOn(writeGuard_.ReadAllAgain()) || !writeGuard_.MayWrite())
        return;
    statusBar_.PutStatus(lines.write);
    const Transfer written = WriteWhole(i2c_, image);
    const auto mismatches =
        written == Transfer::Done ? VerifyEEP(image, lines.verify) : std::nullopt;
    if (!mismatches)
        return i2c_.AbortOperation(i2c_.IsStopped() ? HowFar(image) + lines.rest : "", {});
    if (mismatches->empty())
        return PostWritten(kImageWritten);
    TellNotVerified(lines.mismatch, kImageNotVerified, *mismatches);
}

std::string WholeDevice::HowFar(const MemoryBuffer& image) {
    const int written = i2c_.BytesWritten();
    const auto found = i2c_.ReadAfterAbort();
    int confirmed = 0;
    for (int address = 0; address < written && found; ++address) {
        const auto index = static_cast<std::size_t>(address);
        confirmed += (*found)[index] == image[index] ? 1 : 0;
    }
    return ConfirmedText(confirmed, static_cast<std::size_t>(written));
}

std::optional<std::vector<Mismatch>> WholeDevice::VerifyEEP(const MemoryBuffer& image,
                                                            std::string_view waitLine) {
    statusBar_.PutStatus(waitLine);
    if (i2c_.ReadBlock(0, kEepromBytes) == Transfer::Aborted)
        return std::nullopt;
    return Mismatches(image, i2c_.ReadData());
}

void WholeDevice::SelectEeprom(TargetDevice device) {
    const CommandScope scope(statusBar_);
    const Step step(steps_, {"Selection of " + EepromName(device)});
    if (device == TargetDevice::Primary)
        SelectPrimary();
    else
        SelectSecondary();
}

void WholeDevice::SelectPrimary() {
    const bool wasSecondary = state_.targetDevice == TargetDevice::Secondary;
    ShowTarget(TargetDevice::Primary, "Primary EEProm Selected as Target Device");
    if (wasSecondary)
        displays_.ClearSettingCells();
}

bool WholeDevice::WantsSecondary() {
    return user_.ShowBox(kWarnOfSecondary) == Answer::Ok &&
           (!displays_.HasChangedSettings() || user_.ShowBox(kAskLeaveSettings) == Answer::Yes);
}

void WholeDevice::SelectSecondary() {
    if (!WantsSecondary()) {
        Post(kTargetNotChanged);
        return;
    }
    ShowTarget(TargetDevice::Secondary, "Secondary EEProm Selected as Target Device");
    displays_.ClearSettingCells();
}

void WholeDevice::ShowTarget(TargetDevice device, std::string_view status) {
    if (device != state_.targetDevice)
        displays_.ClearPendingWrites();
    state_.targetDevice = device;
    screen_.Changed(Shown::Menus);
    screen_.Changed(Shown::EepPanel);
    Post(status);
}

}  // namespace tarnwell
