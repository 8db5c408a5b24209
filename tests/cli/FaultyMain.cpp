// The command line on a simulated television with the fault that TARNWELL_FAULT names: its kind,
// the event at which it begins, and how many of these come before. Or, where that begins with I2c,
// on a system with a bus at /dev/i2c-7 whose device holds what is in eeprom.bin.
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <map>
#include <sstream>

#include "cli/CommandLine.h"
#include "core/files/UserFolders.h"
#include "port/OpenedPort.h"
#include "port/simulated/SimulatedTelevision.h"
#include "support/FakeI2c.h"

namespace {

using namespace tarnwell;

const std::map<std::string, FaultKind> kKinds{
    {"SclStuckLow", FaultKind::SclStuckLow},       {"SdaStuckLow", FaultKind::SdaStuckLow},
    {"LinesJoined", FaultKind::LinesJoined},       {"AdapterGone", FaultKind::AdapterGone},
    {"PortFails", FaultKind::PortFails},           {"DeviceSilent", FaultKind::DeviceSilent},
    {"LostWrite", FaultKind::LostWrite},           {"WrongWrite", FaultKind::WrongWrite},
    {"InputsInverted", FaultKind::InputsInverted}, {"FlippedBit", FaultKind::FlippedBit},
};
const std::map<std::string, WireEvent> kEvents{{"Access", WireEvent::Access},
                                               {"WriteCycle", WireEvent::WriteCycle},
                                               {"Read", WireEvent::Read}};

/// What is odd about the bus, and how often.
class KernelSystem final : public FakeI2c {
  public:
    KernelSystem() {
        devices.erase(0x51);
        Device().writeCycle = std::chrono::milliseconds(1);
        std::ifstream("eeprom.bin").read(reinterpret_cast<char*>(Device().memory.data()), 8192);
    }
    void Be(const std::string& odd, std::uint64_t count) {
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
    int Ioctl(int file, unsigned long request, void* argument) override {
        const std::uint64_t stores = Device().stores;
        const int result = FakeI2c::Ioctl(file, request, argument);
        if (Device().stores != stores)
            std::ofstream("eeprom.bin", std::ios::in)
                .write(reinterpret_cast<char*>(Device().memory.data()), 8192);
        return result;
    }

  private:
    FakeEeprom& Device() { return devices.at(0x50); }
    std::uint64_t locked_ = 0;
};

class FaultyPort final : public cli::PortSource {
  public:
    std::variant<cli::JoinedPort, PortRefusal> Open(const PortRequest& request,
                                                    const StopRequest& stop) override {
        std::string kind, event;
        Fault fault;
        std::istringstream(getenv("TARNWELL_FAULT")) >> kind >> event >> fault.begins.count;
        if (kind == "I2c") {
            kernel_.Be(event, fault.begins.count);
            auto opened = OpenPort(request, kernel_, DataFolder());
            if (auto* const refusal = std::get_if<PortRefusal>(&opened))
                return std::move(*refusal);
            port_ = std::get<OpenedPort>(std::move(opened));
            return cli::JoinedPort{port_.TheWire(stop), false, port_.i2cBus};
        }
        fault.kind = kKinds.at(kind);
        fault.begins.event = kEvents.at(event);
        television_.Inject(fault);
        return cli::JoinedPort{{television_, television_, NoBusTrace(), stop}, true};
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
