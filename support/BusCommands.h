// The commands that read or write an EEPROM, for tests that go through all of them.
#pragma once

#include <array>
#include <ostream>
#include <span>

#include "support/TestProgram.h"

namespace tarnwell {

inline constexpr std::uint16_t kFirstCellAddress = 2363;

struct BusCommand {
    const char* name;
    bool writes;
    std::uint16_t firstAddress;  ///< of the byte that it meets first
    std::uint64_t reads;         ///< how many block reads it makes; of a write, in its verification
    void (*command)(Program&);

    /// Whoever is asked agrees, once; a fill asks for its value only.
    void Run(TestProgram& test) const {
        const bool fills = std::string_view(name).starts_with("Fill");
        test.user.ignoresDoubts = true;
        test.user.texts = {fills ? std::optional<std::string>("171") : std::nullopt};
        test.user.answers = {writes && !fills ? std::deque{Answer::Yes} : std::deque<Answer>()};
        command(test.program);
        test.user.answers.clear();
    }
};

inline void PrintTo(const BusCommand& command, std::ostream* stream) {
    *stream << command.name;
}

/// A whole write reads the device a second time, sixteen of its bytes by themselves until two
/// readings agree, and verifies.
inline constexpr std::array kBusCommands{
    BusCommand{"ReadEntireEep", false, 0, 1, [](Program& p) { p.wholeDevice.ReadEntireEep(); }},
    BusCommand{"WriteEntireEep", true, 0, 34, [](Program& p) { p.wholeDevice.WriteEntireEep(); }},
    BusCommand{"FillEntireEep", true, 0, 34, [](Program& p) { p.wholeDevice.FillEntireEep(); }},
    BusCommand{"ReadSettings", false, kFirstCellAddress, kCellCount,
               [](Program& p) { p.settings.ReadSettingsFromEep(); }},
    BusCommand{"WriteSettings", true, kFirstCellAddress, 2,
               [](Program& p) { p.settings.WriteSettingsToEep(); }},
    BusCommand{"WritePending", true, 16, 1, [](Program& p) { p.pending.WritePending(); }},
    BusCommand{"WriteDifferences", true, 0, 12,
               [](Program& p) { p.writeDifferences.WriteDifferencesToEep(); }},
    BusCommand{"WriteFromComparison", true, 0, 12,
               [](Program& p) {
                   if (!p.compare.Of(Side::Left))  // as a write leaves it that was cut short
                       p.compare.Choose(Side::Left, Source::Primary);
                   p.compare.Write(p.compare.Rows());
               }},
};

inline bool IsDifferences(const BusCommand& command) {
    return command.name == kBusCommands.back().name ||
           command.name == kBusCommands[kBusCommands.size() - 2].name;
}

inline constexpr int kChangedBytes = 3 * kPageBytes;

/// An image that was read, changes of three pages, two changed settings, and a pending write.
inline void PrepareWrites(TestProgram& test) {
    test.program.wholeDevice.ReadEntireEep();
    for (std::uint8_t& byte : std::span(test.program.buffer).first(kChangedBytes))
        byte ^= 0x04;
    for (const int cell : {0, 1}) {
        test.program.cells.ShowValue(cell, 201);
        test.program.cells.SetMark(cell, Mark::Save);
        test.program.cells.SetColour(cell, CellColour::Changed);
    }
    test.program.pending.AddPendingWrite({16, {80}, {201}});
    test.program.compare.Choose(Side::Left, Source::Primary);
    test.program.compare.Choose(Side::Right, Source::Buffer);
}

}  // namespace tarnwell
