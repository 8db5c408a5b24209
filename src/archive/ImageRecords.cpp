#include "archive/ImageRecords.h"

#include <algorithm>
#include <utility>

#include "archive/ImageFormat.h"
#include "archive/SRecord.h"

namespace tarnwell {

namespace {

constexpr std::int16_t kRecordBytes = 16;
constexpr std::string_view kErasedData = "FFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFF";
static_assert(kErasedData.size() == 2 * kRecordBytes);
static_assert(kEepromBytes % kRecordBytes == 0);

}  // namespace

std::vector<std::string> ImageRecords(const MemoryBuffer& image) {
    std::vector<std::string> lines{std::string(kImageHeader)};
    for (int start = 0; start < kEepromBytes; start += kRecordBytes) {
        std::string record = MakeS1Record(image, static_cast<std::int16_t>(start), kRecordBytes);
        if (record.compare(kS1DataPosition, kErasedData.size(), kErasedData) != 0)
            lines.push_back(std::move(record));
    }
    lines.emplace_back(kTerminator);
    return lines;
}

LoadEnd LoadImageRecords(ArchiveFile& file, MemoryBuffer& image) {
    int end = 0;
    return LoadImageRecords(file, image, end);
}

LoadEnd LoadImageRecords(ArchiveFile& file, MemoryBuffer& image, int& end) {
    image.fill(0xFF);
    end = 0;
    if (file.Format() == ImageFormat::IntelHex)
        return LoadIntelHex(file, image, end);
    if (file.Format() == ImageFormat::Plain) {
        std::ranges::copy(file.Content(), image.begin());
        end = static_cast<int>(file.Content().size());
        return LoadEnd::Complete;
    }
    while (const auto record = file.NextLine()) {
        if (record->starts_with(kTerminatorType))
            return LoadEnd::Complete;
        const auto stored = StoreRecord(*record, image);
        if (const auto* const bad = std::get_if<LoadEnd>(&stored))
            return *bad;
        end = std::max(end, EndOfData(*record));
        if (!record->ends_with(std::get<std::string>(stored)))
            return LoadEnd::WrongChecksum;
    }
    return file.EndOfLines();
}

std::optional<MemoryBuffer> LoadOwnImage(const std::string& path) {
    ArchiveFile file(path);
    MemoryBuffer image{};
    if (file.Kind() != ArchiveKind::Image || LoadImageRecords(file, image) != LoadEnd::Complete)
        return std::nullopt;
    return image;
}

}  // namespace tarnwell
