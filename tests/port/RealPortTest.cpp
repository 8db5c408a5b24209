// One contract for the ports of the operating system, and which of them is chosen.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <unistd.h>

#include "port/PortChoice.h"
#include "port/real/DevPort.h"
#include "port/real/PpdevPort.h"
#include "port/system/LinuxSystemCalls.h"
#include "support/FakeSystem.h"

namespace tarnwell {
namespace {

/// The parameter is the device file, which tells the port.
class RealPortTest : public testing::TestWithParam<const char*> {
  protected:
    void ExpectUsable() {
        port_.Claim(kBase);
        EXPECT_EQ(port_.DlPortReadPortUchar(kBase + 1), 0x78);
        EXPECT_EQ(port_.Failure(), "");
    }

    void ExpectUnusable(const std::string& line) {
        port_.DlPortWritePortUchar(kBase, 0x11);
        EXPECT_NE(system_.data, 0x11);
        EXPECT_EQ(port_.DlPortReadPortUchar(kBase), 0xFF);
        port_.Release();
        EXPECT_THAT(port_.Failure(), testing::HasSubstr(line));
        EXPECT_TRUE(system_.open.empty());
    }

    void List() const {
        if (device_ == "parport0")
            system_.List("parport0", kBase);
        system_.folder.Write("proc/ioports", "0000-0cf7 : PCI Bus\n  0378-037a : parport0\n");
    }

    const std::string device_ = GetParam();
    FakeSystem system_;
    PpdevPort ppdev_{system_};
    DevPort devPort_{system_, PokedAddresses::Listed};
    Port& port_ = device_ == "port" ? static_cast<Port&>(devPort_) : ppdev_;
};

INSTANTIATE_TEST_SUITE_P(Devices, RealPortTest, testing::Values("parport0", "port"));

TEST_P(RealPortTest, ReachesTheTwoRegistersOfAClaimedPortOnly) {
    List();
    for (const bool signals : {false, true}) {
        system_.signals = signals;
        ExpectUsable();
        port_.DlPortWritePortUchar(kBase, 0x5A);
        port_.DlPortWritePortUchar(kBase + 1, 0x11);
        EXPECT_EQ(port_.DlPortReadPortUchar(kBase), 0x5A);
        EXPECT_EQ(port_.DlPortReadPortUchar(kBase + 2), 0xFF);
        EXPECT_EQ(port_.DlPortReadPortUchar(kBase - 1), 0xFF);
        port_.Release();
        EXPECT_EQ(port_.Failure(), "");
        ExpectUnusable("");
    }
    for (const char* failing : {" close", device_ == "port" ? " close" : " release"}) {
        system_.errors = {{device_ + failing, EIO}};
        port_.Claim(kBase);
        port_.Release();
        EXPECT_THAT(port_.Failure(), testing::HasSubstr(device_ + ": Input/output error"));
    }
}

constexpr const char* kInUse =
    " is in use by another program (pemvora, process 77). Close it and try again.";

/// Calls that fail, and the line that tells it, behind the device.
const std::tuple<std::string, int, const char*> kObstacles[] = {
    {"parport0 claim", ENXIO, kInUse},
    {"parport0 claim", EBUSY, kInUse},
    {"parport0 claim", EINTR, kInUse},
    {"port lock", EWOULDBLOCK, kInUse},
    {"parport0 claim", ENODEV, ": No such device. Check the port and try again."},
    {"parport0 open", EACCES, ": Permission denied. Add your account to the group lp"},
    {"parport0 open", ENOENT, " is missing. Load the kernel module ppdev with \"sudo"},
    {"port open", EPERM, ": Operation not permitted. Load the kernel module ppdev"},
    {"parport0 read", ENODEV, ": No such device. Plug the port in again and repeat the command."},
    {"port read", ENODEV, ": No such device. Plug the port in again and repeat the command."},
    {"parport0 write", EINVAL, ": Invalid argument. Check the port and repeat the command."},
    {"port write", EINVAL, ": Invalid argument. Check the port and repeat the command."},
};

TEST_P(RealPortTest, TellsWhatIsInTheWayAndStaysFailedUntilTheNextClaim) {
    List();
    system_.folder.Write("proc/77/comm", "pemvora\n");
    system_.folder.Write("proc/77/fd/4", "");
    std::filesystem::create_symlink(system_.folder.Path("dev/" + device_),
                                    system_.folder.Path("proc/77/fd/3"));
    for (const auto& [call, error, line] : kObstacles) {
        if (!call.starts_with(device_ + " "))
            continue;
        system_.errors[call] = error;
        const auto before = system_.Now();
        port_.Claim(kBase);
        EXPECT_LE(system_.Now() - before, std::chrono::seconds(1));
        port_.DlPortWritePortUchar(kBase, 0x5A);
        EXPECT_EQ(port_.DlPortReadPortUchar(kBase), 0xFF);
        system_.errors = {{device_ + " release", EIO}};
        ExpectUnusable("/dev/" + device_ + line);
        system_.errors.clear();
        ExpectUsable();
    }
}

TEST_P(RealPortTest, ServesTheListedPortsAtTheThreeAddressesOnly) {
    port_.Claim(kBase);
    ExpectUnusable(device_ == "port" ? "There is no parallel port at LPT1 (378h). Plug it in"
                                     : "The kernel lists no parallel port. Plug one in, or load");
    List();
    ExpectUsable();
    system_.List("parport1", 0xD010);
    system_.folder.Write("proc/ioports", "0000-ffff : parport1\n");
    for (const int address : {0, 0x377, 0xD010}) {
        port_.Claim(static_cast<std::uint16_t>(address));
        ExpectUnusable("There is no parallel port at ");
    }
}

TEST(LinuxSystemCalls, ReachAByteAndInterruptACallThatBlocks) {
    const TemporaryFolder folder;
    folder.Write("lock", std::string(3, 'x'));
    LinuxSystemCalls system;
    const OpenFile holder(system, system.Open(folder.Path("lock"), O_RDWR | O_CREAT));
    const OpenFile waiter(system, system.Open(folder.Path("lock"), O_RDWR));
    ASSERT_EQ(system.Lock(holder.Descriptor(), LOCK_EX), 0);
    ASSERT_EQ(system.ArmInterrupt(system.Now() + std::chrono::milliseconds(20)), 0);
    EXPECT_EQ(system.Lock(waiter.Descriptor(), LOCK_EX), -EINTR);
    system.DisarmInterrupt();
    EXPECT_EQ(usleep(30'000), 0) << "that alone";
    std::uint8_t byte = 0;
    EXPECT_EQ(system.WriteByte(waiter.Descriptor(), 'y', 1), 0);
    EXPECT_EQ(system.ReadByte(holder.Descriptor(), byte, 1), 0);
    EXPECT_EQ(folder.Read("lock") + static_cast<char>(byte), "xyxy");
}

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
