#include "cli/tools/Settings.h"

#include "image/WriteTexts.h"

namespace tarnwell::cli {

bool RefusesSettings(const Arguments& arguments, Report& report) {
    if (arguments.device == TargetDevice::Primary)
        return false;
    report.End(Status::WrongUse, OneLine(kNoSettingsOnSecondary));
    return true;
}

std::optional<ByteValues> BytesWith(const CellValues& values, Device& device, MemoryBuffer& image) {
    ByteValues bytes;
    for (const auto& [cell, value] : values) {
        const CellInfo& info = Cell(cell);
        std::uint8_t& present = image[static_cast<std::size_t>(info.address)];
        if (!device.ReadAgreed(info.address, present))
            return std::nullopt;
        bytes[info.address] = WithField(present, value, info.setting->shift);
    }
    return bytes;
}

void ShowSettings(const std::vector<int>& cells, const Content& content, Report& report) {
    for (const int cell : cells) {
        const CellInfo& info = Cell(cell);
        if (content.image)
            report.settings.push_back(
                {cell, FieldOf((*content.image)[static_cast<std::size_t>(info.address)],
                               info.setting->shift)});
        else if (const auto value = content.values.find(cell); value != content.values.end())
            report.settings.push_back({cell, value->second});
    }
}

void WriteContentDifferences(const Content& content, const Arguments& arguments, Device& device,
                             Report& report) {
    MemoryBuffer present{};
    if ((!content.image && RefusesSettings(arguments, report)) ||
        !CanBeConfirmed(arguments, report) || !device.Open() || !device.ReadImage(present))
        return;
    if (content.image) {
        report.crc = mCRC32::BufferCrcText(*content.image);
        return WriteOnlyDifferences(arguments, device, report, *content.image, present);
    }
    const auto bytes = BytesWith(content.values, device, present);
    if (!bytes)
        return;
    MemoryBuffer wanted = present;
    for (const auto& [address, value] : *bytes)
        wanted[static_cast<std::size_t>(address)] = value;
    WriteOnlyDifferences(arguments, device, report, wanted, present);
}

Writing SettingsWriting(ByteValues bytes) {
    return {std::move(bytes), kAskWriteSettings, kSettingsWritten, kSettingsNotVerified};
}

}  // namespace tarnwell::cli
