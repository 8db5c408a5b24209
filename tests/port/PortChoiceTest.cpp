#include "port/PortChoice.h"

#include <gtest/gtest.h>

#include "support/FakeSystem.h"

namespace tarnwell {
namespace {

constexpr const char* kIoPorts = "0378-037a : parport0\n";

struct Machine {
    const char* asked;
    int listedBase;       ///< 0: no port of the kernel's
    const char* ioPorts;  ///< of /proc
    const char* call;     ///< fails with `error`
    int error;
    const char* expected;  ///< the device in use, "simulated" or "refused"
};

constexpr Machine kMachines[] = {
    {"auto", 0, "", "", 0, "simulated"},
    {"auto", 0, "0378-037a : other\n", "", 0, "simulated"},
    {"auto", 0x378, kIoPorts, "", 0, "parport0"},
    {"auto", 0x378, kIoPorts, "parport0 open", EACCES, "refused"},
    {"auto", 0x378, kIoPorts, "parport0 open", ENOENT, "refused"},
    {"auto", 0xD010, "d010-d012 : parport0\n", "", 0, "refused"},
    {"auto", 0xD010, "0378-037a : parport1\n", "", 0, "port"},
    {"auto", 0, kIoPorts, "", 0, "port"},
    {"auto", 0, kIoPorts, "port open", EACCES, "simulated"},
    {"auto", 0, "d010-d012 : parport0\n", "", 0, "simulated"},
    {"auto", 0, "0278-027a : parport0\n", "", 0, "refused"},
    {"ppdev", 0, "", "", 0, "refused"},
    {"devport", 0, "", "", 0, "port"},
    {"devport", 0x378, kIoPorts, "parport0 claim", EINTR, "refused"},
    {"simulated", 0x378, kIoPorts, "", 0, "simulated"},
};

TEST(PortChoice, AutoTakesWhatTheKernelListsAndWhatIsAskedForIsNeverReplaced) {
    for (const Machine& machine : kMachines) {
        SCOPED_TRACE(std::string(machine.asked) + machine.ioPorts);
        FakeSystem system;
        if (machine.listedBase != 0)
            system.List("parport0", machine.listedBase);
        system.folder.Write("proc/ioports", machine.ioPorts);
        system.errors[machine.call] = machine.error;
        const auto chosen = ChoosePort(*ParsePortKind(machine.asked), Simulation{}, system, "");
        std::string inUse = "simulated";
        if (!chosen->IsSimulated()) {
            chosen->ThePort().Claim(0x378);
            inUse = system.open.empty() ? "refused" : system.open.begin()->second;
            EXPECT_EQ(chosen->ThePort().Failure().empty(), inUse != "refused");
        }
        EXPECT_EQ(inUse, machine.expected);
    }
    EXPECT_EQ(ParsePortKind("Auto"), std::nullopt);
}

}  // namespace
}  // namespace tarnwell
