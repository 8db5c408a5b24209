// The command line on a simulated television with the fault that TARNWELL_FAULT names: its kind,
// the event at which it begins, and how many of these come before.
#include <cstdlib>
#include <map>
#include <sstream>

#include "cli/CommandLine.h"
#include "port/simulated/SimulatedTelevision.h"

namespace {

using namespace tarnwell;

const std::map<std::string, FaultKind> kKinds{
    {"SclStuckLow", FaultKind::SclStuckLow},       {"SdaStuckLow", FaultKind::SdaStuckLow},
    {"LinesJoined", FaultKind::LinesJoined},       {"AdapterGone", FaultKind::AdapterGone},
    {"PortFails", FaultKind::PortFails},           {"DeviceSilent", FaultKind::DeviceSilent},
    {"LostWrite", FaultKind::LostWrite},           {"WrongWrite", FaultKind::WrongWrite},
    {"InputsInverted", FaultKind::InputsInverted},
};
const std::map<std::string, WireEvent> kEvents{{"Access", WireEvent::Access},
                                               {"WriteCycle", WireEvent::WriteCycle}};

class FaultyPort final : public cli::PortSource {
  public:
    std::variant<cli::JoinedPort, PortRefusal> Open(const PortRequest& /*request*/,
                                                    const StopRequest& stop) override {
        std::string kind, event;
        Fault fault;
        std::istringstream(getenv("TARNWELL_FAULT")) >> kind >> event >> fault.begins.count;
        fault.kind = kKinds.at(kind);
        fault.begins.event = kEvents.at(event);
        television_.Inject(fault);
        return cli::JoinedPort{{television_, television_, NoBusTrace(), stop}, true};
    }

  private:
    SimulatedTelevision television_;
};

}  // namespace

int main(int argc, char** argv) {
    FaultyPort port;
    return cli::RunCommandLine(argc, argv, port);
}
