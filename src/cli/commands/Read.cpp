#include "cli/commands/Commands.h"
#include "cli/tools/Files.h"

namespace tarnwell::cli {

void Read(const Arguments& arguments, Device& device, Report& report) {
    Content content;
    if (!MaySave(arguments.file, arguments, report) || !device.Open() ||
        !device.ReadImage(content.image.emplace()))
        return;
    device.GiveBack();
    report.crc = mCRC32::BufferCrcText(*content.image);
    Save(arguments.file, content, arguments, report);
}

}  // namespace tarnwell::cli
