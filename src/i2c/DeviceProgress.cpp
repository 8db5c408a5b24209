#include "i2c/DeviceProgress.h"

namespace tarnwell {

namespace {

constexpr int kStep = 64;

}  // namespace

DeviceProgress::DeviceProgress(StatusBar& statusBar, User& user, Clock& clock, bool& stopped)
    : statusBar_(statusBar), user_(user), clock_(clock), stopped_(stopped), begin_(clock.Now()) {}

void DeviceProgress::Show(int bytesDone) {
    if (bytesDone == 0 || bytesDone % kStep != 0)
        return;
    const int percent = (bytesDone * 100 + kEepromBytes / 2) / kEepromBytes;
    statusBar_.ShowProgress({percent, SecondsLeft(bytesDone)});
    static_cast<void>(GoesOn());
}

bool DeviceProgress::GoesOn() {
    stopped_ = !user_.KeepPainting() || stopped_;
    return !stopped_;
}

int DeviceProgress::SecondsLeft(int bytesDone) {
    const BusTime left = (clock_.Now() - begin_) / bytesDone * (kEepromBytes - bytesDone);
    return static_cast<int>(std::chrono::ceil<std::chrono::seconds>(left).count());
}

}  // namespace tarnwell
