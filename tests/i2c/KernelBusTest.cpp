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
        state.bus.kernel = I2cBus{"Test adapter", ""};
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
    /// Whichever transfer of a check fails, the failure is what is told, and nothing is found; but
    /// for the second one, which nobody is to answer.
    BusCheck CheckUnderEachFault(const std::deque<Answer>& answers) {
        for (int good = 0;; good += good == 0 ? 2 : 1) {
            transfers = 0;
            system.fault = [&] { return transfers++ == good ? ENXIO : 0; };
            t.user.answers = answers;
            if (const BusCheck check = Check(); check != BusCheck::NoAcknowledge) {
                EXPECT_EQ(transfers, good) << "a transfer failed unseen";
                system.fault = {};
                return check;
            }
            EXPECT_THAT(t.user.TakeBoxes().back(), HasSubstr("not acknowledge"));
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

TEST_F(KernelBusTest, ReadsAndWritesWhatTheAdapterTakesAtATimeAndLearnsIt) {
    for (const auto& [longest, pieces] : {std::pair<std::size_t, int>{20, 4}, {15, 64}}) {
        system.longest = longest;
        system.tooLong = EIO;
        kernel.Open(kernel.Buses()[0]);
        KernelTransfers transfersOf(kernel, t.stop);
        for (const bool first : {true, false}) {
            std::array<std::uint8_t, 64> bytes{};
            system.transfers = system.refusals = 0;
            EXPECT_EQ(transfersOf.ReadAll(0x50, 100, bytes), 0);
            EXPECT_TRUE(std::ranges::equal(bytes, std::span(Primary().memory).subspan(100, 64)));
            EXPECT_EQ(system.transfers, std::uint64_t(pieces));
            EXPECT_EQ(system.refusals > 0, first);
        }
        const BusClaim claim(bus);
        std::array<std::uint8_t, kPageBytes> page{};
        std::iota(page.begin(), page.end(), static_cast<std::uint8_t>(longest));
        EXPECT_EQ(bus.WritePage(64, page), Transfer::Done);
        EXPECT_TRUE(std::ranges::equal(page, std::span(Primary().memory).subspan(64, kPageBytes)));
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
        EXPECT_THAT(t.user.TakeBoxes(), Each(HasSubstr(finding)));
        system.fault = [] { return ENODEV; };
        EXPECT_EQ(Check(), BusCheck::NoAcknowledge);
        EXPECT_THAT(t.user.TakeBoxes(), ElementsAre(HasSubstr("is gone")));
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
    EXPECT_THAT(t.user.TakeBoxes(), ElementsAre(HasSubstr("other bytes each")));
}

TEST_F(KernelBusTest, SendsNoDataOverAnAdapterThatCannotCombineBeforeTheUsersWord) {
    system.combines = false;
    t.WillAnswer({Answer::No});
    EXPECT_EQ(Check(), BusCheck::Declined);
    EXPECT_EQ(system.transfers, 2U);
    EXPECT_EQ(CheckUnderEachFault({Answer::Yes}), BusCheck::Ok);
    EXPECT_THAT(t.user.TakeBoxes(), Each(HasSubstr("Is a 24C64")));
    Primary() = {{Primary().memory.begin(), Primary().memory.begin() + 256}, 1};
    for (const bool says : {true, false}) {
        system.combines = system.stopsBetween = !says;
        KernelBus other = Fresh();
        t.user.answers = says ? std::deque{Answer::Yes, Answer::No} : std::deque{Answer::No};
        EXPECT_EQ(Check(other), BusCheck::Declined);
        EXPECT_THAT(t.user.TakeBoxes(), Contains(HasSubstr("have one byte")));
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
    EXPECT_EQ(transfers, 18) << "a look is short";
    system.sdaLow = true;
    EXPECT_EQ(Check(), BusCheck::NoAcknowledge);
    EXPECT_THAT(t.user.TakeBoxes(),
                ElementsAre(EndsWith("\r\nEvery address answers: SDA is held low.")));
    {
        const BusClaim claim(bus);
        EXPECT_EQ(bus.CheckAnswer(Quiet::Yes), BusCheck::NobodyAnswered);
    }
    system.sdaLow = false;
    std::deque lost{EAGAIN, ENXIO, EBUSY, EIO};
    system.fault = [&] {
        lost.push_back(0);
        const int error = lost.front();
        lost.pop_front();
        return error;
    };
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
            EXPECT_THAT(t.user.TakeBoxes(), ElementsAre(HasSubstr(line)));
            system.fault = {};
        }
    }
    Primary().writeCycle = std::chrono::hours(1);
    const BusClaim claim(bus);
    const BusTime before = system.now;
    EXPECT_EQ(bus.WriteByte(0, 1), Transfer::Aborted);
    EXPECT_EQ((system.now - before) / std::chrono::milliseconds(1), 50);
    EXPECT_THAT(bus.Failure(), HasSubstr("50 ms"));
}

TEST_F(KernelBusTest, TellsAClockThatIsHeldAndAsksNoOtherDeviceThen) {
    for (const auto& [wait, says, count] :
         {std::tuple(300, "not acknowledge", 2U), {500, "The clock is held", 1U}}) {
        system.transfers = 0;
        system.fault = [&, wait = wait] {
            system.now += std::chrono::milliseconds(wait);
            return ENXIO;
        };
        {
            const BusClaim claim(bus);
            EXPECT_EQ(bus.CheckAnswer(Quiet::Yes), BusCheck::NobodyAnswered);
            EXPECT_EQ(bus.CheckAnswer(Quiet::No), BusCheck::NoAcknowledge);
        }
        EXPECT_EQ(system.transfers, count);
        EXPECT_THAT(t.user.TakeBoxes(), ElementsAre(HasSubstr(says)));
    }
    EXPECT_THAT(BusChooser(kernel, t.stop).Look(kernel.Buses()[0]), HasSubstr("clock is held"));
    EXPECT_EQ(system.transfers, 2U);
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
    std::filesystem::rename(adapter, system.folder.Path("gone"));
    system.Name(7, "Test adapter");
    system.combines = false;
    t.WillAnswer({Answer::Yes});
    EXPECT_EQ(Check(), BusCheck::Ok);
    EXPECT_TRUE(t.user.answers.empty()) << "nothing is known of another one at its node";
    const BusClaim claim(bus);
    std::filesystem::remove_all(adapter);
    system.fault = [] { return EIO; };
    EXPECT_EQ(bus.ReadBlock(0, 1), Transfer::Aborted);
    EXPECT_THAT(bus.Failure(), HasSubstr("is gone"));
    EXPECT_FALSE(bus.IsTaken());
    system.Name(7, "Test adapter");
    system.fault = {};
    t.WillAnswer({Answer::Yes});
    EXPECT_EQ(Check(), BusCheck::Ok);
    EXPECT_TRUE(t.user.answers.empty());
}

TEST_F(KernelBusTest, LeavesADeviceToTheDriverOfTheKernel) {
    system.Bind("7-0050", "at24");
    EXPECT_EQ(Check(), BusCheck::NoAcknowledge);
    EXPECT_EQ(system.transfers, 0U);
    system.Bind("7-0051", "dummy");
    state.targetDevice = TargetDevice::Secondary;
    EXPECT_EQ(Check(), BusCheck::NoAcknowledge);
    EXPECT_THAT(
        t.user.TakeBoxes(),
        ElementsAre(
            HasSubstr("device at 0x50"),
            HasSubstr("driver at24 uses the device at 0x51. Take it away from there with \"echo "
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
    const std::pair<const char*, std::function<void()>> looks[] = {
        {"0x50 (primary EEPROM): a device answers.\n0x51 (secondary EEPROM): nothing answers.",
         [] {}},
        {"Every address answers: SDA is held low.", [&] { system.sdaLow = true; }},
        {"0x51 (secondary EEPROM): The bus is stuck",
         [&] { system.fault = [] { return ETIMEDOUT; }; }},
        {"(primary EEPROM): not asked", [&] { system.Bind("7-0050", "at24"); }},
        {"SMBus commands only", [&] { system.functions = I2C_FUNC_SMBUS_BYTE; }},
        {"in use by another program",
         [&] {
             system.functions = I2C_FUNC_I2C;
             system.locking = EWOULDBLOCK;
         }},
        {"modprobe i2c-dev", [&] { system.opening = ENOENT; }},
        {"group i2c", [&] { system.opening = EACCES; }},
    };
    for (const auto& [says, happens] : looks) {
        happens();
        EXPECT_THAT(chooser.Look(bus), HasSubstr(says));
        const bool opens = system.opening == 0 && system.functions == I2C_FUNC_I2C;
        EXPECT_EQ(chooser.Obstacle(bus), opens ? "" : chooser.Look(bus));
        EXPECT_EQ(system.open, 0);
        EXPECT_EQ(system.devices.at(0x50).pointer, 1U) << "no address was sent";
        system.sdaLow = false;
    }
    std::filesystem::remove_all(system.folder.Path("sys"));
    EXPECT_TRUE(chooser.Refresh());
    EXPECT_THAT(chooser.Advice(nullptr), HasSubstr("Plug an adapter in"));
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
        const I2cBus wanted = *ChosenBusFrom(text).kernel;
        const auto bus = FindI2cBus(buses, wanted);
        EXPECT_THAT(bus ? bus->node : NoI2cBusLine(buses, wanted), HasSubstr(found));
    }
}

}  // namespace
}  // namespace tarnwell
