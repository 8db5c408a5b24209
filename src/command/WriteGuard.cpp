#include "command/WriteGuard.h"

#include <algorithm>
#include <iterator>

#include "command/WriteTexts.h"
#include "core/Words.h"

namespace tarnwell {

namespace {

constexpr Message kAskWithoutBackup{
    "The EEProm's data as last read could not be backed up;\r\n"
    "a file in this folder could not be written:",
    "W A R N I N G", BoxStyle::YesNoExclamation};
constexpr std::string_view kQuestion = "\r\nWrite to the EEProm without a backup?";
constexpr Message kAskWithoutRecord{
    "This write cannot be put into the record of the set;\r\n"
    "this file could not be written:",
    "W A R N I N G", BoxStyle::YesNoExclamation};
constexpr Message kNotRecorded{
    "The write could not be put into the record of the set;\r\n"
    "this file could not be written:",
    "W A R N I N G", BoxStyle::Exclamation};
constexpr Message kNotPutRight{
    "Bytes of the backup were read wrongly, and it could not be put right;\r\n"
    "this file could not be written:",
    "W A R N I N G", BoxStyle::Exclamation};
constexpr std::string_view kWriteAllTheSame = "\r\nWrite to the EEProm all the same?";
constexpr Message kDoubts{"", "W A R N I N G", BoxStyle::YesNoExclamation};

/// Of how many bytes one is read by itself: where the whole device is read again, and where pages.
constexpr int kSampleStep = 512;
constexpr int kWideSampleStep = 2048;
constexpr Message kTooNoisy{"The lines are too noisy: ", "E R R O R", BoxStyle::Exclamation};

bool IsPageAlike(const EepromArray& one, const EepromArray& other, int page) {
    const int first = page * kPageBytes;
    return std::equal(one.begin() + first, one.begin() + first + kPageBytes, other.begin() + first);
}

/// The first page from `page` on that is alike in both images, or is not.
int NextPage(const EepromArray& one, const EepromArray& other, int page, bool alike) {
    while (page < kEepromBytes / kPageBytes && IsPageAlike(one, other, page) != alike)
        ++page;
    return page;
}

}  // namespace

WriteGuard::WriteGuard(const ProgramState& state, StatusBar& statusBar, User& user,
                       FollowedBus& bus, BackupStore& store)
    : state_(state), statusBar_(statusBar), user_(user), bus_(bus), store_(store) {
    bus_.Tell(*this);
}

void WriteGuard::DeviceRead(const EepromArray& image) {
    Device& device = Target();
    store_.WasRead(state_.targetDevice, image);
    if (device.lastRead == image)
        return;
    device.lastRead = image;
    device.unkept.push_back(image);
    device.path.clear();
}

SecondReading WriteGuard::ReadAgain(EepromArray& present, const EepromArray& wanted) {
    std::vector<Mismatch> disagreeing;
    constexpr int kPages = kEepromBytes / kPageBytes;
    for (int page = NextPage(present, wanted, 0, false); page < kPages;) {
        const int end = NextPage(present, wanted, page, true);
        const int first = page * kPageBytes;
        const int count = end * kPageBytes - first;
        if (bus_.ReadBlock(static_cast<std::int16_t>(first), static_cast<std::int16_t>(count)) ==
            Transfer::Aborted)
            return SecondReading::Aborted;
        EepromArray found = present;
        std::copy_n(bus_.ReadData().begin(), count, found.begin() + first);
        std::ranges::copy(Mismatches(present, found), std::back_inserter(disagreeing));
        page = NextPage(present, wanted, end, false);
    }
    const auto wrong = WrongSamples(present, kWideSampleStep, disagreeing);
    if (!wrong)
        return SecondReading::Aborted;
    if (*wrong == 0)
        return Settle(present, disagreeing);
    if (const auto read = ReadWhole(); read != SecondReading::Agreed)
        return read;
    return SettleWhole(present, Mismatches(present, bus_.ReadData()));
}

SecondReading WriteGuard::ReadAllAgain() {
    if (Target().unkept.empty())
        return SecondReading::Agreed;
    if (const auto read = ReadWhole(); read != SecondReading::Agreed)
        return read;
    EepromArray image = Target().unkept.back();
    auto disagreeing = Mismatches(image, bus_.ReadData());
    if (disagreeing.size() > kMostDisagreeing) {
        std::copy_n(bus_.ReadData().begin(), kEepromBytes, image.begin());
        DeviceRead(image);
        if (const auto read = ReadWhole(); read != SecondReading::Agreed)
            return read;
        disagreeing = Mismatches(image, bus_.ReadData());
    }
    return SettleWhole(image, disagreeing);
}

SecondReading WriteGuard::SettleWhole(EepromArray& image,
                                      const std::vector<Mismatch>& disagreeing) {
    const auto wrong = WrongSamples(image, kSampleStep, disagreeing);
    if (!wrong)
        return SecondReading::Aborted;
    return *wrong == 0 ? Settle(image, disagreeing) : TellTooNoisy(*wrong);
}

std::optional<std::size_t> WriteGuard::WrongSamples(const EepromArray& image, int step,
                                                    const std::vector<Mismatch>& disagreeing) {
    std::size_t wrong = 0;
    for (int address = step - 1; address < kEepromBytes; address += step) {
        if (bus_.ReadAgreed(static_cast<std::int16_t>(address)) == Transfer::Aborted)
            return std::nullopt;
        if (bus_.ReadData()[0] != image[static_cast<std::size_t>(address)] &&
            std::ranges::find(disagreeing, address, &Mismatch::address) == disagreeing.end())
            ++wrong;
    }
    return wrong;
}

SecondReading WriteGuard::HoldAgainstNewest() {
    if (Target().unkept.empty())
        return SecondReading::Agreed;
    EepromArray image = Target().unkept.back();
    if (const auto newest = store_.Newest(state_.targetDevice)) {
        const auto disagreeing = Mismatches(image, *newest);
        if (disagreeing.size() <= kMostDisagreeing)
            return Settle(image, disagreeing);
    }
    const std::size_t unkept = Target().unkept.size();
    const SecondReading read = ReadAllAgain();
    if (Target().unkept.size() > unkept)  // no other device, but a first reading that went wrong
        Target().unkept.erase(Target().unkept.end() - 2);
    return read;
}

SecondReading WriteGuard::ReadWhole() {
    statusBar_.PutStatus("Please Wait, Reading the EEPROM Again...");
    return bus_.ReadBlock(0, kEepromBytes) == Transfer::Done ? SecondReading::Agreed
                                                             : SecondReading::Aborted;
}

SecondReading WriteGuard::TellTooNoisy(std::size_t bytes) {
    Box box = kTooNoisy;
    box.text += Counted(bytes, "byte") + " did not read the same twice.";
    user_.ShowBox(box);
    statusBar_.ShowStatus(kWriteCancelled, kResultSeconds);
    return SecondReading::TooNoisy;
}

SecondReading WriteGuard::Settle(EepromArray& image, const std::vector<Mismatch>& disagreeing) {
    if (disagreeing.size() > kMostDisagreeing)
        return TellTooNoisy(disagreeing.size());
    for (const Mismatch& byte : disagreeing) {
        if (bus_.ReadAgreed(static_cast<std::int16_t>(byte.address)) == Transfer::Aborted)
            return SecondReading::Aborted;
        image[static_cast<std::size_t>(byte.address)] = bus_.ReadData()[0];
    }
    if (Device& device = Target(); device.unkept.empty())
        DeviceRead(image);
    else
        device.unkept.back() = *(device.lastRead = image);
    if (!disagreeing.empty())
        store_.WasRead(state_.targetDevice, image);
    return SecondReading::Agreed;
}

void WriteGuard::PutRight(const std::vector<Mismatch>& misread) {
    Device& device = Target();
    if (misread.empty() || !device.lastRead)
        return;
    EepromArray image = *device.lastRead;
    for (const Mismatch& byte : misread)
        image[static_cast<std::size_t>(byte.address)] = byte.found;
    device.lastRead = image;
    store_.WasRead(state_.targetDevice, image);
    if (!device.path.empty() && !store_.Replace(device.path, image))
        user_.ShowBox(Box(kNotPutRight).WithLine(device.path));
}

Box WriteGuard::Doubts(WriteKind kind, const EepromArray* coming) const {
    Box doubts = kDoubts;
    if (advisor_ != nullptr)
        advisor_->AddDoubts(kind, coming, doubts);
    return doubts;
}

bool WriteGuard::Fits(WriteKind kind, const EepromArray* coming) {
    kind_ = kind;
    Box doubts = Doubts(kind, coming);
    if (doubts.text.empty() ||
        user_.ShowBox(std::move(doubts).WithLine(kWriteAllTheSame).WithDefaultNo()) == Answer::Yes)
        return true;
    statusBar_.ShowStatus(kWriteCancelled, kResultSeconds);
    return false;
}

Box WriteGuard::Described(WriteKind kind, Box question) const {
    if (advisor_ != nullptr)
        advisor_->Describe(kind, question);
    return question;
}

bool WriteGuard::Wants(WriteKind kind, const Box& question, const EepromArray* coming) {
    if (!Fits(kind, coming))
        return false;
    if (user_.ShowBox(Described(kind, question)) == Answer::Yes)
        return true;
    statusBar_.ShowStatus(kWriteCancelled, kResultSeconds);
    return false;
}

bool WriteGuard::WantsNoBackup() {
    return user_.ShowBox(Box(kAskWithoutBackup)
                             .WithLine(store_.Folder())
                             .WithLine(kQuestion)
                             .WithDefaultNo()) == Answer::Yes;
}

bool WriteGuard::MayWrite() {
    if (!KeepUnkept(state_.targetDevice) && !WantsNoBackup()) {
        statusBar_.ShowStatus(kWriteCancelled, kResultSeconds);
        return false;
    }
    Target().unkept.clear();
    return MayRecord();
}

bool WriteGuard::MayRecord() {
    const std::string path = store_.BeginWrite(state_.targetDevice, kind_);
    if (path.empty() || !unrecorded_.empty() || WantsNoRecord(path))
        return true;
    statusBar_.ShowStatus(kWriteCancelled, kResultSeconds);
    return false;
}

/// Told once: whoever goes on without a record does so for the rest of the run.
bool WriteGuard::WantsNoRecord(const std::string& path) {
    if (user_.ShowBox(
            Box(kAskWithoutRecord).WithLine(path).WithLine(kWriteAllTheSame).WithDefaultNo()) !=
        Answer::Yes)
        return false;
    unrecorded_ = path;
    return true;
}

void WriteGuard::Wrote(const DeviceWrite& write) {
    const std::string path = store_.Wrote(write);
    if (path.empty() || !unrecorded_.empty())
        return;
    unrecorded_ = path;
    user_.ShowBox(Box(kNotRecorded).WithLine(path));
}

bool WriteGuard::KeepUnkept(TargetDevice which) {
    Device& device = devices_[static_cast<std::size_t>(which)];
    while (!device.unkept.empty()) {
        device.path = store_.Keep(which, device.unkept.front());
        if (device.path.empty())
            return false;
        device.unkept.pop_front();
    }
    return true;
}

void WriteGuard::Leave(TargetDevice device) {
    static_cast<void>(KeepUnkept(device));
    devices_[static_cast<std::size_t>(device)] = {};
}

}  // namespace tarnwell
