// The settings loader: a value that it takes fits its field, and goes through file and buffer.
#include "Archives.h"

namespace tarnwell::fuzzing {

namespace {

constexpr const char* kLoaded = "Settings Loaded from Archive Disk File";

void LoadSettings(std::string_view content, NumberMode mode) {
    SimulatedTelevision television;
    QuietProgram quiet(television, television);
    Program& program = quiet.program;
    program.numberModeMenu.Select(mode);
    program.settings.ShowSettingsFromBuffer();
    const std::string outcome =
        Load(quiet, program.settingsArchive, &SettingsArchive::LoadSettings, content);
    REQUIRE(outcome == kLoaded || outcome == "Load Settings Failed" ||
            outcome == "Load Settings Canceled");

    std::array<std::uint8_t, kCellCount> values{};
    for (int cell = 0; cell < kCellCount; ++cell) {
        const auto value = program.cells.Value(cell);
        REQUIRE(value && *value < 256 >> Cell(cell).setting->shift);
        values[static_cast<std::size_t>(cell)] = *value;
    }
    program.state.BufferChanged = true;
    program.settings.MergeSettingsWithBuffer();
    program.settings.ShowSettingsFromBuffer();
    const auto requireSameValues = [&] {
        for (int cell = 0; cell < kCellCount; ++cell)
            REQUIRE(program.cells.Value(cell) == values[static_cast<std::size_t>(cell)]);
    };
    requireSameValues();
    const std::string saved = Save(quiet, program.settingsArchive, &SettingsArchive::SaveSettings);
    program.buffer.fill(0);
    program.settings.ShowSettingsFromBuffer();
    REQUIRE(Load(quiet, program.settingsArchive, &SettingsArchive::LoadSettings, saved) == kLoaded);
    requireSameValues();
}

}  // namespace

void Run(std::string_view input) {
    const NumberMode mode = input.size() % 2 == 0 ? NumberMode::Decimal : NumberMode::Hex;
    LoadSettings(input, mode);
    if (const std::string fixed = WithChecksums(input); fixed != input)
        LoadSettings(fixed, mode);
}

}  // namespace tarnwell::fuzzing
