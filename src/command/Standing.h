// How a value that is shown stands to what the device is known to hold.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "core/ProgramState.h"

namespace tarnwell {

struct Standing {
    enum class Kind : std::uint8_t {
        Held,     ///< the device holds it
        Waiting,  ///< the device holds another one, or it is marked to be written
        Unknown,  ///< it is not known what the device holds
        NoValue,  ///< what is shown was neither read nor loaded nor entered
    };
    Kind kind = Kind::NoValue;
    std::optional<std::uint8_t> held{};  ///< by the device, where that is known

    static Standing Of(std::uint8_t shown, bool marked, std::optional<std::uint8_t> held);

    /// "waits to be written: the EEProm holds 4", with numbers in `mode`.
    std::string Text(NumberMode mode) const;
};

}  // namespace tarnwell
