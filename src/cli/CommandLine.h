// The program without a window, from its arguments to its exit status.
#pragma once

#include <variant>

#include "cli/tools/Device.h"

namespace tarnwell::cli {

/// Where the port comes from; it is opened at most once and kept open.
class PortSource {
  public:
    virtual ~PortSource() = default;
    virtual std::variant<JoinedPort, PortRefusal> Open(const PortRequest& request,
                                                       const StopRequest& stop) = 0;
};

/// The exit status.
int RunCommandLine(int argc, const char* const* argv, PortSource& ports);

}  // namespace tarnwell::cli
