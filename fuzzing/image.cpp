// The image loader: whatever it takes from a file, it saves and loads again as it is.
#include "Archives.h"

namespace tarnwell::fuzzing {

namespace {

constexpr const char* kLoaded = "Record Checksums OK; EEP Image Loaded into Buffer";

void LoadImage(std::string_view content) {
    SimulatedTelevision television;
    QuietProgram quiet(television, television);
    Program& program = quiet.program;
    const std::string outcome =
        Load(quiet, program.imageArchive, &ImageArchive::LoadImage, content);
    REQUIRE(outcome == kLoaded || outcome == "EEProm Image Load Failed" ||
            outcome == "EEProm Image Load Cancelled" || outcome == "end");
    if (outcome != kLoaded)
        return;

    const MemoryBuffer loaded = program.buffer;
    for (int address = 0; address < kEepromBytes; address += 7) {
        const auto byte = loaded[static_cast<std::size_t>(address)];
        const GridCell cell{address / kBytesPerRow, address % kBytesPerRow + 1};
        REQUIRE(program.grid.Text(cell) == std::to_string(byte));
    }
    const std::string saved = Save(quiet, program.imageArchive, &ImageArchive::SaveImage);
    program.buffer.fill(0x5A);
    REQUIRE(Load(quiet, program.imageArchive, &ImageArchive::LoadImage, saved) == kLoaded);
    REQUIRE(std::equal(loaded.begin(), loaded.end() - 1, program.buffer.begin()));
}

}  // namespace

void Run(std::string_view input) {
    LoadImage(input);
    if (const std::string fixed = WithChecksums(input); fixed != input)
        LoadImage(fixed);
}

}  // namespace tarnwell::fuzzing
