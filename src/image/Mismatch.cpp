#include "image/Mismatch.h"

#include "core/Number.h"

namespace tarnwell {

namespace {

std::string Line(const Mismatch& mismatch, NumberMode mode, const ByteNames& names) {
    return "\n" + AddressText(mismatch.address, mode, names) + ": wrote " +
           NumberText(mismatch.expected, mode) + ", read " + NumberText(mismatch.found, mode);
}

}  // namespace

std::vector<Mismatch> Differences(const MemoryBuffer& expected, const MemoryBuffer& found) {
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
    if (mismatches.empty())
        return {};
    std::string text = std::to_string(mismatches.size()) +
                       (mismatches.size() == 1 ? " byte differs." : " bytes differ.");
    for (const Mismatch& mismatch : mismatches)
        text += Line(mismatch, mode, names);
    return text;
}

}  // namespace tarnwell
