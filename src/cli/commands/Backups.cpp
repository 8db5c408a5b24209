#include "cli/commands/Commands.h"
#include "cli/tools/Files.h"

namespace tarnwell::cli {

void Backups(const Arguments& arguments, Report& report) {
    report.device = arguments.device;
    report.backups = KeptBackups(arguments.device);
    if (report.backups->empty())
        report.End(Status::Done, "No backup is kept.");
}

}  // namespace tarnwell::cli
