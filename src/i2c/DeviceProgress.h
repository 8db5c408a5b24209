// How far a command has come with a whole device.
#pragma once

#include "core/user/StatusBar.h"
#include "core/user/User.h"
#include "i2c/Port.h"

namespace tarnwell {

/// Bytes of one 24C64.
inline constexpr int kEepromBytes = 8192;

/// Shows the part done and the time left while it lives, keeps the window painted, and sets
/// `stopped` once the user wants the command to stop.
class DeviceProgress {
  public:
    DeviceProgress(StatusBar& statusBar, User& user, Clock& clock, bool& stopped);
    ~DeviceProgress() { statusBar_.EndProgress(); }
    DeviceProgress(const DeviceProgress&) = delete;
    DeviceProgress& operator=(const DeviceProgress&) = delete;

    /// Call it often; it shows each 64 of the device's 8192 bytes.
    void Show(int bytesDone);

    /// For a command that leaves nothing half done now: whether it may go on.
    [[nodiscard]] bool GoesOn();

  private:
    /// If the rest takes as long for each byte; whole seconds, begun ones included.
    int SecondsLeft(int bytesDone);

    StatusBar& statusBar_;
    User& user_;
    Clock& clock_;
    bool& stopped_;
    BusTime begin_;
};

}  // namespace tarnwell
