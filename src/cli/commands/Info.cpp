#include "cli/commands/Commands.h"
#include "cli/tools/Settings.h"

namespace tarnwell::cli {

void Info(const Arguments& arguments, Report& report) {
    const auto content = Load(arguments.file, arguments, report);
    if (!content)
        return;
    if (content->image) {
        report.crc = mCRC32::BufferCrcText(*content->image);
        report.bytes = kEepromBytes;
        return report.End(Status::Done, "An EEProm image.");
    }
    ShowSettings(CellsInOrder(), *content, report);
    report.End(Status::Done, "A settings archive.");
}

}  // namespace tarnwell::cli
