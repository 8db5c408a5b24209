// Words that many texts share: counted things, and what the two EEPROMs are called.
#pragma once

#include <concepts>
#include <string>
#include <string_view>

#include "core/ProgramState.h"

namespace tarnwell {

/// "1 byte", "2 bytes"; with a verb "1 byte differs", "2 bytes differ".
std::string Counted(std::integral auto count, std::string_view noun,
                    std::string_view verbOfOne = {}, std::string_view verbOfMany = {}) {
    std::string text = std::to_string(count);
    text.append(" ").append(noun).append(count == 1 ? "" : "s");
    const std::string_view verb = count == 1 ? verbOfOne : verbOfMany;
    return verb.empty() ? text : text.append(" ").append(verb);
}

/// "Primary EEProm".
inline std::string EepromName(TargetDevice device) {
    return device == TargetDevice::Primary ? "Primary EEProm" : "Secondary EEProm";
}

/// "Primary".
inline std::string DeviceName(TargetDevice device) {
    const std::string name = EepromName(device);
    return name.substr(0, name.find(' '));
}

/// "primary": what the command line and its reports say.
constexpr std::string_view DeviceWord(TargetDevice device) {
    return device == TargetDevice::Primary ? "primary" : "secondary";
}

/// The bus that is worked on: "LPT1", "i2c-7", the name of an adapter whose node is not known, or
/// "the simulated television".
inline std::string BusName(const ProgramState& state) {
    if (const auto& kernel = state.BusInUse().kernel)
        return kernel->node.empty() ? kernel->name : std::string(kernel->ShortNode());
    if (state.simulated)
        return "the simulated television";
    return state.portAddress == 0x278 ? "LPT2" : state.portAddress == 0x3BC ? "LPT3" : "LPT1";
}

}  // namespace tarnwell
