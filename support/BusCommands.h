// The commands that read or write an EEPROM, for tests that go through all of them.
#pragma once

#include <array>
#include <ostream>

#include "support/TestProgram.h"

namespace tarnwell {

inline constexpr std::uint16_t kFirstCellAddress = 2363;

struct BusCommand {
    const char* name;
    bool writes;
    std::uint16_t firstAddress;  ///< of the byte that it meets first
    std::uint64_t reads;         ///< how many block reads it makes; of a write, in its verification
    void (*run)(TestProgram&);
};

inline void PrintTo(const BusCommand& command, std::ostream* stream) {
    *stream << command.name;
}

/// Whoever is asked agrees.
inline constexpr std::array kBusCommands{
    BusCommand{"ReadEntireEep", false, 0, 1,
               [](TestProgram& test) { test.program.wholeDevice.ReadEntireEep(); }},
    BusCommand{"WriteEntireEep", true, 0, 1,
               [](TestProgram& test) {
                   test.user.answers = {Answer::Yes};
                   test.program.wholeDevice.WriteEntireEep();
               }},
    BusCommand{"FillEntireEep", true, 0, 1,
               [](TestProgram& test) {
                   test.user.texts = {"171"};
                   test.program.wholeDevice.FillEntireEep();
               }},
    BusCommand{"ReadSettings", false, kFirstCellAddress, kCellCount,
               [](TestProgram& test) { test.program.settings.ReadSettingsFromEep(); }},
    BusCommand{"WriteSettings", true, kFirstCellAddress, 2,
               [](TestProgram& test) {
                   test.user.answers = {Answer::Yes};
                   test.program.settings.WriteSettingsToEep();
               }},
    BusCommand{"WritePending", true, 16, 1,
               [](TestProgram& test) {
                   test.user.answers = {Answer::Yes};
                   test.program.pending.WritePending();
               }},
};

/// All bytes differ, so that every page is written.
inline constexpr BusCommand kWriteDifferences{
    "WriteDifferences", true, 0, 3, [](TestProgram& test) {
        test.user.answers = {Answer::Yes};
        test.program.writeDifferences.WriteDifferencesToEep();
        test.user.answers.clear();
    }};

}  // namespace tarnwell
