// How far a command has come with a whole device.
#pragma once

#include "core/StatusBar.h"
#include "core/User.h"
#include "i2c/Port.h"

namespace tarnwell {

/// Bytes of one 24C64.
inline constexpr int kEepromBytes = 8192;

/// Shows the part done and the time left while it lives, and keeps the window painted.
class DeviceProgress {
  public:
    DeviceProgress(StatusBar& statusBar, User& user, Clock& clock);
    ~DeviceProgress() { statusBar_.EndProgress(); }
    DeviceProgress(const DeviceProgress&) = delete;
    DeviceProgress& operator=(const DeviceProgress&) = delete;

    /// Call it often; it shows each 64 of the device's 8192 bytes.
    void Show(int bytesDone);

  private:
    /// If the rest takes as long for each byte; whole seconds, begun ones included.
    int SecondsLeft(int bytesDone);

    StatusBar& statusBar_;
    User& user_;
    Clock& clock_;
    BusTime begin_;
};

}  // namespace tarnwell
