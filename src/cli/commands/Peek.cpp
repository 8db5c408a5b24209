#include "cli/commands/Commands.h"

namespace tarnwell::cli {

void Peek(const Arguments& arguments, Device& device, Report& report) {
    if (!device.Open())
        return;
    for (const ByteRange& range : arguments.ranges) {
        if (!device.ReadBytes(range, report.data))
            return;
    }
}

}  // namespace tarnwell::cli
