// What a command line asks of the port, and the answer that it is not to be had.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "core/ChosenBus.h"

namespace tarnwell {

struct PortRequest {
    std::optional<std::string> kind;  ///< as given; "auto" where none is
    bool noTelevision = false;
    bool realTime = false;
    std::optional<std::string> traceFile;
    bool address = false;  ///< whether one is given
    bool pins = false;     ///< likewise
    ChosenBus chosen{};    ///< by the options; used where no kind is given

    /// The first option given that means nothing to an I2C bus of the kernel; empty for none.
    std::string_view NeedsParallelPort() const {
        return address        ? "--address"
               : pins         ? "--pins"
               : noTelevision ? "--no-television"
               : realTime     ? "--real-time"
               : traceFile    ? "--trace"
                              : "";
    }
};

/// Why there is no such port: in one line, which a wrong argument follows with a hint.
struct PortRefusal {
    std::string reason;
    bool wrongArgument;
    bool noSuchBus = false;  ///< none of the kernel's I2C buses is meant, or several are
};

/// The I2C bus of the kernel that is asked for, by its node or its name; nothing where a parallel
/// port is.
inline std::optional<std::string_view> RequestedI2cBus(std::string_view kind) {
    constexpr std::string_view kPrefix = "i2c:";
    return kind.starts_with(kPrefix) ? std::optional(kind.substr(kPrefix.size())) : std::nullopt;
}

}  // namespace tarnwell
