#include "editor/Selection.h"

#include <numeric>

#include "core/Words.h"
#include "core/files/AtomicFile.h"

namespace tarnwell {

namespace {

constexpr Message kSelectionNotSaved{"The selection could not be saved.", "E R R O R",
                                     BoxStyle::Exclamation};
constexpr std::string_view kBytesFilter = "Plain Bytes (*.bin)|*.bin|All Files (*.*)|*.*";

}  // namespace

std::span<const std::uint8_t> Selection::Bytes() const {
    const auto [first, last] = grid_.Selection();
    const int count = last - first + 1;
    return std::span(grid_.Bytes())
        .subspan(static_cast<std::size_t>(first), static_cast<std::size_t>(count));
}

std::string Selection::Text(NumberMode mode) const {
    const auto [first, last] = grid_.Selection();
    std::string text;
    for (int address = first; address <= last; ++address) {
        const auto byte = grid_.Shown(GridCell::At(address)).Byte();
        text += address == first ? "" : " ";
        if (byte)
            text += mode == NumberMode::Hex ? HexText(*byte, 2) : NumberText(*byte, mode);
    }
    return text;
}

std::string Selection::Summary() const {
    const auto bytes = Bytes();
    const auto [first, last] = grid_.Selection();
    std::uint32_t crc = mCRC32::MakeCrcTable();
    for (const std::uint8_t byte : bytes)
        crc = mCRC32::CrcAddText(HexText(byte), crc);
    const auto number = [this](int address) {
        return NumberText(static_cast<std::uint32_t>(address), state_.numberMode);
    };
    const std::uint32_t sum = std::accumulate(bytes.begin(), bytes.end(), 0U) % 0x10000;
    return number(first) + " to " + number(last) + ": " + Counted(bytes.size(), "byte") + ", sum " +
           HexText(sum) + ", CRC32 " + HexText(mCRC32::CrcFinal(crc));
}

void Selection::Save() {
    const CommandScope scope(statusBar_);
    const int first = grid_.Selection().first;
    const auto path = user_.AskFile({FileRequest::Kind::Save, "Save Selection As...",
                                     "bytes-" + HexText(static_cast<std::uint32_t>(first), 4),
                                     state_.archiveFolder, kBytesFilter});
    if (!path)
        return;
    AtomicFile file(*path);
    file.Write({reinterpret_cast<const char*>(Bytes().data()), Bytes().size()});
    if (file.Commit())
        Post("Selection Saved");
    else
        user_.ShowBox(kSelectionNotSaved);
}

}  // namespace tarnwell
