#include "command/Standing.h"

#include "core/user/Number.h"

namespace tarnwell {

Standing Standing::Of(std::uint8_t shown, bool marked, std::optional<std::uint8_t> held) {
    const Kind unmarked = !held ? Kind::Unknown : held == shown ? Kind::Held : Kind::Waiting;
    return {marked ? Kind::Waiting : unmarked, held};
}

std::string Standing::Text(NumberMode mode) const {
    switch (kind) {
        case Kind::Held:
            return "the EEProm holds it";
        case Kind::Waiting:
            return held ? "waits to be written: the EEProm holds " + NumberText(*held, mode)
                        : "waits to be written";
        case Kind::Unknown:
            return "not compared: the EEProm was not read";
        case Kind::NoValue:
            break;
    }
    return "not read";
}

}  // namespace tarnwell
