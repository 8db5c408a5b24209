// One contract for the ports of the operating system, and which of them is chosen.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <linux/ppdev.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <map>
#include <set>

#include "port/PortChoice.h"
#include "port/real/DevPort.h"
#include "port/real/PpdevPort.h"
#include "port/system/LinuxSystemCalls.h"
#include "support/FakeI2c.h"

namespace tarnwell {
namespace {

constexpr std::uint16_t kLpt1 = 0x378;

class FakeSystem final : public FakeI2c {
  public:
    std::map<std::string, int> errors;  ///< errno values of "port open" and so on; EINTR blocks
    bool signals = false;               ///< the first call of each kind is interrupted
    std::uint8_t data = 0;
    std::uint8_t status = 0x78;
    std::map<int, std::string> open;

    void List(const std::string& port, int base) const {
        folder.Write("proc/sys/dev/parport/" + port + "/base-addr", std::to_string(base) + "\t0\n");
    }

    int Open(const std::string& path, int) override {
        const std::string device = std::filesystem::path(path).filename();
        if (const int result = Outcome(device + " open"); result < 0)
            return result;
        open[++lastDescriptor_] = device;
        return lastDescriptor_;
    }

    int Close(int descriptor) override {
        const auto closed = open.extract(descriptor);
        return closed ? -errors[closed.mapped() + " close"] : -EBADF;
    }

    int Ioctl(int descriptor, unsigned long request, void* argument) override {
        const std::string& device = open.at(descriptor);
        if (request == PPCLAIM || request == PPRELEASE)
            return Outcome(device + (request == PPCLAIM ? " claim" : " release"));
        EXPECT_TRUE(request == PPRDATA || request == PPWDATA || request == PPRSTATUS);
        auto& value = *static_cast<std::uint8_t*>(argument);
        if (request == PPWDATA)
            return Transfer(device + " write", value, data);
        return Transfer(device + " read", request == PPRDATA ? data : status, value);
    }

    int ReadByte(int descriptor, std::uint8_t& value, std::int64_t offset) override {
        EXPECT_TRUE(offset == kLpt1 || offset == kLpt1 + 1) << "poked " << offset;
        return Transfer(open.at(descriptor) + " read", offset == kLpt1 ? data : status, value);
    }

    int WriteByte(int descriptor, std::uint8_t value, std::int64_t offset) override {
        EXPECT_EQ(offset, kLpt1) << "poked";
        return Transfer(open.at(descriptor) + " write", value, data);
    }

    int Lock(int descriptor, int) override { return Outcome(open.at(descriptor) + " lock"); }
    int ArmInterrupt(std::chrono::nanoseconds time) override {
        interrupt_ = time;
        return 0;
    }
    void DisarmInterrupt() override { interrupt_.reset(); }
    std::string DevFolder() const override { return folder.Path("dev"); }

  private:
    int Outcome(const std::string& call) {
        if (errors[call] == EINTR)
            now = interrupt_.value();
        return signals && interrupted_.insert(call).second ? -EINTR : -errors[call];
    }

    int Transfer(const std::string& call, std::uint8_t from, std::uint8_t& to) {
        const int result = Outcome(call);
        to = result == 0 ? from : to;
        return result;
    }

    std::set<std::string> interrupted_;
    std::optional<std::chrono::nanoseconds> interrupt_;
    int lastDescriptor_ = 10;
};

/// The parameter is the device file, which tells the port.
class RealPortTest : public testing::TestWithParam<const char*> {
  protected:
    void ExpectUsable() {
        port_.Claim(kLpt1);
        EXPECT_EQ(port_.DlPortReadPortUchar(kLpt1 + 1), 0x78);
        EXPECT_EQ(port_.Failure(), "");
    }

    void ExpectUnusable(const std::string& line) {
        port_.DlPortWritePortUchar(kLpt1, 0x11);
        EXPECT_NE(system_.data, 0x11);
        EXPECT_EQ(port_.DlPortReadPortUchar(kLpt1), 0xFF);
        port_.Release();
        EXPECT_THAT(port_.Failure(), testing::HasSubstr(line));
        EXPECT_TRUE(system_.open.empty());
    }

    void List() const {
        if (device_ == "parport0")
            system_.List("parport0", kLpt1);
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
        port_.DlPortWritePortUchar(kLpt1, 0x5A);
        port_.DlPortWritePortUchar(kLpt1 + 1, 0x11);
        for (const auto& [offset, value] : {std::pair(0, 0x5A), {2, 0xFF}, {-1, 0xFF}})
            EXPECT_EQ(port_.DlPortReadPortUchar(static_cast<std::uint16_t>(kLpt1 + offset)), value);
        port_.Release();
        EXPECT_EQ(port_.Failure(), "");
        ExpectUnusable("");
    }
    for (const char* failing : {" close", device_ == "port" ? " close" : " release"}) {
        system_.errors = {{device_ + failing, EIO}};
        port_.Claim(kLpt1);
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
    const std::string active = "proc/sys/dev/parport/parport0/devices/active";
    system_.folder.Write(active, "i2c-parport\n");
    for (const auto& [call, error, line] : kObstacles) {
        if (!call.starts_with(device_ + " "))
            continue;
        system_.errors[call] = error;
        const auto before = system_.Now();
        port_.Claim(kLpt1);
        EXPECT_LE(system_.Now() - before, std::chrono::seconds(1));
        port_.DlPortWritePortUchar(kLpt1, 0x5A);
        EXPECT_EQ(port_.DlPortReadPortUchar(kLpt1), 0xFF);
        system_.errors = {{device_ + " release", EIO}};
        ExpectUnusable("/dev/" + device_ + line);
        system_.errors.clear();
        ExpectUsable();
    }
    std::filesystem::remove(system_.folder.Path("proc/77/fd/3"));
    system_.List("parport0", kLpt1);
    for (const auto& [name, says] :
         {std::pair("i2c-parport\n", "the kernel's driver i2c-parport. Take"),
          {"ppdev0\n", "another program. Close"},
          {"none\n", "another program. Close"}}) {
        system_.folder.Write(active, name);
        system_.errors["parport0 claim"] = ENXIO;
        port_.Claim(kLpt1);
        ExpectUnusable(std::string("parport0 is in use by ") + says);
    }
}

TEST_P(RealPortTest, ServesTheListedPortsAtTheThreeAddressesOnly) {
    port_.Claim(kLpt1);
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

/// The kind asked for, the base address of the kernel's port (0: none), /proc/ioports, a call that
/// fails and its error, and the device in use then, "simulated" or "refused".
constexpr std::tuple<const char*, int, const char*, const char*, int, const char*> kMachines[] = {
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
    for (const auto& [asked, base, ioPorts, call, error, expected] : kMachines) {
        FakeSystem system;
        if (base != 0)
            system.List("parport0", base);
        system.folder.Write("proc/ioports", ioPorts);
        system.errors[call] = error;
        const auto chosen = ChoosePort(*ParsePortKind(asked), Simulation{}, system, "");
        chosen->ThePort().Claim(0x378);
        const std::string inUse = chosen->IsSimulated() ? "simulated"
                                  : system.open.empty() ? "refused"
                                                        : system.open.begin()->second;
        EXPECT_EQ(inUse, expected) << asked << ioPorts << call;
        EXPECT_EQ(chosen->ThePort().Failure().empty() || chosen->IsSimulated(), inUse != "refused");
    }
    EXPECT_EQ(ParsePortKind("Auto"), std::nullopt);
}

}  // namespace
}  // namespace tarnwell
