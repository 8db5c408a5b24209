// Single glitches at every moment of a write: no byte is written at another address, nothing wrong
// is told as verified, and the bus can be used afterwards. TARNWELL_SWEEP=full tries each of them.
#include <algorithm>
#include <cstdlib>

#include "support/BusCommands.h"

namespace tarnwell {
namespace {

using enum FaultKind;

struct Glitch {
    FaultKind kind;
    std::uint64_t accesses;  ///< how many it lasts; of LostClocks, how many clocks are lost
};

/// The worst ones, which the suite tries at many accesses, and the others.
std::vector<Glitch> Glitches(bool worst) {
    if (worst)
        return {{LostClocks, 1}, {LostClocks, 2}, {SclStuckLow, 11}, {SdaStuckHigh, 7}};
    std::vector<Glitch> glitches;
    for (const std::uint64_t accesses : {1U, 2U, 4U, 7U, 11U}) {
        for (const FaultKind kind : {SclStuckLow, SclStuckHigh, SdaStuckLow, SdaStuckHigh,
                                     LinesJoined, SdaMisread, DriveLost})
            glitches.push_back({kind, accesses});
    }
    return glitches;
}

struct WantedByte {
    int address;
    std::uint8_t held, wanted;
};

/// What a write is to leave: in write cycles of `page` bytes, as set and poke write, or by the
/// command for what waits, settings or other bytes.
struct Write {
    const char* name;
    std::vector<WantedByte> bytes;
    std::size_t page = 0;
    std::uint64_t stride = 1;  ///< of the accesses that are tried at all
};

/// True if it says that the device holds that; in write cycles it is read back by as many.
bool WriteAndReadBack(TestProgram& test, const Write& write) {
    mI2Ccode& bus = test.program.i2c;
    const BusClaim claim(bus);
    bool same = bus.CheckBus(Quiet::No) == BusCheck::Ok;
    std::vector<std::uint8_t> bytes;
    for (const WantedByte& byte : write.bytes)
        bytes.push_back(byte.wanted);
    for (std::size_t place = 0; place < 2 * bytes.size() && same; place += write.page) {
        const bool reads = place >= bytes.size();
        const auto part = std::span(bytes).subspan(place % bytes.size(), write.page);
        const auto address = static_cast<std::int16_t>(write.bytes[place % bytes.size()].address);
        const Transfer done = reads ? bus.ReadBlock(address, static_cast<std::int16_t>(write.page))
                                    : bus.WritePage(address, part);
        if (done == Transfer::Aborted)
            bus.AbortOperation();
        same = done == Transfer::Done &&
               (!reads || std::equal(part.begin(), part.end(), bus.ReadData().begin()));
    }
    return same;
}

bool RunCommand(TestProgram& test, const Write& write) {
    test.program.pending.ClearPendingWrites();
    for (const WantedByte& byte : write.bytes) {
        if (const auto cell = CellAtAddress(byte.address)) {
            test.program.cells.ShowValue(*cell, ValueIn(byte.wanted, *cell));
            test.program.cells.SetMark(*cell, Mark::Save);
        } else {
            test.program.pending.AddPendingWrite({byte.address, {0}, {byte.wanted}});
        }
    }
    kBusCommands[test.program.pending.Count() == 0 ? 4 : 5].Run(test);
    const bool verified = test.Status().starts_with("EEP Verified OK");
    EXPECT_EQ(test.user.boxes.back().title.starts_with("E R R O R"), !verified);
    return verified;
}

/// A page from its second byte on; one byte is a device's select byte.
std::vector<WantedByte> Page() {
    std::vector<WantedByte> page;
    for (int place = 1; place < kPageBytes; ++place) {
        const auto wanted = static_cast<std::uint8_t>(place == 9 ? 0xA0 : 0x35 + 7 * place);
        page.push_back({0x0A60 + place, static_cast<std::uint8_t>(~wanted), wanted});
    }
    return page;
}

/// Whether the device holds what is wanted already, but for the last byte.
enum class Held { Other, Same };

class GlitchTest : public ::testing::TestWithParam<std::tuple<Write, Held>> {
  protected:
    const Write& TheWrite() const { return std::get<0>(GetParam()); }

    /// Runs the write from the same beginning; how many accesses that takes.
    std::uint64_t Run(const Glitch& glitch, std::uint64_t access) {
        television_.PowerCycle();
        television_.Memory(Chip::Primary) = before_;
        television_.WaitUntil(television_.Now() + std::chrono::milliseconds(10));
        test_.user.boxes.clear();
        const std::uint64_t begin = television_.Count(WireEvent::Access);
        television_.Inject({.kind = glitch.kind,
                            .begins = {WireEvent::Access, access},
                            .accesses = glitch.accesses,
                            .clocks = static_cast<std::uint8_t>(glitch.accesses)});
        verified_ = (TheWrite().page == 0 ? RunCommand : WriteAndReadBack)(test_, TheWrite());
        return television_.Count(WireEvent::Access) - begin;
    }

