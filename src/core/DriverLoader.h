// Starting the port driver's loader, and the path of the driver that it is to load.
#pragma once

#include "core/Platform.h"
#include "core/Programs.h"
#include "core/StatusBar.h"

namespace tarnwell {

/// The window that shows the driver's path.
class DriverPathWindow {
  public:
    virtual ~DriverPathWindow() = default;

    /// Returns when the user has closed formCnP.
    virtual void ShowFormCnP(const std::string& driverPath) = 0;
};

class DriverLoader {
  public:
    DriverLoader(Platform& platform, Programs& programs, StatusBar& statusBar, User& user,
                 DriverPathWindow& window);

    /// Starts the loader, or tells why not, and shows the driver's path all the same.
    void Run();

  private:
    void StartLoader();
    std::string FindDriver();

    Platform& platform_;
    Programs& programs_;
    StatusBar& statusBar_;
    User& user_;
    DriverPathWindow& window_;
};

}  // namespace tarnwell
