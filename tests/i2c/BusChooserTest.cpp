// What is told of the kernel's buses before one is chosen.
#include "i2c/kernel/BusChooser.h"

#include <gmock/gmock.h>

#include "support/FakeI2c.h"

namespace tarnwell {
namespace {

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
