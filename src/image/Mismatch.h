// Bytes that a device holds and should not, as they are told to the user.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "image/MemoryBuffer.h"

namespace tarnwell {

/// A byte of a device that was read back and differs.
struct Mismatch {
    int address;
    std::uint8_t expected;
    std::uint8_t found;

    bool operator==(const Mismatch&) const = default;
};

/// Where the images of a device differ, in order.
std::vector<Mismatch> Differences(const MemoryBuffer& expected, const MemoryBuffer& found);

/// What the user calls the byte at an address; empty where it has no name.
using ByteNames = std::function<std::string(int address)>;

/// "Address 5", with the byte's name in parentheses where it has one. Numbers are in `mode`.
std::string AddressText(int address, NumberMode mode, const ByteNames& names = {});

/// How many bytes differ, then a line for each; empty if none does. Numbers are in `mode`.
std::string MismatchText(const std::vector<Mismatch>& mismatches, NumberMode mode,
                         const ByteNames& names = {});

}  // namespace tarnwell
