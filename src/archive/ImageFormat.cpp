#include "archive/ImageFormat.h"

#include <algorithm>
#include <array>
#include <optional>
#include <span>
#include <utility>
#include <vector>

#include "archive/ImageRecords.h"
#include "archive/SRecord.h"
#include "core/Letters.h"

namespace tarnwell {

namespace {

constexpr int kLineBytes = 16;
constexpr std::string_view kEndRecord = ":00000001FF";

/// Digits before a record's data, and in all around them.
constexpr std::size_t kDataPosition = 9;
constexpr std::size_t kOverhead = 11;

enum class RecordType : std::uint8_t {
    Data,
    EndOfFile,
    SegmentAddress,
    SegmentStart,
    LinearAddress,
    LinearStart,
};

std::string DataRecord(const MemoryBuffer& image, int start) {
    std::string record = ":" + HexText(kLineBytes, 2);
    record += HexText(static_cast<std::uint32_t>(start), 4) + "00";
    int sum = kLineBytes + start / 256 + start % 256;
    const auto* const first = image.begin() + start;
    for (const std::uint8_t byte : std::span(first, kLineBytes)) {
        record += HexText(byte, 2);
        sum += byte;
    }
    return record + HexText(static_cast<std::uint32_t>(-sum) & 0xFF, 2);
}

/// One line; nothing if it is no record, of whatever checksum.
struct HexRecord {
    RecordType type;
    std::uint32_t address;
    std::vector<std::uint8_t> data;
    bool sumIsRight;
};

std::optional<HexRecord> RecordOf(std::string_view line) {
    const bool digits = std::all_of(line.begin() + (line.empty() ? 0 : 1), line.end(),
                                    [](char digit) { return HexDigit(digit).has_value(); });
    if (!line.starts_with(':') || !digits || line.size() < kOverhead ||
        line.size() != kOverhead + 2U * ByteAt(line, 1) || ByteAt(line, 7) > 5)
        return std::nullopt;
    HexRecord record{static_cast<RecordType>(ByteAt(line, 7)),
                     ByteAt(line, 3) * 256U + ByteAt(line, 5),
                     {},
                     false};
    unsigned sum = 0;
    for (std::size_t place = 1; place < line.size(); place += 2) {
        sum += ByteAt(line, place);
        if (place >= kDataPosition && place + 2 < line.size())
            record.data.push_back(ByteAt(line, place));
    }
    record.sumIsRight = sum % 256 == 0;
    return record;
}

}  // namespace

std::string PlainText(const MemoryBuffer& image) {
    return {image.begin(), image.begin() + kEepromBytes};
}

std::string IntelHexText(const MemoryBuffer& image) {
    std::vector<std::string> lines;
    for (int start = 0; start < kEepromBytes; start += kLineBytes) {
        const auto* const line = image.begin() + start;
        if (!std::all_of(line, line + kLineBytes, [](auto byte) { return byte == 0xFF; }))
            lines.push_back(DataRecord(image, start));
    }
    lines.emplace_back(kEndRecord);
    return ArchiveText(lines);
}

LoadEnd LoadIntelHex(ArchiveFile& file, MemoryBuffer& image, int& end) {
    std::uint32_t base = 0;
    while (const auto line = file.NextLine()) {
        const auto record = RecordOf(*line);
        if (!record)
            return LoadEnd::BadRecord;
        if (!record->sumIsRight)
            return LoadEnd::WrongChecksum;
        const auto& data = record->data;
        switch (record->type) {
            case RecordType::EndOfFile:
                return LoadEnd::Complete;
            case RecordType::SegmentAddress:
            case RecordType::LinearAddress:
                if (data.size() != 2)
                    return LoadEnd::BadRecord;
                base = (data[0] * 256U + data[1])
                       << (record->type == RecordType::LinearAddress ? 16 : 4);
                break;
            case RecordType::SegmentStart:
            case RecordType::LinearStart:
                break;
            case RecordType::Data: {
                const std::uint64_t place = std::uint64_t{base} + record->address;
                if (place + data.size() > kEepromBytes)
                    return LoadEnd::BadRecord;
                std::ranges::copy(data, image.begin() + place);
                end = std::max(end, static_cast<int>(place + data.size()));
            }
        }
    }
    return file.EndOfLines();
}

ImageFormat FormatOf(std::string_view name) {
    const std::string suffix = SuffixOf(name);
    if (suffix == ".bin")
        return ImageFormat::Plain;
    return suffix == ".hex" || suffix == ".ihx" ? ImageFormat::IntelHex : ImageFormat::SRecords;
}

std::string ImageText(const MemoryBuffer& image, ImageFormat format) {
    switch (format) {
        case ImageFormat::Plain:
            return PlainText(image);
        case ImageFormat::IntelHex:
            return IntelHexText(image);
        case ImageFormat::SRecords:
            break;
    }
    return ArchiveText(ImageRecords(image));
}

}  // namespace tarnwell
