// Starting the port driver's loader, and the path of the driver that it is to load.
#pragma once

#include "core/run/Platform.h"
#include "core/run/Programs.h"
#include "core/user/StatusBar.h"

namespace tarnwell {

class DriverLoader {
  public:
    DriverLoader(Platform& platform, Programs& programs, StatusBar& statusBar, User& user);

    /// Starts the loader, or tells why not; the driver's path, which is to be shown all the same.
    std::string Run();

  private:
    void StartLoader();
    std::string FindDriver();

    Platform& platform_;
    Programs& programs_;
    StatusBar& statusBar_;
    User& user_;
};

}  // namespace tarnwell
