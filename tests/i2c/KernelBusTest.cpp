// The EEPROM transactions over a bus of the kernel, on adapters and devices of every kind, and what
// is told of the buses before one is chosen.
#include "i2c/kernel/KernelBus.h"

#include <csignal>
#include <numeric>
#include <random>

#include "i2c/kernel/BusChooser.h"
#include "support/FakeI2c.h"
#include "support/TestProgram.h"

namespace tarnwell {
namespace {

class KernelBusTest : public testing::Test {
  protected:
    KernelBusTest() {
        std::mt19937 random{7};
        for (auto& [address, device] : system.devices)
            std::ranges::generate(device.memory, [&] { return std::uint8_t(random()); });
        state.i2cBus = "Test adapter|";
    }
    /// Nothing is known of the adapter and its devices yet.
    KernelBus Fresh() {
        return {{.port = t.television, .clock = t.television, .stop = t.stop, .kernel = kernel},
                state,
                t.program.statusBar,
                t.user};
    }
    static BusCheck Check(KernelBus& bus) {
        const BusClaim claim(bus);
        return bus.CheckBus(Quiet::No);
    }
    BusCheck Check() { return Check(bus); }
    /// Whichever transfer of a check fails, the failure is what is told, and nothing is found.
    BusCheck CheckUnderEachFault(const std::deque<Answer>& answers) {
        for (int good = 0;; ++good) {
            transfers = 0;
            system.fault = [&] { return transfers++ == good ? ENXIO : 0; };
            t.user.answers = answers;
            if (const BusCheck check = Check(); check != BusCheck::NoAcknowledge) {
                EXPECT_EQ(transfers, good) << "a transfer failed unseen";
                system.fault = {};
                return check;
            }
            EXPECT_THAT(t.user.TakeBoxes().back(), testing::HasSubstr("not acknowledge"));
        }
    }
    FakeEeprom& Primary() { return system.devices.at(0x50); }

