#include "i2c/Mismatch.h"

#include "core/Words.h"

namespace tarnwell {

namespace {

/// A line for each behind `text`.
std::string Listed(std::string text, const std::vector<Mismatch>& mismatches,
                   const std::array<std::string_view, 2>& verbs, NumberMode mode,
                   const ByteNames& names) {
    if (mismatches.empty())
        return {};
    for (const Mismatch& mismatch : mismatches)
        text.append("\n" + AddressText(mismatch.address, mode, names))
            .append(verbs[0])
            .append(NumberText(mismatch.expected, mode))
            .append(verbs[1])
            .append(NumberText(mismatch.found, mode));
    return text;
}

}  // namespace

std::vector<Mismatch> Mismatches(const EepromArray& expected, const EepromArray& found) {
    std::vector<Mismatch> mismatches;
    for (std::size_t address = 0; address < kEepromBytes; ++address) {
        if (expected[address] != found[address])
            mismatches.push_back({static_cast<int>(address), expected[address], found[address]});
    }
    return mismatches;
}

std::string AddressText(int address, NumberMode mode, const ByteNames& names) {
    const std::string name = names ? names(address) : std::string();
    return "Address " + NumberText(static_cast<std::uint32_t>(address), mode) +
           (name.empty() ? "" : " (" + name + ")");
}

std::string MismatchText(const std::vector<Mismatch>& mismatches, NumberMode mode,
                         const ByteNames& names) {
    return Listed(Counted(mismatches.size(), "byte", "differs.", "differ."), mismatches,
                  {": wrote ", ", read "}, mode, names);
}

std::string StraysText(const std::vector<Mismatch>& strays, NumberMode mode,
                       const ByteNames& names) {
    return Listed(Counted(strays.size(), "other byte", "has changed.", "have changed."), strays,
                  {": held ", ", read "}, mode, names);
}

}  // namespace tarnwell