    /// What no glitch may do: true if it did.
    bool LeftAWrongByte() {
        EepromImage left = television_.Memory(Chip::Primary);
        bool arrived = true;
        for (const WantedByte& byte : TheWrite().bytes) {
            auto& found = left[static_cast<std::size_t>(byte.address)];
            arrived = arrived && found == byte.wanted;
            found = before_[static_cast<std::size_t>(byte.address)];
        }
        return left != before_ || (verified_ && !arrived);
    }

    /// Whether a command says why it cannot use the bus although the glitch is over, and the next
    /// cannot either.
    bool LeftTheBusUnusable() {
        television_.ClearFaults();
        const auto usable = [this] {
            const BusClaim claim(test_.program.i2c);
            return test_.program.i2c.CheckBus(Quiet::No) == BusCheck::Ok;
        };
        television_.WaitUntil(television_.Now() + std::chrono::milliseconds(10));
        return !usable() && !usable();
    }

    void Sweep(const std::vector<Glitch>& glitches, std::uint64_t stride) {
        for (std::uint64_t first = 0; const Glitch& glitch : glitches) {
            for (std::uint64_t access = first++ % stride + 1; access <= accesses_;
                 access += stride) {
                Run(glitch, access);
                const bool wrong = LeftAWrongByte();
                const bool unusable = LeftTheBusUnusable();
                EXPECT_FALSE(wrong || unusable)
                    << "glitch " << static_cast<int>(glitch.kind) << " of " << glitch.accesses
                    << " at access " << access << " of " << accesses_
                    << (wrong ? verified_ ? ": wrong, untold" : ": wrong" : "")
                    << (unusable ? ": unusable" : "");
            }
        }
    }

    TestProgram test_{{.writeCycle = std::chrono::microseconds(150)}};
    SimulatedTelevision& television_ = test_.television;
    const EepromImage before_ = [this] {
        EepromImage image = television_.Memory(Chip::Primary);
        for (const WantedByte& byte : TheWrite().bytes) {
            const bool last = byte.address == TheWrite().bytes.back().address;
            image[static_cast<std::size_t>(byte.address)] =
                std::get<1>(GetParam()) == Held::Same && !last ? byte.wanted : byte.held;
        }
        return image;
    }();
    std::uint64_t accesses_ = 0;
    bool verified_ = false;
};

TEST_P(GlitchTest, WritesNoOtherByteAndIsToldAndLeavesTheBusUsable) {
    accesses_ = Run({LostWrite, 0}, ~0ULL / 2);
    ASSERT_TRUE(verified_);
    ASSERT_FALSE(LeftAWrongByte());
    const char* const sweep = std::getenv("TARNWELL_SWEEP");
    const bool full = sweep != nullptr && std::string_view(sweep) == "full";
    const std::uint64_t stride = TheWrite().stride;
    // A command that ends in a told difference reads the whole device.
    const std::uint64_t rarely = TheWrite().page == 0 ? 7 : 1;
    Sweep(Glitches(true), full ? stride : TheWrite().page == 1 ? 2 : 17 * rarely);
    Sweep(Glitches(false), full ? stride : 127 * rarely);
}

INSTANTIATE_TEST_SUITE_P(
    Writes, GlitchTest,
    ::testing::Combine(
        ::testing::Values(
            Write{"Bytes", {{0x9F, 0x12, 0xA0}, {0xA0, 0x34, 0x00}, {0xA1, 0x56, 0xFF}}, 1},
            Write{"Page", Page(), kPageBytes - 1, 9},
            Write{"ConsecutiveSettings",
                  {{2363, 0x11, 0x96}, {2364, 0xFF, 0x2A}, {2365, 0x0E, 0x05}}},
            Write{"SharedBytes", {{2085, 0x01, 0xA9}, {2228, 0x0F, 0x5F}}},
            Write{"Pending", {{80, 0x11, 150}, {81, 0xA0, 7}, {8191, 0, 150}}}),
        ::testing::Values(Held::Other, Held::Same)),
    [](const auto& write) {
        return std::string(std::get<0>(write.param).name) +
               (std::get<1>(write.param) == Held::Same ? "HeldAlready" : "");
    });

}  // namespace
}  // namespace tarnwell
