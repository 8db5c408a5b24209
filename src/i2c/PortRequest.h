// What the command line asks of the port.
#pragma once

#include <optional>
#include <string>

namespace tarnwell {

struct PortRequest {
    std::string kind = "auto";  ///< as given
    bool noTelevision = false;
    bool realTime = false;
    std::optional<std::string> traceFile;
};

}  // namespace tarnwell
