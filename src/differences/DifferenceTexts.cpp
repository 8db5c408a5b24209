#include "differences/DifferenceTexts.h"

#include <algorithm>

#include "core/Words.h"
#include "i2c/Mismatch.h"
#include "settings/Catalog.h"

namespace tarnwell {

namespace {

std::string Text(int number, NumberMode mode) {
    return NumberText(static_cast<std::uint32_t>(number), mode);
}

DifferenceTexts TextsOfNamed(const DifferenceRow& row, NumberMode mode) {
    const NamedValue& named = *row.named;
    DifferenceTexts texts{Text(named.address, mode), named.name, "", Text(row.left, mode),
                          Text(row.right, mode)};
    if (!named.cell)
        return texts;
    const CellInfo& info = Cell(*named.cell);
    texts[kSettingColumn] = info.setting->code;
    if (info.setting->statusName.withFormat)
        texts[kSettingColumn + 1] = kFormats[static_cast<std::size_t>(info.column)];
    return texts;
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
    if (row.named)
        return TextsOfNamed(row, mode);
    if (row.bytes.size() == 1)
        return TextsOf(row.bytes.front(), mode);
    return {Text(row.Address(), mode) + " - " + Text(row.bytes.back().address, mode),
            Counted(row.bytes.size(), "byte"), "", "", ""};
}

std::string ListText(const std::vector<DifferenceRow>& rows, NumberMode mode, char separator) {
    std::string text = Joined(HeadOf(mode), separator);
    for (const DifferenceRow& row : rows) {
        if (row.named) {
            text += Joined(TextsOf(row, mode), separator);
            continue;
        }
        for (const Difference& byte : row.bytes)
            text += Joined(TextsOf(byte, mode), separator);
    }
    return text;
}

std::string ChangesText(const std::vector<DifferenceRow>& rows, NumberMode mode) {
    std::string text;
    const auto add = [&](int address, const ByteNames& names, const std::string& before,
                         const std::string& after) {
        text.append(text.empty() ? "" : "\n")
            .append(AddressText(address, mode, names))
            .append(": " + before + " becomes " + after);
    };
    for (const DifferenceRow& row : rows) {
        if (row.named) {
            add(
                row.named->address, [&](int) { return TitleOf(*row.named); },
                ValueText(*row.named, row.left, mode), ValueText(*row.named, row.right, mode));
            continue;
        }
        for (const Difference& byte : row.bytes)
            add(byte.address, {}, Text(byte.left, mode), Text(byte.right, mode));
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
