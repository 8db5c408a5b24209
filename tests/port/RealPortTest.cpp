// One contract for the ports of the operating system.
#include <fcntl.h>
#include <gtest/gtest.h>

#include <memory>

#include "FakeSystem.h"
#include "port/DevPort.h"
#include "port/LinuxSystemCalls.h"
#include "port/PpdevPort.h"

namespace tarnwell {
namespace {

constexpr std::uint16_t kBase = FakeSystem::kBase;
constexpr const char* kIoPorts = "0000-0cf7 : PCI Bus\n  0378-037a : parport0\n";

/// The parameter is the device file, which tells the port.
class RealPortTest : public testing::TestWithParam<const char*> {
  protected:
    RealPortTest() {
        if (device_ == "parport0")
            port_ = std::make_unique<PpdevPort>(system_);
        else
            port_ = std::make_unique<DevPort>(system_, PokedAddresses::Listed);
        List();
    }

    void List() const {
        if (device_ == "parport0")
            system_.List("parport0", kBase);
        system_.folder.Write("proc/ioports", kIoPorts);
    }

    /// The failure without the folder that stands for /dev.
    std::string Failure() const {
        std::string line = port_->Failure();
        if (line.starts_with(system_.DevFolder()))
            line.replace(0, system_.DevFolder().size(), "/dev");
        return line;
    }

    void ExpectNoAccess() {
        const int before = system_.accesses;
        port_->DlPortWritePortUchar(kBase, 0x11);
        EXPECT_EQ(port_->DlPortReadPortUchar(kBase), 0xFF);
        EXPECT_EQ(system_.accesses, before);
    }

