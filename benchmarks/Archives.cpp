// Rows: the buffer's checksum, the grid's texts, image files, undo.
#include <cstdlib>
#include <random>

#include "Rows.h"
#include "differences/DifferenceTexts.h"
#include "support/TemporaryFolder.h"
#include "support/TestProgram.h"

namespace tarnwell::bench {

namespace {

constexpr int kTimes = 20;

void Shell(const std::string& command) {
    if (std::system(command.c_str()) != 0)
        std::fprintf(stderr, "could not run: %s\n", command.c_str());
}

}  // namespace

void AddArchives(Table& table) {
    const TemporaryFolder folder;
    SimulatedTelevision television;
    QuietProgram quiet(television, television);
    Program& program = quiet.program;
    std::mt19937 random{1};
    for (std::uint8_t& slot : program.buffer)
        slot = static_cast<std::uint8_t>(random() & 0x7F);

    const auto add = [&](std::string_view name, auto work) {
        table.Add(name, BestOf(kTimes, work), kFrame, "a picture at 60 a second");
    };
    add("CRC-32 text", [&] { mCRC32::BufferCrcText(program.buffer); });
    MemoryBuffer other = program.buffer;
    for (std::size_t address = 0; address < kEepromBytes; address += 3)
        other[address] ^= 1;
    const NameBook names;
    add("comparison of two images", [&] {
        DifferencesText(
            CountDifferences(DifferenceRows(names, TargetDevice::Primary, program.buffer, other)));
        Mismatches(program.buffer, other);
    });
    add("grid: fill", [&] { program.grid.FillGrid(); });
    add("grid: transfer to the buffer", [&] { program.grid.TransferGrid(); });
    add("number mode change of everything shown", [&] {
        program.numberModeMenu.Select(
            program.state.numberMode == NumberMode::Hex ? NumberMode::Decimal : NumberMode::Hex);
    });

    folder.Write("image.bin", {program.buffer.begin(), program.buffer.end() - 1});
    quiet.user.file = folder.Path("image.mot");
    const double save = BestOf(kTimes, [&] {
        program.state.BufferChanged = true;
        program.imageArchive.SaveImage();
    });
    const double load = BestOf(kTimes, [&] { program.imageArchive.LoadImage(); });
    const std::string binary = folder.Path("image.bin");
    const std::string toBinary = "srec_cat " + quiet.user.file + " -o " + binary + " -binary";
    const std::string toRecords = "srec_cat " + binary + " -binary -o " + folder.Path("cat.mot");
    table.Add("image file: save, safe on the disk", save, BestOf(kTimes, [&] { Shell(toRecords); }),
              "srec_cat, its program start included");
    table.Add("image file: load and show", load, BestOf(kTimes, [&] { Shell(toBinary); }),
              "srec_cat, its program start included");

    // Loads are the largest steps of undo.
    for (std::size_t step = 0; step < 1'000; ++step) {
        program.buffer[step] ^= 1;
        program.imageArchive.LoadImage();
    }
    table.Add("undo and redo of an image load",
              BestOf(kTimes,
                     [&] {
                         program.undo.Undo();
                         program.undo.Redo();
                     }),
              2e-3, "1 ms a step");
    table.Add("memory of the last 1,000 steps, all image loads",
              static_cast<double>(program.history.Bytes()) * 1'000 /
                  program.history.Count(Direction::Undo),
              16e6, "16 MB", Unit::Bytes);
}

}  // namespace tarnwell::bench
