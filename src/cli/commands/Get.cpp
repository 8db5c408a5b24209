#include "cli/commands/Commands.h"
#include "cli/tools/Settings.h"

namespace tarnwell::cli {

void Get(const Arguments& arguments, Device& device, Report& report) {
    if (RefusesSettings(arguments, report) || !device.Open())
        return;
    std::vector<AddressedByte> bytes;
    for (const int cell : arguments.cells) {
        if (!device.ReadBytes({Cell(cell).address, 1}, bytes))
            return;
        report.settings.push_back({cell, FieldOf(bytes.back().value, Cell(cell).setting->shift)});
    }
}

void GetFromFile(const Arguments& arguments, Report& report) {
    if (RefusesSettings(arguments, report))
        return;
    if (const auto content = Load(*arguments.image, arguments, report))
        ShowSettings(arguments.cells, *content, report);
}

}  // namespace tarnwell::cli
