// Motorola S-records, the lines of both archive kinds.
#pragma once

#include <string>
#include <string_view>
#include <variant>

#include "archive/ArchiveFile.h"
#include "image/MemoryBuffer.h"
#include "settings/SettingCells.h"

namespace tarnwell {

inline constexpr std::string_view kHeaderType = "S0";
inline constexpr std::string_view kTerminatorType = "S9";
inline constexpr std::string_view kTerminator = "S9030000FC";

/// Where the fields of a record begin; an S1 record has a 16-bit address.
inline constexpr std::size_t kCountPosition = 2;
inline constexpr std::size_t kAddressPosition = 4;
inline constexpr std::size_t kS1DataPosition = 8;

/// The count field of an S1 record counts its address and checksum, too.
inline constexpr int kS1Overhead = 3;

/// The value of the two digits at `position`; what is missing or no hexadecimal digit reads as 0.
std::uint8_t ByteAt(std::string_view record, std::size_t position);

/// The two digits that end a record of this type, count, address and data, in upper case.
std::string RecordChecksum(std::string_view record);

/// The record of `count` bytes (at most 252) of the buffer from slot `start`.
std::string MakeS1Record(const MemoryBuffer& buffer, std::int16_t start, std::int16_t count);

/// The record of the values that a group's cells show.
std::string MakeS1Record(const SettingCells& cells, const SettingGroup& group);

/// The address behind the last byte of a record of data, at most kEepromBytes; 0 of another one.
int EndOfData(std::string_view record);

/// Stores the data of an S1, S2 or S3 record and returns the checksum that it should have, for the
/// caller to compare. BadRecord if the record is of another type, if its count leaves no room for
/// its address, or if it runs past the spare slot, up to which it is stored. TooManyAddresses if it
/// begins behind the device's last 16 bytes.
[[nodiscard]] std::variant<std::string, LoadEnd> StoreRecord(std::string_view record,
                                                             MemoryBuffer& buffer);

}  // namespace tarnwell
