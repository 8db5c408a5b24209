// Kills the program in the middle of what it writes, and runs two instances on one port.
#include <random>

#include "core/OptionsFile.h"
#include "support/Instance.h"

namespace tarnwell {
namespace {

/// A store that holds one number in everything that it keeps.
struct Store {
    const char* name;
    void (*write)(Instance&, int number);
    bool (*holds)(Instance&, int number);
};

void PrintTo(const Store& store, std::ostream* out) {
    *out << store.name;
}

std::string TextFor(int number) {
    return std::string(static_cast<std::size_t>(number % 500), 'x');
}

/// Options and archives lie beside each other.
std::string Path(const Instance& instance, const char* name) {
    return instance.folder + "Halvdorn/" + name;
}

const Store kStores[] = {
    {"Image",
     [](Instance& instance, int number) {
         instance.program.buffer.fill(static_cast<std::uint8_t>(number));
         instance.program.state.BufferChanged = true;
         instance.quiet.user.file = Path(instance, "image.mot");
         instance.program.imageArchive.SaveImage();
     },
     [](Instance& instance, int number) {
         instance.quiet.user.file = Path(instance, "image.mot");
         instance.program.imageArchive.LoadImage();
         const MemoryBuffer& buffer = instance.program.buffer;
         return std::count(buffer.begin(), buffer.end() - 1, number & 0xFF) == kEepromBytes;
     }},
    {"Options",
     [](Instance& instance, int number) {
         OptionsFile store(Path(instance, "Tarnwell.ini"));
         LoadOptions(store, instance.program.state, instance.quiet.outside);
         instance.program.state.editLeft = TextFor(number);
         instance.quiet.outside.place = {number, number};
         SaveOptions(store, instance.program.state, instance.quiet.outside);
     },
     [](Instance& instance, int number) {
         OptionsFile store(Path(instance, "Tarnwell.ini"));
         LoadOptions(store, instance.program.state, instance.quiet.outside);
         return instance.quiet.outside.place.top == number &&
                instance.program.state.editLeft == TextFor(number);
     }},
    {"Television",
     [](Instance& instance, int number) {
         instance.television.Claim(0x378);
         instance.television.Memory(Chip::Secondary).fill(static_cast<std::uint8_t>(number));
         instance.television.Release();
     },
     [](Instance& instance, int number) {
         instance.television.Claim(0x378);
         const EepromImage& image = instance.television.Memory(Chip::Secondary);
         return std::ranges::count(image, number & 0xFF) == kEepromSize;
     }},
};

class CrashSafety : public testing::TestWithParam<Store> {};
INSTANTIATE_TEST_SUITE_P(Stores, CrashSafety, testing::ValuesIn(kStores),
                         [](const auto& store) { return std::string(store.param.name); });

TEST_P(CrashSafety, LeavesTheOldOrTheNewState) {
    const Store& store = GetParam();
    const TemporaryFolder folder;
    folder.Write("Halvdorn/Tarnwell.ini", "");
    std::mt19937 random{20261117};
    std::atomic<int>& begun = SharedNumber();
    std::atomic<int>& done = SharedNumber();
    int between = 0;
    for (int round = 0; round < 100; ++round) {
        const int before = done;
        const pid_t writer = Fork([&] {
            Instance instance{folder.Path()};
            for (;;) {
                store.write(instance, ++begun);
                done = begun.load();
            }
        });
        while (done == before)
            usleep(100);
        usleep(static_cast<useconds_t>(random() % 3000));
        EXPECT_EQ(WTERMSIG(End(writer, SIGKILL)), SIGKILL);

        Instance left{folder.Path()};
        const bool isNew = store.holds(left, begun);
        EXPECT_TRUE(isNew || store.holds(left, done)) << begun << " begun, " << done << " done";
        between += begun == done ? 0 : 1;
        done = begun = isNew ? begun.load() : done.load();
    }
    EXPECT_GT(between, 0);
}

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
