#include "command/Steps.h"

namespace tarnwell {

std::string StepName::Text(NumberMode mode) const {
    std::string text = what;
    if (address)
        text.append(" ").append(NumberText(static_cast<std::uint32_t>(*address), mode));
    if (from && to)
        text.append(" ").append(NumberText(*from, mode));
    if (to)
        text.append(" to ").append(NumberText(*to, mode));
    return text;
}

}  // namespace tarnwell
