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
    if (!Target().kept)
        Target().lastRead = image;
}

bool WriteGuard::WantsNoBackup() {
    return user_.ShowBox(Box(kAskWithoutBackup)
                             .WithLine(store_.Folder())
                             .WithLine(kQuestion)
                             .WithDefaultNo()) == Answer::Yes;
}

bool WriteGuard::MayWrite() {
    Device& device = Target();
    if (!device.lastRead)
        return true;
    if (!store_.Keep(state_.targetDevice, *device.lastRead) && !WantsNoBackup()) {
        statusBar_.ShowStatus(kWriteCancelled, kResultSeconds);
        return false;
    }
    device.lastRead.reset();
    device.kept = true;
    return true;
}

}  // namespace tarnwell
