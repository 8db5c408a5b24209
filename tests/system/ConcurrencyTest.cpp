// Two instances of the program on one port.
#include "support/Instance.h"

namespace tarnwell {
namespace {

TEST(Concurrency, CommandsOfTwoInstancesNeverInterleave) {
    constexpr std::int16_t kBytes = 24;
    const TemporaryFolder folder;
    std::atomic<int>& commands = SharedNumber();
    std::atomic<int>& mixed = SharedNumber();
    const auto work = [&](std::uint8_t value) {
        Instance instance{folder.Path()};
        mI2Ccode& i2c = instance.program.i2c;
        for (int command = 0; command < 60;) {
            const BusClaim claim(i2c);
            if (i2c.CheckBus(Quiet::Yes) != BusCheck::Ok)
                continue;
            bool clean = i2c.ReadBlock(0, kBytes) == Transfer::Done;
            const auto* const byte = i2c.ReadData().begin();
            clean = clean && (commands == 0 || std::count(byte, byte + kBytes, *byte) == kBytes);
            for (std::int16_t address = 0; address < kBytes; ++address)
                clean = i2c.WriteByte(address, value) == Transfer::Done && clean;
            clean = i2c.ReadBlock(0, kBytes) == Transfer::Done && clean;
            clean = clean && std::count(byte, byte + kBytes, value) == kBytes;
            mixed += clean ? 0 : 1;
            ++commands;
            ++command;
        }
    };
    const pid_t one = Fork([&] { work(0x11); });
    const pid_t two = Fork([&] { work(0x22); });
    EXPECT_EQ(End(one), 0);
    EXPECT_EQ(End(two), 0);
    EXPECT_EQ(commands, 120);
    EXPECT_EQ(mixed, 0);
}

}  // namespace
}  // namespace tarnwell
