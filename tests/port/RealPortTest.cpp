// One contract for the ports of the operating system.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/file.h>

#include <memory>

#include "FakeSystem.h"
#include "port/DevPort.h"
#include "port/LinuxSystemCalls.h"
#include "port/PpdevPort.h"

namespace tarnwell {
namespace {

constexpr std::uint16_t kBase = FakeSystem::kBase;

/// The parameter is the device file, which tells the port.
class RealPortTest : public testing::TestWithParam<const char*> {
  protected:
    RealPortTest() {
        if (device_ == "parport0")
            port_ = std::make_unique<PpdevPort>(system_);
        else
            port_ = std::make_unique<DevPort>(system_, PokedAddresses::Listed);
    }

    void ExpectUsable() {
        port_->Claim(kBase);
        EXPECT_EQ(port_->DlPortReadPortUchar(kBase + 1), 0x78);
        EXPECT_EQ(port_->Failure(), "");
    }

    /// `line` without the folder that stands for /dev.
    void ExpectUnusable(const std::string& line) {
        const int before = system_.accesses;
        port_->DlPortWritePortUchar(kBase, 0x11);
        EXPECT_EQ(port_->DlPortReadPortUchar(kBase), 0xFF);
        EXPECT_EQ(system_.accesses, before);
        EXPECT_THAT(port_->Failure(), testing::AnyOf(line, system_.DevFolder() + "/" + line));
    }

    void List() const {
        if (device_ == "parport0")
            system_.List("parport0", kBase);
        system_.folder.Write("proc/ioports", "0000-0cf7 : PCI Bus\n  0378-037a : parport0\n");
    }

    const std::string device_ = GetParam();
    FakeSystem system_;
    std::unique_ptr<Port> port_;
};

INSTANTIATE_TEST_SUITE_P(Devices, RealPortTest, testing::Values("parport0", "port"));

TEST_P(RealPortTest, ReachesTheTwoRegistersOfAClaimedPortOnly) {
    List();
    for (const bool signals : {false, true}) {
        system_.signals = signals;
        ExpectUnusable("");
        port_->Claim(kBase);
        system_.accesses = 0;
        port_->DlPortWritePortUchar(kBase, 0x5A);
        port_->DlPortWritePortUchar(kBase + 1, 0x11);
        EXPECT_EQ(port_->DlPortReadPortUchar(kBase), 0x5A);
        EXPECT_EQ(port_->DlPortReadPortUchar(kBase + 1), 0x78);
        EXPECT_EQ(port_->DlPortReadPortUchar(kBase + 2), 0xFF);
        EXPECT_EQ(port_->DlPortReadPortUchar(kBase - 1), 0xFF);
        EXPECT_EQ(system_.accesses, 3);
        port_->Release();
        EXPECT_TRUE(system_.open.empty());
    }
    ExpectUnusable("");
    ExpectUsable();
    port_.reset();
    EXPECT_TRUE(system_.open.empty());
}

const std::string kInUse =
    " is in use by another program (scanner, process 4711). Close it and try again.";

struct Obstacle {
    std::string devices;
    Trouble trouble;
    std::string line;  ///< behind the device's name
};

const Obstacle kObstacles[] = {
    {"parport0", {.claimError = ENXIO}, kInUse},
    {"parport0", {.claimError = EBUSY}, kInUse},
    {"parport0 port", {.heldByAnother = true}, kInUse},
    {"parport0", {.claimError = ENODEV}, ": No such device. Check the port and try again."},
    {"parport0",
     {.openError = EACCES},
     ": Permission denied. Add your account to the group lp and log in again."},
    {"parport0",
     {.openError = ENOENT},
     " is missing. Load the kernel module ppdev with \"sudo modprobe ppdev\" or with the menu "
     "Options, DLPortIO Service."},
    {"port",
     {.openError = EPERM},
     ": Operation not permitted. Load the kernel module ppdev with \"sudo modprobe ppdev\" and "
     "start without --port=devport, or run the program as root."},
    {"parport0 port",
     {.readError = ENODEV},
     ": No such device. Plug the port in again and repeat the command."},
    {"parport0 port",
     {.writeError = EINVAL},
     ": Invalid argument. Check the port and repeat the command."},
};

TEST_P(RealPortTest, TellsWhatIsInTheWayAndStaysFailedUntilTheNextClaim) {
    List();
    system_.folder.Write("proc/4711/comm", "scanner\n");
    std::filesystem::create_directory(system_.folder.Path("proc/4711/fd"));
    std::filesystem::create_symlink(system_.DevFolder() + "/" + device_,
                                    system_.folder.Path("proc/4711/fd/5"));
    for (const auto& [devices, trouble, line] : kObstacles) {
        if ((" " + devices).find(" " + device_) == std::string::npos)
            continue;
        system_.troubles[device_] = trouble;
        const auto before = system_.Now();
        port_->Claim(kBase);
        EXPECT_LE(system_.Now() - before, std::chrono::seconds(1));
        port_->DlPortWritePortUchar(kBase, 0x11);
        EXPECT_EQ(port_->DlPortReadPortUchar(kBase), 0xFF);
        system_.troubles.clear();
        ExpectUnusable(device_ + line);
        port_->Release();
        EXPECT_TRUE(system_.open.empty());
        ExpectUsable();
    }
}

TEST_P(RealPortTest, ServesTheListedPortsAtTheThreeAddressesOnly) {
    port_->Claim(kBase);
    ExpectUnusable(
        device_ == "port"
            ? "There is no parallel port at LPT1 (378h). Plug it in or choose another port in the "
              "menu Options, Parallel Port."
            : "The kernel lists no parallel port. Plug one in, or load the driver with \"sudo "
              "modprobe parport_pc\" or with the menu Options, DLPortIO Service.");
    List();
    ExpectUsable();
    system_.List("parport1", 0xD010);
    system_.folder.Write("proc/ioports", "0000-ffff : parport1\n");
    for (const int address : {0, 0x377, 0xD010}) {
        port_->Claim(static_cast<std::uint16_t>(address));
        EXPECT_TRUE(system_.open.empty());
    }
    EXPECT_THAT(port_->Failure(), testing::StartsWith("There is no parallel port at D010h. Plug "));
}

TEST(LinuxSystemCalls, InterruptsACallThatBlocks) {
    const TemporaryFolder folder;
    LinuxSystemCalls system;
    const OpenFile holder(system, system.Open(folder.Path("lock"), O_RDWR | O_CREAT));
    const OpenFile waiter(system, system.Open(folder.Path("lock"), O_RDWR));
    ASSERT_EQ(system.Lock(holder.Descriptor(), LOCK_EX), 0);
    ASSERT_EQ(system.ArmInterrupt(system.Now() + std::chrono::milliseconds(20)), 0);
    EXPECT_EQ(system.Lock(waiter.Descriptor(), LOCK_EX), -EINTR);
}

}  // namespace
}  // namespace tarnwell