    const std::string device_ = GetParam();
    FakeSystem system_;
    std::unique_ptr<Port> port_;
};

INSTANTIATE_TEST_SUITE_P(Devices, RealPortTest, testing::Values("parport0", "port"));

TEST_P(RealPortTest, ReachesTheTwoRegistersOfAClaimedPortOnly) {
    for (const bool signals : {false, true}) {
        system_.troubles[device_].signals = signals;
        ExpectNoAccess();
        port_->Claim(kBase);
        port_->DlPortWritePortUchar(kBase, 0x5A);
        port_->DlPortWritePortUchar(kBase + 1, 0x11);
        EXPECT_EQ(system_.data, 0x5A);
        EXPECT_EQ(port_->DlPortReadPortUchar(kBase), 0x5A);
        EXPECT_EQ(port_->DlPortReadPortUchar(kBase + 1), 0x78);
        EXPECT_EQ(port_->DlPortReadPortUchar(kBase + 2), 0xFF);
        EXPECT_EQ(port_->DlPortReadPortUchar(kBase - 1), 0xFF);
        EXPECT_EQ(std::exchange(system_.accesses, 0), 3);
        port_->Release();
        EXPECT_EQ(port_->Failure(), "");
        EXPECT_TRUE(system_.open.empty());
        ExpectNoAccess();
    }
    port_->Claim(kBase);
    port_.reset();
    EXPECT_TRUE(system_.open.empty());
}

struct Refusal {
    std::string device;
    Trouble trouble;
    const char* line;  ///< behind the device's path
};

constexpr const char* kInUse = " is in use by another program. Close it and try again.";

const Refusal kRefusals[] = {
    {"parport0", {.claimError = ENXIO}, kInUse},
    {"parport0", {.claimError = EBUSY}, kInUse},
    {"parport0", {.heldByAnother = true}, kInUse},
    {"port", {.heldByAnother = true}, kInUse},
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
};

TEST_P(RealPortTest, TellsWhatIsInTheWayAndAsksAnewAtTheNextClaim) {
    for (const Refusal& refusal : kRefusals) {
        if (refusal.device != device_)
            continue;
        SCOPED_TRACE(refusal.line);
        system_.troubles[device_] = refusal.trouble;
        const auto before = system_.Now();
        port_->Claim(kBase);
        EXPECT_LE(system_.Now() - before, std::chrono::seconds(1));
        EXPECT_EQ(Failure(), "/dev/" + device_ + refusal.line);
        EXPECT_TRUE(system_.open.empty());
        ExpectNoAccess();

        system_.troubles.clear();
        port_->Claim(kBase);
        EXPECT_EQ(port_->DlPortReadPortUchar(kBase + 1), 0x78);
        EXPECT_EQ(port_->Failure(), "");
    }
}

TEST_P(RealPortTest, APortPluggedInLaterIsFound) {
    std::filesystem::remove_all(system_.ProcFolder());
    port_->Claim(kBase);
    EXPECT_EQ(port_->Failure(),
              device_ == "port"
                  ? "There is no parallel port at LPT1 (378h). Plug it in or choose another port "
                    "in the menu Options, Parallel Port."
                  : "The kernel lists no parallel port. Plug one in, or load the driver with "
                    "\"sudo modprobe parport_pc\" or with the menu Options, DLPortIO Service.");
    List();
    port_->Claim(kBase);
    EXPECT_EQ(port_->DlPortReadPortUchar(kBase + 1), 0x78);
}

TEST_P(RealPortTest, UnpluggedInMidCommandStaysFailedUntilTheNextClaim) {
    port_->Claim(kBase);
    system_.troubles[device_].accessError = ENODEV;
    EXPECT_EQ(port_->DlPortReadPortUchar(kBase + 1), 0xFF);
    system_.troubles.clear();
    ExpectNoAccess();
    port_->Release();
    EXPECT_EQ(Failure(), "/dev/" + device_ +
                             ": No such device. Plug the port in again and repeat the command.");
    EXPECT_TRUE(system_.open.empty());

    port_->Claim(kBase);
    EXPECT_EQ(port_->Failure(), "");
    system_.troubles[device_].accessError = EINVAL;
    port_->DlPortWritePortUchar(kBase, 0x11);
    EXPECT_EQ(Failure(),
              "/dev/" + device_ + ": Invalid argument. Check the port and repeat the command.");
}

TEST_P(RealPortTest, OtherAddressesReachNoPort) {
    system_.List("parport1", 0xD010);
    system_.folder.Write("proc/ioports", "0000-ffff : parport1\n");
    for (const std::uint16_t address : std::initializer_list<std::uint16_t>{0, 0x377, 0xD010}) {
        port_->Claim(address);
        EXPECT_EQ(port_->DlPortReadPortUchar(address), 0xFF);
        EXPECT_TRUE(system_.open.empty());
    }
    EXPECT_EQ(Failure().substr(0, 41), "There is no parallel port at D010h. Plug ");
}

TEST(DevPort, WhereAskedForNeedsNoListingAndKeepsPpdevOut) {
    FakeSystem system;
    DevPort port(system, PokedAddresses::All);
    port.Claim(kBase);
    EXPECT_EQ(port.DlPortReadPortUchar(kBase + 1), 0x78);

    system.List("parport0", kBase);
    port.Claim(kBase);
    EXPECT_FALSE(system.claimed.empty());
    system.troubles["parport0"].heldByAnother = true;
    port.Claim(kBase);
    EXPECT_NE(port.Failure().find("parport0 is in use by another program"), std::string::npos);
    EXPECT_TRUE(system.open.empty());
}

TEST(PpdevPort, NamesTheProgramThatHasThePort) {
    FakeSystem system;
    system.List("parport0", kBase);
    system.troubles["parport0"].heldByAnother = true;
    system.folder.Write("proc/4711/comm", "scanner\n");
    system.folder.Write("proc/4711/fd/0", "");
    std::filesystem::create_symlink(system.DevFolder() + "/parport0",
                                    system.folder.Path("proc/4711/fd/5"));
    PpdevPort port(system);
    port.Claim(kBase);
    EXPECT_NE(port.Failure().find("by another program (scanner, process 4711). Close it"),
              std::string::npos);
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
