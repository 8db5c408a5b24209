// Bytes that a device holds and should not, as they are told to the user.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "core/user/Number.h"
#include "i2c/EepromBus.h"

namespace tarnwell {

/// A byte of a device that was read back and differs.
struct Mismatch {
    int address;
    std::uint8_t expected;
    std::uint8_t found;

    bool operator==(const Mismatch&) const = default;
};

/// Where a device was found to hold something else, in order.
std::vector<Mismatch> Mismatches(const EepromArray& expected, const EepromArray& found);

/// What the user calls the byte at an address; empty where it has no name.
using ByteNames = std::function<std::string(int address)>;

/// "Address 5", with the byte's name in parentheses where it has one. Numbers are in `mode`.
std::string AddressText(int address, NumberMode mode, const ByteNames& names = {});

/// How many bytes differ, then a line for each; empty if none does. Numbers are in `mode`.
std::string MismatchText(const std::vector<Mismatch>& mismatches, NumberMode mode,
                         const ByteNames& names = {});

/// The same of bytes that nobody wrote to.
std::string StraysText(const std::vector<Mismatch>& strays, NumberMode mode,
                       const ByteNames& names = {});

}  // namespace tarnwell
