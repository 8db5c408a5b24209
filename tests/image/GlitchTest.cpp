// Single glitches of one clock, at every moment of a write: no byte is written at another address,
// nothing wrong is told as verified.
#include <algorithm>

#include "support/BusCommands.h"

namespace tarnwell {
namespace {

using enum FaultKind;

constexpr std::array kGlitches{SdaStuckLow,  SdaStuckHigh, SclStuckLow,
                               SclStuckHigh, LinesJoined,  SdaMisread};

/// A bit sent costs three changes of a line, each a read and a write, and the look at it.
constexpr std::uint64_t kAccessesOfAClock = 7;

/// What a write is to leave, and how it runs: true if it says that the device holds that.
struct Write {
    const char* name;
    std::map<int, std::uint8_t> bytes;
    bool (*run)(TestProgram&);
};

bool ToldVerified(TestProgram& test) {
    const bool verified = test.Status().starts_with("EEP Verified OK");
    EXPECT_EQ(test.user.boxes.back().title.starts_with("E R R O R"), !verified);
    return verified;
}

bool WriteSettings(TestProgram& test) {
    for (const auto& [cell, value] : {std::pair{0, 0x96}, {32, 0x2A}, {71, 5}}) {
        test.program.cells.ShowValue(cell, static_cast<std::uint8_t>(value));
        test.program.cells.SetMark(cell, Mark::Save);
    }
    kBusCommands[4].run(test);
    return ToldVerified(test);
}

bool WritePending(TestProgram& test) {
    test.program.pending.ClearPendingWrites();
    for (const char* address : {"80", "8191"})
        test.program.pending.AddPendingWrite({address, "0", "150"});
    kBusCommands[5].run(test);
    return ToldVerified(test);
}

/// A page from its second byte on.
std::map<int, std::uint8_t> Page() {
    std::map<int, std::uint8_t> page;
    for (int place = 1; place < kPageBytes; ++place)
        page[0x0A60 + place] = static_cast<std::uint8_t>(0x35 + 7 * place);
    return page;
}

bool WritePage(TestProgram& test) {
    EepromBus& bus = test.program.i2c;
    const BusClaim claim(bus);
    std::vector<std::uint8_t> bytes;
    for (const auto& [address, value] : Page())
        bytes.push_back(value);
    if (bus.CheckBus(Quiet::No) != BusCheck::Ok)
        return false;
    const auto first = static_cast<std::int16_t>(Page().begin()->first);
    const auto count = static_cast<std::int16_t>(bytes.size());
    if (bus.WritePage(first, bytes) == Transfer::Done &&
        bus.ReadBlock(first, count) == Transfer::Done)
        return std::equal(bytes.begin(), bytes.end(), bus.ReadData().begin());
    bus.AbortOperation();
    return false;
}

/// Other bytes in every row, so that a shifted address shows.
std::map<int, std::uint8_t> WholeImage() {
    std::map<int, std::uint8_t> image;
    for (int address = 0; address < kEepromBytes; ++address)
        image[address] = static_cast<std::uint8_t>(0x35 + 7 * address + address / 256);
    return image;
}

bool WriteWholeDevice(TestProgram& test) {
    for (const auto& [address, value] : WholeImage())
        test.program.buffer[static_cast<std::size_t>(address)] = value;
    kBusCommands[1].run(test);
    return ToldVerified(test);
}

/// What the first 64 bytes of a whole write take, with the bus check.
constexpr std::uint64_t kAccessesOf64Bytes = 30'000;

class Glitch : public ::testing::TestWithParam<Write> {
  protected:
    /// Runs the write from the same beginning; how many accesses that takes.
    std::uint64_t Run(FaultKind kind, std::uint64_t access) {
        television_.ClearFaults();
        television_.PowerCycle();
        television_.Memory(Chip::Primary) = before_;
        television_.WaitUntil(television_.Now() + std::chrono::milliseconds(10));
        test_.user.boxes.clear();
        const std::uint64_t begin = television_.Count(WireEvent::Access);
        television_.Inject(
            {.kind = kind, .begins = {WireEvent::Access, access}, .accesses = kAccessesOfAClock});
        verified_ = GetParam().run(test_);
        return television_.Count(WireEvent::Access) - begin;
    }

    void ExpectNoWrongByte() {
        EepromImage left = television_.Memory(Chip::Primary);
        const bool arrived = std::ranges::all_of(GetParam().bytes, [&](const auto& byte) {
            return left[static_cast<std::size_t>(byte.first)] == byte.second;
        });
        EXPECT_TRUE(arrived || !verified_);
        for (const auto& [address, value] : GetParam().bytes)
            left[static_cast<std::size_t>(address)] = before_[static_cast<std::size_t>(address)];
        EXPECT_EQ(left, before_) << "a byte at another address";
    }

    TestProgram test_{{.writeCycle = std::chrono::microseconds(150)}};
    SimulatedTelevision& television_ = test_.television;
    const EepromImage before_ = [this] {
        EepromImage image = television_.Memory(Chip::Primary);
        image[2085] = 0x01;
        image[2228] = 0x0F;
        return image;
    }();
    bool verified_ = false;
};

TEST_P(Glitch, WritesNoOtherByteAndIsTold) {
    const bool whole = GetParam().bytes.size() == kEepromBytes;
    const std::uint64_t all = Run(LostWrite, ~0ULL / 2);
    const std::uint64_t accesses = whole ? kAccessesOf64Bytes : all;
    const std::uint64_t stride = whole ? 2'999 : 1;
    ASSERT_TRUE(verified_);
    ExpectNoWrongByte();
    for (const FaultKind kind : kGlitches) {
        for (std::uint64_t access = 1; access <= accesses && !HasFailure(); access += stride) {
            SCOPED_TRACE(::testing::Message() << "glitch " << static_cast<int>(kind)
                                              << " at access " << access << " of " << accesses);
            Run(kind, access);
            ExpectNoWrongByte();
        }
    }
}

INSTANTIATE_TEST_SUITE_P(
    Writes, Glitch,
    ::testing::Values(
        Write{"WholeDevice", WholeImage(), WriteWholeDevice}, Write{"Page", Page(), WritePage},
        Write{"Settings", {{2363, 0x96}, {2085, 0xA8 | 1}, {2228, 0x5F}}, WriteSettings},
        Write{"Pending", {{80, 150}, {8191, 150}}, WritePending}),
    [](const auto& write) { return std::string(write.param.name); });

}  // namespace
}  // namespace tarnwell
