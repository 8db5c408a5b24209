#include "cli/commands/Commands.h"
#include "cli/tools/Settings.h"

namespace tarnwell::cli {

namespace {

std::vector<Mismatch> DifferentValues(const CellValues& values, const MemoryBuffer& image) {
    std::vector<Mismatch> differences;
    for (const auto& [cell, value] : values) {
        const CellInfo& info = Cell(cell);
        const std::uint8_t found =
            FieldOf(image[static_cast<std::size_t>(info.address)], info.setting->shift);
        if (found != value)
            differences.push_back({info.address, value, found});
    }
    return differences;
}

}  // namespace

void Verify(const Arguments& arguments, Device& device, Report& report) {
    MemoryBuffer image;
    const auto content = Load(arguments.file, arguments, report);
    if (!content || (!content->image && RefusesSettings(arguments, report)) || !device.Open() ||
        !device.ReadImage(image))
        return;
    report.crc = mCRC32::BufferCrcText(image);
    report.mismatches = content->image ? Differences(*content->image, image)
                                       : DifferentValues(content->values, image);
    const std::size_t count = report.mismatches.size();
    if (count == 0)
        return report.End(Status::Done, "The EEProm holds what the file holds.");
    report.End(Status::Different,
               std::to_string(count) + (count == 1 ? " byte differs." : " bytes differ."));
}

}  // namespace tarnwell::cli
