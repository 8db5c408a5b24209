#include "port/OpenedPort.h"

#include <utility>

namespace tarnwell {

std::variant<OpenedPort, PortRefusal> OpenPort(const PortRequest& request, SystemCalls& system,
                                               const std::string& dataFolder) {
    const auto kind = ParsePortKind(request.kind);
    if (!kind)
        return PortRefusal{"There is no port '" + request.kind + "'.", true};
    const bool real = *kind == PortKind::Ppdev || *kind == PortKind::DevPort;
    if (real && (request.noTelevision || request.realTime))
        return PortRefusal{"--no-television and --real-time need the simulated port.", true};

    const Simulation simulation{
        .television = request.noTelevision ? Television::Absent : Television::Connected,
        .pace = request.realTime ? Pace::Real : Pace::Virtual};
    OpenedPort opened{ChoosePort(*kind, simulation, system, dataFolder), nullptr};
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
