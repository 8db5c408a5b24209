// Joins the command line with the port that it drives.
#include "cli/CommandLine.h"
#include "core/files/UserFolders.h"
#include "port/OpenedPort.h"
#include "port/system/LinuxSystemCalls.h"

namespace {

using namespace tarnwell;

class SystemPorts final : public cli::PortSource {
  public:
    std::variant<cli::JoinedPort, PortRefusal> Open(const PortRequest& request,
                                                    const StopRequest& stop) override {
        auto opened = OpenPort(request, system_, DataFolder());
        if (auto* const refusal = std::get_if<PortRefusal>(&opened))
            return std::move(*refusal);
        port_ = std::get<OpenedPort>(std::move(opened));
        return cli::JoinedPort{port_.TheWire(stop), port_.port->IsSimulated(), port_.bus};
    }

  private:
    LinuxSystemCalls system_;
    OpenedPort port_;
};

}  // namespace

int main(int argc, char** argv) {
    SystemPorts ports;
    return cli::RunCommandLine(argc, argv, ports);
}
