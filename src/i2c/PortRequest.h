// What a command line asks of the port, and the answer that it is not to be had.
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

/// Why there is no such port: in one line, which a wrong argument follows with a hint.
struct PortRefusal {
    std::string reason;
    bool wrongArgument;
};

}  // namespace tarnwell
