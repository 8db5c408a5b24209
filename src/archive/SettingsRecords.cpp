#include "archive/SettingsRecords.h"

#include <algorithm>

#include "archive/SRecord.h"

namespace tarnwell {

namespace {

std::string_view DigitsOf(std::string_view record, int value) {
    const std::size_t position = kS1DataPosition + 2 * static_cast<std::size_t>(value);
    return record.substr(std::min(position, record.size()), 2);
}

/// Whether the two characters are a value that the cell's byte can hold.
bool FitsField(std::string_view digits, int cell) {
    const auto value = ByteFromText(digits, NumberMode::Hex);
    return digits.size() == 2 && value && *value < 256 >> Cell(cell).setting->shift;
}

/// False if something in the record does not fit.
bool LoadRecord(std::string_view record, SettingDigits& digits) {
    const int address =
        ByteAt(record, kAddressPosition) * 256 + ByteAt(record, kAddressPosition + 2);
    const SettingGroup* const group = GroupAtBase(address);
    if (group == nullptr)
        return false;
    const int first = group->firstCell;
    const int count = ByteAt(record, kCountPosition) - kS1Overhead;
    const int fitting = std::min(count, kCellCount - first);
    for (int value = 0; value < fitting; ++value) {
        const std::string_view given = DigitsOf(record, value);
        const int cell = first + value;
        if (FitsField(given, cell))
            continue;
        digits.misfit = "address " + std::to_string(Cell(cell).address) + ": \"" +
                        std::string(given) + "\" does not fit into " + SettingName(cell) + ", " +
                        BitsText(cell) + ".";
        return false;
    }
    for (int value = 0; value < fitting; ++value) {
        const int cell = first + value;
        digits[static_cast<std::size_t>(cell)] = DigitsOf(record, value);
    }
    return fitting == count;
}

}  // namespace

std::vector<std::string> SettingsRecords(const SettingCells& cells) {
    std::vector<std::string> lines{std::string(kSettingsHeader)};
    for (const SettingGroup& group : SettingGroups)
        lines.push_back(MakeS1Record(cells, group));
    lines.emplace_back(kTerminator);
    return lines;
}

LoadEnd LoadSettingsRecords(ArchiveFile& file, SettingDigits& digits) {
    for (int count = 0; count < kGroupCount; ++count) {
        const auto record = file.NextLine();
        if (!record)
            return file.EndOfLines();
        if (record->starts_with(kTerminatorType))
            return LoadEnd::Complete;
        if (!record->ends_with(RecordChecksum(*record)))
            return LoadEnd::WrongChecksum;
        if (LoadRecord(*record, digits))
            continue;
        if (!digits.misfit.empty())
            digits.misfit = "Record " + std::to_string(count + 1) + ", " + digits.misfit;
        return LoadEnd::BadRecord;
    }
    return LoadEnd::Complete;
}

}  // namespace tarnwell
