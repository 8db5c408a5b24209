// The command line on a simulated television with the fault in TARNWELL_FAULT: its kind, the event
// at which it begins, both as numbers, and how many of these come before. Or, where that begins
// with I2c, on a system with a bus at /dev/i2c-7 whose device holds what is in eeprom.bin.
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <sstream>

#include "cli/CommandLine.h"
#include "core/files/UserFolders.h"
#include "port/OpenedPort.h"
#include "port/simulated/SimulatedTelevision.h"
#include "support/FakeI2c.h"

namespace {

using namespace tarnwell;

/// What is odd about the bus, and how often.
class KernelSystem final : public FakeI2c {
  public:
    ~KernelSystem() override {
        if (Device().stores != 0)
            std::ofstream("eeprom.bin")
                .write(reinterpret_cast<char*>(Device().memory.data()), 8192);
    }
    void Be(const std::string& odd, std::uint64_t count) {
        devices.erase(0x51);
        Device().writeCycle = std::chrono::milliseconds(1);
        std::ifstream("eeprom.bin").read(reinterpret_cast<char*>(Device().memory.data()), 8192);
        if (odd == "twice")
            Name(9, "Test adapter");
        combines = odd != "blind";
        locked_ = odd == "locked" ? count : 0;
        fault = [=, this] {
            const bool due = transfers == count;
            if (due && odd == "signal")
                std::raise(SIGTERM);
            return due && odd == "unplugged" ? ENODEV : 0;
        };
    }
    int Lock(int, int) override { return locked_ > 0 && locked_-- > 0 ? -EWOULDBLOCK : 0; }

  private:
    FakeEeprom& Device() { return devices.at(0x50); }
    std::uint64_t locked_ = 0;
};

class FaultyPort final : public cli::PortSource {
  public:
    std::variant<cli::JoinedPort, PortRefusal> Open(const PortRequest& request,
                                                    const StopRequest& stop) override {
        std::string kind, event;
        std::uint64_t count = 0;
        std::istringstream(getenv("TARNWELL_FAULT")) >> kind >> event >> count;
        if (kind != "I2c") {
            television_.Inject({FaultKind(std::stoi(kind)), {WireEvent(std::stoi(event)), count}});
            return cli::JoinedPort{{television_, television_, NoBusTrace(), stop}, true};
        }
        kernel_.Be(event, count);
        auto opened = OpenPort(request, kernel_, DataFolder());
        if (auto* const refusal = std::get_if<PortRefusal>(&opened))
            return std::move(*refusal);
        port_ = std::get<OpenedPort>(std::move(opened));
        return cli::JoinedPort{port_.TheWire(stop), false, port_.bus};
    }

  private:
    SimulatedTelevision television_;
    KernelSystem kernel_;
    OpenedPort port_;
};

}  // namespace

int main(int argc, char** argv) {
    FaultyPort port;
    return cli::RunCommandLine(argc, argv, port);
}
