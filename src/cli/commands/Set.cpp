#include "cli/commands/Commands.h"
#include "cli/tools/Settings.h"
#include "image/WriteTexts.h"

namespace tarnwell::cli {

void Set(const Arguments& arguments, Device& device, Report& report) {
    MemoryBuffer image;
    if (RefusesSettings(arguments, report) || !CanBeConfirmed(arguments, report) ||
        !device.Open() || !device.ReadImage(image))
        return;
    auto bytes = BytesWith(arguments.cellValues, device, image);
    if (!bytes)
        return;
    std::erase_if(*bytes, [&](const auto& byte) {
        return byte.second == image[static_cast<std::size_t>(byte.first)];
    });
    for (const auto& [cell, value] : arguments.cellValues)
        report.settings.push_back({cell, value});
    if (bytes->empty()) {
        report.written = 0;
        return report.End(Status::Done, OneLine(kNoSettingsChanged));
    }
    WriteConfirmed(arguments, device, report, SettingsWriting(std::move(*bytes)), image);
}

void SetInFile(const Arguments& arguments, Report& report) {
    if (RefusesSettings(arguments, report) || !MaySave(*arguments.output, arguments, report))
        return;
    auto content = Load(*arguments.image, arguments, report);
    if (!content)
        return;
    for (const auto& [cell, value] : arguments.cellValues) {
        if (content->image) {
            std::uint8_t& byte = (*content->image)[static_cast<std::size_t>(Cell(cell).address)];
            byte = WithField(byte, value, Cell(cell).setting->shift);
        } else {
            content->values[cell] = value;
        }
        report.settings.push_back({cell, value});
    }
    if (content->image)
        report.crc = mCRC32::BufferCrcText(*content->image);
    if (arguments.dryRun)
        return report.End(Status::Done, "Nothing was written. This would be:");
    Save(*arguments.output, *content, arguments, report);
}

}  // namespace tarnwell::cli
