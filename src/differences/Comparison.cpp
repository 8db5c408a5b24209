#include "differences/Comparison.h"

#include <algorithm>

#include "core/Number.h"
#include "core/files/AtomicFile.h"
#include "differences/DifferenceCount.h"
#include "settings/Catalog.h"

namespace tarnwell {

namespace {

std::optional<int> CellOn(TargetDevice device, int address) {
    return device == TargetDevice::Primary ? CellAtAddress(address) : std::nullopt;
}

/// The bits of a byte that its setting fills.
int FieldMask(std::optional<int> cell) {
    return cell ? (0xFF << Cell(*cell).setting->shift) & 0xFF : 0;
}

bool Continues(const DifferenceRow& place, int address) {
    return place.bytes.back().address + 1 == address;
}

std::string Text(int number, NumberMode mode) {
    return NumberText(static_cast<std::uint32_t>(number), mode);
}

DifferenceTexts TextsOfSetting(int cell, const Mismatch& byte, NumberMode mode) {
    const CellInfo& info = Cell(cell);
    const Setting& setting = *info.setting;
    return {Text(byte.address, mode), std::string(setting.code),
            setting.statusName.withFormat
                ? std::string(kFormats[static_cast<std::size_t>(info.column)])
                : std::string(),
            Text(FieldOf(byte.expected, setting.shift), mode),
            Text(FieldOf(byte.found, setting.shift), mode)};
}

template <typename Texts>
std::string Joined(const Texts& texts, char separator) {
    std::string line;
    for (const auto& text : texts)
        line.append(line.empty() ? "" : std::string(1, separator)).append(text);
    return line + '\n';
}

/// A list outlives the program's number mode: 10 may be 16.
DifferenceTexts HeadOf(NumberMode mode) {
    DifferenceTexts head;
    std::ranges::copy(kDifferenceColumns, head.begin());
    if (mode == NumberMode::Hex) {
        for (const std::size_t column : {kAddressColumn, kLeftColumn, kRightColumn})
            head[column] += " (hex)";
    }
    return head;
}

}  // namespace

std::vector<DifferenceRow> DifferenceRows(TargetDevice device, const MemoryBuffer& left,
                                          const MemoryBuffer& right) {
    std::vector<DifferenceRow> rows;
    std::optional<std::size_t> place;
    for (const Mismatch& byte : Differences(left, right)) {
        const auto cell = CellOn(device, byte.address);
        const int bits = byte.expected ^ byte.found;
        const int field = FieldMask(cell);
        if ((bits & field) != 0)
            rows.push_back({cell, {byte}});
        if ((bits & ~field) == 0)
            continue;
        if (place && Continues(rows[*place], byte.address)) {
            rows[*place].bytes.push_back(byte);
            continue;
        }
        place = rows.size();
        rows.push_back({std::nullopt, {byte}});
    }
    return rows;
}

DifferenceTexts TextsOf(const Mismatch& byte, NumberMode mode) {
    return {Text(byte.address, mode), "", "", Text(byte.expected, mode), Text(byte.found, mode)};
}

DifferenceTexts TextsOf(const DifferenceRow& row, NumberMode mode) {
    if (row.cell)
        return TextsOfSetting(*row.cell, row.bytes.front(), mode);
    if (row.bytes.size() == 1)
        return TextsOf(row.bytes.front(), mode);
    return {Text(row.Address(), mode) + " - " + Text(row.bytes.back().address, mode),
            Counted(static_cast<int>(row.bytes.size()), "byte"), "", "", ""};
}

std::string ListText(const std::vector<DifferenceRow>& rows, NumberMode mode, char separator) {
    std::string text = Joined(HeadOf(mode), separator);
    for (const DifferenceRow& row : rows) {
        if (row.cell) {
            text += Joined(TextsOf(row, mode), separator);
            continue;
        }
        for (const Mismatch& byte : row.bytes)
            text += Joined(TextsOf(byte, mode), separator);
    }
    return text;
}

bool SaveList(const std::string& path, const std::vector<DifferenceRow>& rows, NumberMode mode) {
    AtomicFile file(path);
    file.Write(ListText(rows, mode, ','));
    return file.Commit();
}

void TakeRows(const std::vector<DifferenceRow>& rows, TargetDevice device,
              const MemoryBuffer& source, MemoryBuffer& image) {
    for (const DifferenceRow& row : rows) {
        for (const Mismatch& byte : row.bytes) {
            const int field = FieldMask(CellOn(device, byte.address));
            const int mask = row.cell ? field : 0xFF & ~field;
            const auto index = static_cast<std::size_t>(byte.address);
            image[index] =
                static_cast<std::uint8_t>((image[index] & ~mask) | (source[index] & mask));
        }
    }
}

}  // namespace tarnwell
