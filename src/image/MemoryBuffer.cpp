#include "image/MemoryBuffer.h"

#include "core/user/Number.h"

namespace tarnwell::mCRC32 {

namespace {

constexpr std::uint32_t kReflectedPolynomial = 0xEDB88320;
constexpr std::uint32_t kPreset = 0xFFFFFFFF;

std::array<std::uint32_t, 256>& Table() {
    static std::array<std::uint32_t, 256> table{};
    return table;
}

}  // namespace

std::uint32_t MakeCrcTable() {
    for (std::uint32_t index = 0; index < Table().size(); ++index) {
        std::uint32_t entry = index;
        for (int bit = 0; bit < 8; ++bit)
            entry = (entry & 1) != 0 ? entry >> 1 ^ kReflectedPolynomial : entry >> 1;
        Table()[index] = entry;
    }
    return kPreset;
}

std::uint32_t CrcAddText(std::string_view text, std::uint32_t value) {
    for (const char character : text)
        value = value >> 8 ^ Table()[(value & 0xFF) ^ static_cast<std::uint8_t>(character)];
    return value;
}

std::uint32_t CrcFinal(std::uint32_t value) {
    return value ^ 0xFFFFFFFF;
}

std::string BufferCrcText(const MemoryBuffer& buffer) {
    std::string text;
    text.reserve(2 * kEepromBytes);
    for (std::size_t address = 0; address < kEepromBytes; ++address)
        text += HexText(buffer[address]);
    std::uint32_t value = MakeCrcTable();
    value = CrcAddText(text, value);
    return HexText(CrcFinal(value));
}

}  // namespace tarnwell::mCRC32
