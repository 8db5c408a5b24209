#include "cli/commands/Commands.h"

namespace tarnwell::cli {

/// The last check is that of the device asked for: what it says is the cause.
void Check(const Arguments& arguments, Device& device, Report& report) {
    Program& program = device.TheProgram();
    device.Claim();
    const auto answers = [&](TargetDevice target, Quiet quiet) {
        program.state.targetDevice = target;
        return device.TheBus().CheckAnswer(quiet) == BusCheck::Ok;
    };
    const bool primaryAsked = arguments.device == TargetDevice::Primary;
    const bool other =
        answers(primaryAsked ? TargetDevice::Secondary : TargetDevice::Primary, Quiet::Yes);
    const bool asked = answers(arguments.device, Quiet::No);
    report.devices = {primaryAsked ? asked : other, primaryAsked ? other : asked};
    if (asked)
        report.End(Status::Done, "The bus is in order.");
    else
        report.End(Status::Bus, device.LastLine());
}

}  // namespace tarnwell::cli
