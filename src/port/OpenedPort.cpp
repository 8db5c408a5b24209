#include "port/OpenedPort.h"

#include <utility>

namespace tarnwell {

namespace {

std::variant<I2cBus, PortRefusal> FindRequested(LinuxI2c& kernel, std::string_view wanted) {
    std::vector<I2cBus> found = kernel.Buses();
    std::erase_if(found,
                  [&](const I2cBus& bus) { return bus.node != wanted && bus.name != wanted; });
    if (found.size() == 1)
        return found.front();
    return PortRefusal{NoI2cBusLine(found, {std::string(wanted), {}}), false, true};
}

}  // namespace

std::variant<OpenedPort, PortRefusal> OpenPort(const PortRequest& request, SystemCalls& system,
                                               const std::string& dataFolder) {
    const std::string named = request.kind.value_or("auto");
    const auto wanted = RequestedI2cBus(named);
    const bool chosen = !request.kind && request.chosen.kernel;
    if (const std::string option(request.NeedsParallelPort());
        !option.empty() && (wanted || chosen))
        return PortRefusal{
            option + " needs a parallel port" +
                (chosen ? ": without --port the I2C bus " + request.chosen.kernel->name +
                              " is used, which was chosen in the program's window"
                        : "") +
                ".",
            true};
    if (wanted && wanted->empty())
        return PortRefusal{"--port=i2c: needs the node or the name of a bus.", true};
    auto kernel = std::make_unique<LinuxI2c>(system);
    std::optional<ChosenBus> bus;
    if (request.kind)
        bus.emplace();
    if (wanted) {
        auto found = FindRequested(*kernel, *wanted);
        if (auto* const refusal = std::get_if<PortRefusal>(&found))
            return std::move(*refusal);
        bus->kernel = std::get<I2cBus>(std::move(found));
    }
    const auto kind = ParsePortKind(wanted ? "auto" : named);
    if (!kind)
        return PortRefusal{"There is no port '" + named + "'.", true};
    const bool real = *kind == PortKind::Ppdev || *kind == PortKind::DevPort;
    if (real && (request.noTelevision || request.realTime))
        return PortRefusal{"--no-television and --real-time need the simulated port.", true};

    const Simulation simulation{
        .television = request.noTelevision ? Television::Absent : Television::Connected,
        .pace = request.realTime ? Pace::Real : Pace::Virtual};
    OpenedPort opened{ChoosePort(*kind, simulation, system, dataFolder), nullptr, std::move(kernel),
                      std::move(bus)};
    if (!request.traceFile)
        return opened;
    auto made =
        VcdTrace::Create(*request.traceFile, opened.port->ThePort(), opened.port->TheClock());
    if (auto* const reason = std::get_if<std::string>(&made))
        return PortRefusal{std::move(*reason), false};
    opened.trace = std::get<std::unique_ptr<VcdTrace>>(std::move(made));
    return opened;
}

}  // namespace tarnwell
