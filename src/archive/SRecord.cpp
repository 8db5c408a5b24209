// The text of S-records, and what they store.
#include "archive/SRecord.h"

#include <algorithm>
#include <span>
#include <vector>

namespace tarnwell {

namespace {

constexpr std::size_t kDigitsPerByte = 2;
constexpr std::uint32_t kLastStartAddress = kEepromBytes - 16;

struct DataType {
    std::string_view name;
    int addressBytes;
};
constexpr std::array kDataTypes{DataType{"S1", 2}, DataType{"S2", 3}, DataType{"S3", 4}};

std::string S1Record(std::int16_t address, std::span<const std::uint8_t> data) {
    std::string record = "S1";
    record += HexText(static_cast<std::uint32_t>(data.size()) + kS1Overhead, 2);
    record += HexText(static_cast<std::uint16_t>(address), 4);
    for (const std::uint8_t byte : data)
        record += HexText(byte, 2);
    return record + RecordChecksum(record);
}

}  // namespace

std::uint8_t ByteAt(std::string_view record, std::size_t position) {
    int value = 0;
    for (const char digit : record.substr(std::min(position, record.size()), kDigitsPerByte))
        value = value * 16 + HexDigit(digit).value_or(0);
    return static_cast<std::uint8_t>(value);
}

std::string RecordChecksum(std::string_view record) {
    const std::size_t count = ByteAt(record, kCountPosition);
    unsigned sum = 0;
    for (std::size_t byte = 0; byte < count; ++byte)
        sum += ByteAt(record, kCountPosition + byte * kDigitsPerByte);
    return HexText(~sum & 0xFF, 2);
}

std::string MakeS1Record(const MemoryBuffer& buffer, std::int16_t start, std::int16_t count) {
    return S1Record(start, std::span(buffer).subspan(static_cast<std::size_t>(start),
                                                     static_cast<std::size_t>(count)));
}

std::string MakeS1Record(const SettingCells& cells, const SettingGroup& group) {
    std::vector<std::uint8_t> values;
    for (int cell = group.firstCell; cell < group.firstCell + group.count; ++cell)
        values.push_back(cells.Value(cell).value_or(0));
    return S1Record(group.baseAddress, values);
}

namespace {

/// Where a record's data go to, and where they stand in it.
struct DataPlace {
    std::uint32_t address;
    std::uint32_t bytes;
    std::size_t position;
};

std::optional<DataPlace> PlaceOf(std::string_view record) {
    const auto* const type =
        std::ranges::find(kDataTypes, record.substr(0, kCountPosition), &DataType::name);
    if (type == kDataTypes.end())
        return std::nullopt;
    const int afterAddress = ByteAt(record, kCountPosition) - type->addressBytes;
    if (afterAddress < 1)
        return std::nullopt;
    DataPlace place{0, static_cast<std::uint32_t>(afterAddress - 1), kAddressPosition};
    for (int byte = 0; byte < type->addressBytes; ++byte, place.position += kDigitsPerByte)
        place.address = place.address * 256 + ByteAt(record, place.position);
    return place;
}

}  // namespace

int EndOfData(std::string_view record) {
    const auto place = PlaceOf(record);
    return place ? static_cast<int>(std::min<std::uint64_t>(
                       std::uint64_t{place->address} + place->bytes, kEepromBytes))
                 : 0;
}

std::variant<std::string, LoadEnd> StoreRecord(std::string_view record, MemoryBuffer& buffer) {
    const auto place = PlaceOf(record);
    if (!place)
        return LoadEnd::BadRecord;
    auto [address, dataBytes, position] = *place;
    if (address > kLastStartAddress)
        return LoadEnd::TooManyAddresses;

    for (const std::uint32_t end = address + dataBytes; address < end; ++address) {
        if (address >= buffer.size())
            return LoadEnd::BadRecord;
        buffer[address] = ByteAt(record, position);
        position += kDigitsPerByte;
    }
    return RecordChecksum(record);
}

}  // namespace tarnwell
