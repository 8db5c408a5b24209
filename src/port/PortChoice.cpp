// Which port the program drives: asked for by --port, or found.
#include "port/PortChoice.h"

#include <algorithm>
#include <array>
#include <utility>

#include "port/real/AutoPort.h"
#include "port/real/DevPort.h"
#include "port/real/PpdevPort.h"
#include "port/simulated/PersistentTelevision.h"
#include "port/system/ParallelPorts.h"
#include "port/system/SteadyClock.h"

namespace tarnwell {

namespace {

constexpr std::array<std::pair<std::string_view, PortKind>, 4> kPortKinds{{
    {"auto", PortKind::Auto},
    {"ppdev", PortKind::Ppdev},
    {"devport", PortKind::DevPort},
    {"simulated", PortKind::Simulated},
}};

template <typename PortType>
class RealChoice final : public ChosenPort {
  public:
    template <typename... Arguments>
    explicit RealChoice(Arguments&&... arguments) : port_(std::forward<Arguments>(arguments)...) {}

    Port& ThePort() override { return port_; }
    Clock& TheClock() override { return clock_; }
    bool IsSimulated() const override { return false; }

  private:
    PortType port_;
    SteadyClock clock_;
};

class SimulatedChoice final : public ChosenPort {
  public:
    SimulatedChoice(SystemCalls& system, const std::string& folder, const Simulation& simulation)
        : television_(system, folder, simulation) {}

    Port& ThePort() override { return television_; }
    Clock& TheClock() override { return television_; }
    bool IsSimulated() const override { return true; }

  private:
    PersistentTelevision television_;
};

PortKind FindPortKind(SystemCalls& system) {
    const auto servedByDevPort = [&](const PortChoice& port) {
        return DevPort::MayServe(system, port.address);
    };
    if (AnyParport(system.ProcFolder()) || std::ranges::any_of(kPortChoices, servedByDevPort))
        return PortKind::Auto;
    return PortKind::Simulated;
}

}  // namespace

std::optional<PortKind> ParsePortKind(std::string_view word) {
    const auto* const found =
        std::ranges::find(kPortKinds, word, &std::pair<std::string_view, PortKind>::first);
    return found == kPortKinds.end() ? std::nullopt : std::optional(found->second);
}

std::unique_ptr<ChosenPort> ChoosePort(PortKind kind, const Simulation& simulation,
                                       SystemCalls& system, const std::string& dataFolder) {
    if (kind == PortKind::Auto)
        kind = FindPortKind(system);
    switch (kind) {
        case PortKind::Auto:
            return std::make_unique<RealChoice<AutoPort>>(system);
        case PortKind::Ppdev:
            return std::make_unique<RealChoice<PpdevPort>>(system);
        case PortKind::DevPort:
            return std::make_unique<RealChoice<DevPort>>(system, PokedAddresses::All);
        case PortKind::Simulated:
            break;
    }
    return std::make_unique<SimulatedChoice>(system, dataFolder, simulation);
}

}  // namespace tarnwell
