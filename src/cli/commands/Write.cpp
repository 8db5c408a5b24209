#include "cli/commands/Commands.h"
#include "cli/tools/Settings.h"
#include "image/WriteTexts.h"

namespace tarnwell::cli {

namespace {

Writing OfImage(const MemoryBuffer& image) {
    Writing writing{{}, kAskWriteImage, kImageWritten, kImageNotVerified};
    for (int address = 0; address < kEepromBytes; ++address)
        writing.values[address] = image[static_cast<std::size_t>(address)];
    return writing;
}

}  // namespace

void Write(const Arguments& arguments, Device& device, Report& report) {
    const auto content = Load(arguments.file, arguments, report);
    if (content && arguments.differences)
        return WriteContentDifferences(*content, arguments, device, report);
    MemoryBuffer present;
    if (!content || (!content->image && RefusesSettings(arguments, report)) ||
        !CanBeConfirmed(arguments, report) || !device.Open() || !device.ReadImage(present))
        return;
    if (content->image) {
        report.crc = mCRC32::BufferCrcText(*content->image);
        WriteConfirmed(arguments, device, report, OfImage(*content->image), present);
    } else if (auto bytes = BytesWith(content->values, device, present)) {
        WriteConfirmed(arguments, device, report, SettingsWriting(std::move(*bytes)), present);
    }
}

}  // namespace tarnwell::cli
