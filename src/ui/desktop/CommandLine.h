// The program's arguments.
#pragma once

#include <optional>
#include <string>

#include "i2c/PortRequest.h"

namespace tarnwell {

struct CommandLine {
    PortRequest port;
    std::optional<std::string> archiveFile;  ///< the full path of a file that can be read
};

/// Reads the arguments, Qt's own set aside; no window system is needed. For --help and --version,
/// and where an argument is wrong, the process ends here.
CommandLine readCommandLine(int argc, char** argv);

/// Ends the process with exit status 2 and one line on standard error.
[[noreturn]] void refuse(const std::string& reason);

/// The same for a wrong argument: the line points to --help.
[[noreturn]] void refuseArgument(const std::string& reason);

}  // namespace tarnwell
