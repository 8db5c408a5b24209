#include "cli/commands/Commands.h"
#include "cli/tools/Settings.h"

namespace tarnwell::cli {

void Restore(const Arguments& arguments, Device& device, Report& report) {
    const auto content = LoadSide(arguments.file, arguments, report);
    if (content)
        WriteContentDifferences(*content, arguments, device, report);
}

}  // namespace tarnwell::cli
