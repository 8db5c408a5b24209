#include "image/WriteGuard.h"

#include "image/WriteTexts.h"

namespace tarnwell {

namespace {

constexpr Message kAskWithoutBackup{
    "The EEProm's data as last read could not be backed up;\r\n"
    "a file in this folder could not be written:",
    "W A R N I N G", BoxStyle::YesNoExclamation};
constexpr std::string_view kQuestion = "\r\nWrite to the EEProm without a backup?";

}  // namespace

WriteGuard::WriteGuard(const ProgramState& state, StatusBar& statusBar, User& user,
                       BackupStore& store)
    : state_(state), statusBar_(statusBar), user_(user), store_(store) {}

void WriteGuard::DeviceRead(const EepromArray& image) {
    Device& device = Target();
    if (device.lastRead == image)
        return;
    device.lastRead = image;
    device.unkept.push_back(image);
}

bool WriteGuard::WantsNoBackup() {
    return user_.ShowBox(Box(kAskWithoutBackup)
                             .WithLine(store_.Folder())
                             .WithLine(kQuestion)
                             .WithDefaultNo()) == Answer::Yes;
}

bool WriteGuard::MayWrite() {
    std::deque<MemoryBuffer>& unkept = Target().unkept;
    while (!unkept.empty() && store_.Keep(state_.targetDevice, unkept.front()))
        unkept.pop_front();
    if (!unkept.empty() && !WantsNoBackup()) {
        statusBar_.ShowStatus(kWriteCancelled, kResultSeconds);
        return false;
    }
    unkept.clear();
    return true;
}

}  // namespace tarnwell
