#include "port/PortChoice.h"

#include <gtest/gtest.h>

#include "FakeSystem.h"

namespace tarnwell {
namespace {

struct Machine {
    const char* what;
    int listedBase;        ///< 0: no port of the kernel's
    const char* ioPorts;   ///< of /proc
    int portError;         ///< of opening /dev/port
    int parportError;      ///< of opening /dev/parport0
    const char* expected;  ///< the device in use, "simulated" or "refused"
};

constexpr Machine kMachines[] = {
    {"nothing at all", 0, "", 0, 0, "simulated"},
    {"other hardware there", 0, "0378-037a : other\n", 0, 0, "simulated"},
    {"port listed", 0x378, "0378-037a : parport0\n", 0, 0, "parport0"},
    {"port listed, not permitted", 0x378, "0378-037a : parport0\n", 0, EACCES, "refused"},
    {"port listed, ppdev missing", 0x378, "0378-037a : parport0\n", 0, ENOENT, "refused"},
    {"port listed elsewhere", 0xD010, "d010-d012 : parport0\n", 0, 0, "refused"},
    {"port listed elsewhere, old one here", 0xD010, "0378-037a : parport1\n", 0, 0, "port"},
    {"only /proc/ioports", 0, "0378-037a : parport0\n", 0, 0, "port"},
    {"only /proc/ioports, elsewhere", 0, "d010-d012 : parport0\n", 0, 0, "simulated"},
    {"only /proc/ioports, other address", 0, "0278-027a : parport0\n", 0, 0, "refused"},
    {"only /proc/ioports, not permitted", 0, "0378-037a : parport0\n", EACCES, 0, "simulated"},
};

TEST(PortChoice, AutoTakesWhatTheKernelListsAndElseTheSimulation) {
    for (const Machine& machine : kMachines) {
        SCOPED_TRACE(machine.what);
        FakeSystem system;
        if (machine.listedBase != 0)
            system.List("parport0", machine.listedBase);
        system.folder.Write("proc/ioports", machine.ioPorts);
        system.troubles["port"].openError = machine.portError;
        system.troubles["parport0"].openError = machine.parportError;

        const auto chosen = ChoosePort(PortKind::Auto, Television::Connected, system, "");
        std::string inUse = "simulated";
        if (!chosen->IsSimulated()) {
            chosen->ThePort().Claim(0x378);
            inUse = chosen->ThePort().Failure().empty() ? system.lastOpened : "refused";
        }
        EXPECT_EQ(inUse, machine.expected);
    }
}

TEST(PortChoice, WhatIsAskedForIsNeverReplaced) {
    FakeSystem system;
    const auto isSimulated = [&](std::string_view word) {
        return ChoosePort(*ParsePortKind(word), Television::Absent, system, "")->IsSimulated();
    };
    EXPECT_FALSE(isSimulated("ppdev"));
    EXPECT_FALSE(isSimulated("devport"));
    EXPECT_TRUE(isSimulated("auto"));
    system.List("parport0", 0x378);
    EXPECT_TRUE(isSimulated("simulated"));
    EXPECT_EQ(ParsePortKind("Auto"), std::nullopt);
}

}  // namespace
}  // namespace tarnwell
