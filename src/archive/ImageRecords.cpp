#include "archive/ImageRecords.h"

#include <utility>

#include "archive/SRecord.h"
#include "editor/DataGrid.h"

namespace tarnwell {

namespace {

constexpr std::string_view kErasedData = "FFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFF";

}  // namespace

std::vector<std::string> ImageRecords(const MemoryBuffer& image) {
    std::vector<std::string> lines{std::string(kImageHeader)};
    for (int row = 0; row < kGridRows; ++row) {
        std::string record =
            MakeS1Record(image, static_cast<std::int16_t>(row * kBytesPerRow), kBytesPerRow);
        if (record.compare(kS1DataPosition, kErasedData.size(), kErasedData) != 0)
            lines.push_back(std::move(record));
    }
    lines.emplace_back(kTerminator);
    return lines;
}

}  // namespace tarnwell
