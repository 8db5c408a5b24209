#include "cli/commands/Commands.h"
#include "cli/tools/Writing.h"
#include "image/WriteTexts.h"

namespace tarnwell::cli {

void Poke(const Arguments& arguments, Device& device, Report& report) {
    MemoryBuffer image;
    if (!CanBeConfirmed(arguments, report) || !device.Open() || !device.ReadImage(image))
        return;
    WriteConfirmed(arguments, device, report,
                   {.values = arguments.byteValues,
                    .question = AskWriteBytes(static_cast<int>(arguments.byteValues.size())),
                    .done = kBytesWritten,
                    .notVerified = kBytesNotVerified},
                   image);
}

}  // namespace tarnwell::cli
