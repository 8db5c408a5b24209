#include "differences/DifferenceTexts.h"

#include <algorithm>

#include "core/Words.h"
#include "core/files/AtomicFile.h"
#include "i2c/Mismatch.h"
#include "settings/Catalog.h"

namespace tarnwell {

namespace {

std::string Text(int number, NumberMode mode) {
    return NumberText(static_cast<std::uint32_t>(number), mode);
}

DifferenceTexts TextsOfSetting(int cell, const Difference& byte, NumberMode mode) {
    const CellInfo& info = Cell(cell);
    const Setting& setting = *info.setting;
    return {Text(byte.address, mode), std::string(setting.code),
            setting.statusName.withFormat
                ? std::string(kFormats[static_cast<std::size_t>(info.column)])
                : std::string(),
            Text(ValueIn(byte.left, cell), mode), Text(ValueIn(byte.right, cell), mode)};
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

DifferenceTexts TextsOf(const Difference& byte, NumberMode mode) {
    return {Text(byte.address, mode), "", "", Text(byte.left, mode), Text(byte.right, mode)};
}

DifferenceTexts TextsOf(const DifferenceRow& row, NumberMode mode) {
    if (row.cell)
        return TextsOfSetting(*row.cell, row.bytes.front(), mode);
    if (row.bytes.size() == 1)
        return TextsOf(row.bytes.front(), mode);
    return {Text(row.Address(), mode) + " - " + Text(row.bytes.back().address, mode),
            Counted(row.bytes.size(), "byte"), "", "", ""};
}

std::string ListText(const std::vector<DifferenceRow>& rows, NumberMode mode, char separator) {
    std::string text = Joined(HeadOf(mode), separator);
    for (const DifferenceRow& row : rows) {
        if (row.cell) {
            text += Joined(TextsOf(row, mode), separator);
            continue;
        }
        for (const Difference& byte : row.bytes)
            text += Joined(TextsOf(byte, mode), separator);
    }
    return text;
}

bool SaveList(const std::string& path, const std::vector<DifferenceRow>& rows, NumberMode mode) {
    AtomicFile file(path);
    file.Write(ListText(rows, mode, ','));
    return file.Commit();
}

std::string ChangesText(const std::vector<DifferenceRow>& rows, TargetDevice device,
                        NumberMode mode) {
    const auto names = [&](int address) { return SettingNameOn(device, address); };
    std::string text;
    for (const DifferenceRow& row : rows) {
        for (const Difference& byte : row.bytes) {
            const DifferenceTexts texts = row.cell ? TextsOf(row, mode) : TextsOf(byte, mode);
            text += (text.empty() ? "" : "\n") +
                    AddressText(byte.address, mode, row.cell ? ByteNames(names) : ByteNames()) +
                    ": " + texts[kLeftColumn] + " becomes " + texts[kRightColumn];
        }
    }
    return text;
}

std::string DifferencesText(const DifferenceCount& count) {
    if (count.bytes == 0)
        return "No differences";
    std::string text = Counted(count.bytes, "byte", "differs: ", "differ: ");
    if (count.settings > 0)
        text += Counted(count.settings, "setting") + (count.otherBytes > 0 ? ", " : "");
    if (count.otherBytes > 0)
        text += Counted(count.otherBytes, count.settings > 0 ? "other byte" : "byte") + " in " +
                Counted(count.places, "place");
    return text;
}

}  // namespace tarnwell