    int transfers = 0;
    FakeI2c system;
    LinuxI2c kernel{system};
    TestProgram t;
    ProgramState state;
    KernelBus bus = Fresh();
};

TEST_F(KernelBusTest, ReadsAndWritesWhateverTheAdapterCanDo) {
    for (const bool combines : {true, false}) {
        for (const auto& [longest, refusal] : {std::pair<std::size_t, int>{8192, 0},
                                               {4096, EOPNOTSUPP},
                                               {4096, ETIMEDOUT},
                                               {255, EIO},
                                               {255, EMSGSIZE},
                                               {32, EINVAL}}) {
            SCOPED_TRACE(testing::Message() << combines << " " << longest << " " << refusal);
            system.combines = combines;
            system.longest = longest;
            system.tooLong = refusal;
            KernelBus fresh = Fresh();
            const BusClaim claim(fresh);
            if (!combines)
                t.WillAnswer({Answer::Yes});
            ASSERT_EQ(fresh.CheckBus(Quiet::No), BusCheck::Ok);
            std::array<std::uint8_t, kPageBytes> page{};
            std::iota(page.begin(), page.end(), std::uint8_t(longest));
            ASSERT_EQ(fresh.WritePage(64, page), Transfer::Done);
            ASSERT_EQ(fresh.WriteByte(8191, 42), Transfer::Done);
            EXPECT_EQ(fresh.BytesWritten(), 33);
            ASSERT_EQ(fresh.ReadBlock(0, kEepromBytes), Transfer::Done);
            EXPECT_EQ(t.user.paintings == 0, combines && longest == 8192U);
            EXPECT_TRUE(
                std::ranges::equal(page, std::span(Primary().memory).subspan(64, kPageBytes)));
            EXPECT_TRUE(std::ranges::equal(Primary().memory,
                                           std::span(fresh.ReadData()).first(kEepromBytes)));
            const std::uint64_t refusals = system.refusals;
            ASSERT_EQ(fresh.WritePage(64, page), Transfer::Done);
            ASSERT_EQ(fresh.ReadBlock(0, kEepromBytes), Transfer::Done);
            EXPECT_EQ(system.refusals, refusals) << "once is enough to know";
        }
    }
}

TEST_F(KernelBusTest, AsksBeforeADeviceThatIsNo24C64AndNeverWritesToIt) {
    const std::vector<std::uint8_t> edid{0, 255, 255, 255, 255, 255, 255, 0, 1, 2, 3};
    const std::vector<std::uint8_t> zeros(99);
    const struct {
        std::size_t bytes, addressBytes;
        std::vector<std::uint8_t> header;
        int fill;
        const char* finding;
    } kDevices[] = {
        {256, 1, edid, -1, "monitor (EDID)"},         {256, 1, {}, -1, "addresses have one byte"},
        {2048, 1, {}, -1, "addresses have one byte"}, {4096, 2, {}, -1, "4096 bytes or fewer"},
        {16384, 2, {}, -1, "more than 8192"},         {8192, 2, {}, 255, "fits every size"},
        {256, 1, {}, 0, "fits every size"},           {256, 1, {0x80, 8, 4}, -1, "module (SPD)"},
        {256, 1, {0x80, 8, 7}, -1, "module (SPD)"},   {256, 1, {0x80, 8, 8}, -1, "module (SPD)"},
        {256, 1, {0x91, 0, 11}, -1, "module (SPD)"},  {256, 1, {0x93, 0, 11}, -1, "module (SPD)"},
        {512, 1, {0x23, 0, 12}, -1, "module (SPD)"},  {512, 1, {0x23, 0, 16}, -1, "module (SPD)"},
        {8192, 2, {0x30, 0, 18}, -1, "module (SPD)"}, {128, 1, {0x51, 0x18}, -1, "module (SPD)"},
        {256, 1, {0x81, 8, 4}, -1, "have one byte"},  {256, 1, {0x80, 9, 4}, -1, "have one byte"},
        {256, 1, {0x94, 0, 11}, -1, "have one byte"}, {256, 1, {0x90, 0, 11}, -1, "have one byte"},
        {256, 1, {0x33, 0, 12}, -1, "have one byte"}, {256, 1, {0x31, 0, 18}, -1, "have one byte"},
        {256, 1, {0x51, 0x19}, -1, "have one byte"},  {256, 1, {0x52, 0x18}, -1, "have one byte"},
        {256, 1, zeros, -1, "have one byte"},
    };
    for (const auto& [bytes, addressBytes, header, fill, finding] : kDevices) {
        SCOPED_TRACE(finding);
        std::mt19937 random{3};
        FakeEeprom& device = Primary() = {std::vector<std::uint8_t>(bytes), addressBytes};
        for (auto& byte : device.memory)
            byte = static_cast<std::uint8_t>(fill < 0 ? random() : unsigned(fill));
        std::ranges::copy(header, device.memory.begin());
        EXPECT_EQ(CheckUnderEachFault({Answer::No}), BusCheck::Declined);
        t.WillAnswer({Answer::Yes});
        EXPECT_EQ(Check(), BusCheck::Ok);
        EXPECT_EQ(Check(), BusCheck::Ok);  // the Yes is kept
        EXPECT_EQ(device.stores, 0U);
        EXPECT_THAT(t.user.TakeBoxes(), testing::Each(testing::HasSubstr(finding)));
        system.fault = [] { return ENODEV; };
        EXPECT_EQ(Check(), BusCheck::NoAcknowledge);
        EXPECT_THAT(t.user.TakeBoxes(), testing::ElementsAre(testing::HasSubstr("is gone")));
        system.fault = {};
    }
}

TEST_F(KernelBusTest, AsksAboutADeviceWhoseBytesChange) {
    system.fault = [&] {
        std::ranges::for_each(Primary().memory, [](std::uint8_t& byte) { ++byte; });
        return 0;
    };
    t.WillAnswer({Answer::No});
    EXPECT_EQ(Check(), BusCheck::Declined);
    EXPECT_THAT(t.user.TakeBoxes(), testing::ElementsAre(testing::HasSubstr("other bytes each")));
}

TEST_F(KernelBusTest, SendsNoDataOverAnAdapterThatCannotCombineBeforeTheUsersWord) {
    system.combines = false;
    t.WillAnswer({Answer::No});
    EXPECT_EQ(Check(), BusCheck::Declined);
    EXPECT_EQ(system.transfers, 1U);
    EXPECT_EQ(CheckUnderEachFault({Answer::Yes}), BusCheck::Ok);
    EXPECT_THAT(t.user.TakeBoxes(), testing::Each(testing::HasSubstr("Is a 24C64")));
    Primary() = {{Primary().memory.begin(), Primary().memory.begin() + 256}, 1};
    for (const bool says : {true, false}) {
        system.combines = system.stopsBetween = !says;
        KernelBus other = Fresh();
        t.user.answers = says ? std::deque{Answer::Yes, Answer::No} : std::deque{Answer::No};
        EXPECT_EQ(Check(other), BusCheck::Declined);
        EXPECT_THAT(t.user.TakeBoxes(), testing::Contains(testing::HasSubstr("have one byte")));
    }
    EXPECT_EQ(Primary().stores, 0U);
}

TEST_F(KernelBusTest, SaysWhatFailed) {
    const std::pair<const char*, std::vector<int>> kFaults[] = {
        {"does not acknowledge", {ENXIO, EREMOTEIO}},
        {"stuck", {ETIMEDOUT, EBUSY}},
        {"Input/output error", {EIO}},
        {"Another master", {EAGAIN}},
        {"a part only", {EPROTO}},
        {"is gone", {ENODEV, ESHUTDOWN, EBADF, ENOENT}},
        {"cannot send", {EOPNOTSUPP, EINVAL}},
        {"too long. Some adapters", {EMSGSIZE}},
    };
    EXPECT_EQ(CheckUnderEachFault({}), BusCheck::Ok);
    EXPECT_EQ(transfers, 17) << "a look is short";
    const std::array lost{EAGAIN, ENXIO, EBUSY, EIO, 0};
    system.fault = [=, at = 0U]() mutable { return lost.at(at++); };
    const BusTime begin = system.now;
    EXPECT_EQ(Check(), BusCheck::Ok) << "sent until the other master is done";
    EXPECT_GE(system.now - begin, std::chrono::milliseconds(4)) << "after a pause each time";
    system.fault = {};
    for (const auto& [line, errors] : kFaults) {
        for (const int error : errors) {
            SCOPED_TRACE(line);
            ASSERT_EQ(Check(), BusCheck::Ok);
            const BusClaim claim(bus);
            system.fault = [error] { return error; };
            ASSERT_EQ(bus.ReadBlock(0, 10), Transfer::Aborted);
            bus.AbortOperation();
            EXPECT_EQ(bus.WriteByte(0, 1), Transfer::Aborted);
            EXPECT_THAT(t.user.TakeBoxes(), testing::ElementsAre(testing::HasSubstr(line)));
            system.fault = {};
        }
    }
    Primary().writeCycle = std::chrono::hours(1);
    const BusClaim claim(bus);
    const BusTime before = system.now;
    EXPECT_EQ(bus.WriteByte(0, 1), Transfer::Aborted);
    EXPECT_EQ((system.now - before) / std::chrono::milliseconds(1), 50);
    EXPECT_THAT(bus.Failure(), testing::HasSubstr("50 ms"));
}

TEST_F(KernelBusTest, SaysWhyABusCannotBeOpened) {
    const std::tuple<int, int, unsigned long, const char*> kRefusals[] = {
        {EACCES, 0, I2C_FUNC_I2C, "group i2c"},
        {ENOENT, 0, I2C_FUNC_I2C, "modprobe i2c-dev"},
        {0, EWOULDBLOCK, I2C_FUNC_I2C, "in use by another program"},
        {0, 0, I2C_FUNC_SMBUS_BYTE, "cannot send"},
    };
    for (const auto& [opening, locking, functions, line] : kRefusals) {
        system.opening = opening;
        system.locking = locking;
        system.functions = functions;
        EXPECT_EQ(Check(), BusCheck::NoAcknowledge);
        EXPECT_THAT(t.user.TakeBoxes(), testing::ElementsAre(testing::HasSubstr(line)));
    }
    EXPECT_EQ(system.transfers, 0U);
    state.i2cBus = "Other adapter|";
    EXPECT_EQ(Check(), BusCheck::NoAcknowledge);
    EXPECT_THAT(bus.Failure(), testing::HasSubstr("Other adapter is not there"));
}

TEST_F(KernelBusTest, ASignalEndsItBehindATransfer) {
    EXPECT_EQ(Check(), BusCheck::Ok);
    const BusClaim claim(bus);
    t.stop.wayOut = [&] { throw t.stop.Signal(); };
    t.stop.Note(SIGTERM);
    system.transfers = 0;
    EXPECT_THROW(bus.CheckAnswer(Quiet::Yes), int);
    EXPECT_THROW(static_cast<void>(bus.ReadBlock(0, 1)), int);
    EXPECT_EQ(system.transfers, 2U);
    EXPECT_THROW(static_cast<void>(bus.WriteByte(0, 1)), int);
    EXPECT_EQ(bus.BytesWritten(), 1) << "and behind the write cycle";
    EXPECT_THROW(BusChooser(kernel, t.stop).Look(kernel.Buses()[0]), int);
}

TEST_F(KernelBusTest, FindsAnAdapterThatWasUnpluggedWhateverItsDriverSays) {
    const std::string adapter = system.folder.Path("sys/bus/i2c/devices/i2c-7");
    ASSERT_EQ(Check(), BusCheck::Ok);
    std::filesystem::rename(adapter, system.folder.Path("before"));
    system.Name(7, "Test adapter");
    system.transfers = 0;
    ASSERT_EQ(Check(), BusCheck::Ok);
    EXPECT_GT(system.transfers, 2U) << "plugged in again, it is looked at anew";
    const BusClaim claim(bus);
    std::filesystem::remove_all(adapter);
    system.fault = [] { return EIO; };
    EXPECT_EQ(bus.ReadBlock(0, 1), Transfer::Aborted);
    EXPECT_THAT(bus.Failure(), testing::HasSubstr("is gone"));
    EXPECT_FALSE(bus.IsTaken());
    system.Name(7, "Test adapter");
    system.fault = {};
    system.combines = false;
    t.WillAnswer({Answer::Yes});
    EXPECT_EQ(Check(), BusCheck::Ok) << "nothing is known of another adapter";
}

TEST_F(KernelBusTest, LeavesADeviceToTheDriverOfTheKernel) {
    system.folder.Write("sys/bus/i2c/devices/7-0050/uevent", "");
    std::filesystem::create_symlink("../../drivers/at24",
                                    system.folder.Path("sys/bus/i2c/devices/7-0050/driver"));
    EXPECT_EQ(Check(), BusCheck::NoAcknowledge);
    EXPECT_EQ(system.transfers, 0U);
    system.folder.Write("sys/bus/i2c/devices/7-0051/uevent", "");
    std::filesystem::create_symlink("../../drivers/dummy",
                                    system.folder.Path("sys/bus/i2c/devices/7-0051/driver"));
    state.targetDevice = TargetDevice::Secondary;
    EXPECT_EQ(Check(), BusCheck::NoAcknowledge);
    EXPECT_THAT(t.user.TakeBoxes(),
                testing::ElementsAre(
                    testing::HasSubstr("device at 0x50"),
                    testing::HasSubstr(
                        "driver at24 uses the device at 0x51. Take it away from there with \"echo "
                        "7-0050 | sudo tee /sys/bus/i2c/drivers/at24/unbind\"")));
    std::filesystem::remove_all(system.folder.Path("sys/bus/i2c/devices/7-0051"));
    const BusClaim claim(bus);
    EXPECT_EQ(bus.CheckAnswer(Quiet::No), BusCheck::Ok);
    state.targetDevice = TargetDevice::Primary;
    EXPECT_EQ(bus.CheckAnswer(Quiet::Yes), BusCheck::NobodyAnswered);
}

TEST(BusChooser, LooksByReadingAloneAndNeverOnAMainboardsBus) {
    FakeI2c system;
    LinuxI2c kernel(system);
    BusChooser chooser(kernel, NoStopRequest());
    system.Name(0, "SMBus I801 adapter at efa0");
    EXPECT_TRUE(chooser.Refresh() && !chooser.Refresh());
    const I2cBus mainboard = chooser.Buses()[0];
    const I2cBus bus = chooser.Buses()[1];
    EXPECT_EQ(chooser.Look(mainboard), chooser.Advice(&mainboard));
    EXPECT_NE(chooser.Advice(&bus), chooser.Advice(nullptr));
    EXPECT_EQ(system.transfers, 0U);
    system.devices.erase(0x51);
    const auto both = [](const std::string& primary, const std::string& secondary) {
        return "0x50 (primary EEPROM): " + primary + "\n0x51 (secondary EEPROM): " + secondary;
    };
    EXPECT_EQ(chooser.Look(bus), both("a device answers.", "nothing answers."));
    EXPECT_EQ(system.transfers, 2U);
    EXPECT_EQ(system.open, 0);
    EXPECT_EQ(system.devices.at(0x50).pointer, 1U) << "an address was sent";
    system.fault = [] { return ETIMEDOUT; };
    EXPECT_THAT(chooser.Look(bus), testing::HasSubstr("0x51 (secondary EEPROM): The bus is stuck"));
    std::filesystem::create_directories(system.folder.Path("sys/bus/i2c/devices/7-0050"));
    std::filesystem::create_symlink("at24",
                                    system.folder.Path("sys/bus/i2c/devices/7-0050/driver"));
    EXPECT_THAT(chooser.Look(bus), testing::HasSubstr("(primary EEPROM): not asked"));
    EXPECT_EQ(chooser.Obstacle(bus), "");
    system.locking = EWOULDBLOCK;
    EXPECT_THAT(chooser.Look(bus), testing::HasSubstr("in use by another program"));
    EXPECT_EQ(chooser.Obstacle(bus), "");
    system.opening = EACCES;
    EXPECT_EQ(chooser.Obstacle(bus), chooser.Look(bus));
    EXPECT_EQ(system.open, 0);
    std::filesystem::remove_all(system.folder.Path("sys"));
    EXPECT_TRUE(chooser.Refresh());
    EXPECT_THAT(chooser.Advice(nullptr), testing::HasSubstr("Plug an adapter in"));
}

TEST(FindI2cBus, KnowsABusByItsNameWhereverItIsPluggedIn) {
    const std::vector<I2cBus> buses{{"A on hidraw2", "/dev/i2c-3"},
                                    {"B", "/dev/i2c-4"},
                                    {"B", "/dev/i2c-5"},
                                    {"C bus 1", "/dev/i2c-6"},
                                    {"D at bus 001 device 009", "/dev/i2c-7"}};
    for (const auto& [text, found] : {std::pair("B|/dev/i2c-5", "/dev/i2c-5"),
                                      {"B|/dev/i2c-3", "named B: /dev/i2c-4, /dev/i2c-5. Choose"},
                                      {"A on hidraw0|/dev/i2c-9", "/dev/i2c-3"},
                                      {"D at bus 002 device 003|/dev/i2c-7", "/dev/i2c-7"},
                                      {"C bus 1|", "/dev/i2c-6"},
                                      {"C bus 2|/dev/i2c-6", "The I2C bus C bus 2 is not there"},
                                      {"D", "/dev/i2c-7"}}) {
        const I2cBus wanted = I2cBusFromText(text);
        const auto bus = FindI2cBus(buses, wanted);
        EXPECT_THAT(bus ? bus->node : NoI2cBusLine(buses, wanted), testing::HasSubstr(found));
    }
}

}  // namespace
}  // namespace tarnwell
