// What the buses have in common, whatever drives them: counts, the bytes read, the boxes.
#pragma once

#include <string>
#include <string_view>

#include "core/run/StopRequest.h"
#include "core/user/StatusBar.h"
#include "core/user/User.h"
#include "i2c/BusTrace.h"
#include "i2c/EepromBus.h"
#include "i2c/KernelI2c.h"
#include "i2c/Port.h"

namespace tarnwell {

/// What the bus is driven by, and who follows it.
struct Wire {
    Port& port;
    Clock& clock;
    BusTrace& trace = NoBusTrace();
    const StopRequest& stop = NoStopRequest();
    KernelI2c& kernel = NoKernelI2c();
};

/// A 24C64 finishes its write cycle within 10 ms (data sheet, t_WR).
inline constexpr BusTime kWriteCycleBound = std::chrono::milliseconds(50);

/// The box of a device that does not answer, and of each operation that was cut short.
inline constexpr Message kNoAcknowledge{"There is an I2C bus or\r\nInterface Hardware Problem",
                                        "E R R O R", BoxStyle::Exclamation};

class DrivenBus : public EepromBus {
  public:
    const EepromArray& ReadData() const final { return readData_; }
    int BytesRead() const final { return bytesRead_; }
    int BytesWritten() const final { return bytesWritten_; }
    bool IsStopped() const final { return stopped_; }
    DeviceProgress TrackProgress() final { return {statusBar_, user_, clock_, stopped_}; }

  protected:
    DrivenBus(Clock& clock, const StopRequest& stop, StatusBar& statusBar, User& user)
        : clock_(clock), stop_(stop), statusBar_(statusBar), user_(user) {}

    /// Shows the box with what failed and its cause, a line each, and ends the operation.
    void Report(const Message& message, std::string_view cause, std::string details = {});

    /// The same at the end of AbortOperation.
    void ReportAborted(std::string_view line, std::string details);

    /// Call it at each release.
    void ForgetCommand() {
        bytesWritten_ = 0;
        stopped_ = false;
    }

    Clock& clock_;
    const StopRequest& stop_;
    StatusBar& statusBar_;
    User& user_;
    EepromArray readData_{};
    int bytesRead_ = 0;     ///< of the last block
    int bytesWritten_ = 0;  ///< since the claim
    bool stopped_ = false;  ///< by the user, since the claim
};

}  // namespace tarnwell
