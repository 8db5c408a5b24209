// The parallel ports that the program knows and those that the kernel lists.
#pragma once

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

#include "i2c/parallel/PinMapping.h"

namespace tarnwell {

/// How long a claim waits for another program; leaves time to tell who that is within a second.
inline constexpr std::chrono::milliseconds kClaimPatience{950};

/// True for the base addresses of LPT1, LPT2 and LPT3.
constexpr bool IsPortAddress(std::uint16_t address) {
    return std::ranges::find(kPortChoices, address, &PortChoice::address) != kPortChoices.end();
}

/// True if the kernel has at least one parallel port of any address.
bool AnyParport(const std::string& procFolder);

/// The kernel's name (such as "parport0") of the port at `baseAddress`.
std::optional<std::string> FindParport(const std::string& procFolder, std::uint16_t baseAddress);

/// True if /proc/ioports has a parallel port that covers data and status register.
bool IoPortsListParport(const std::string& procFolder, std::uint16_t baseAddress);

/// The lines that tell the user what is wrong and what to do.
std::string NoPortLine(std::uint16_t baseAddress);
std::string NoPortAtAllLine();
std::string ErrorLine(const std::string& path, int error, const std::string& advice);

/// Names the program that has the file `path` open, or else the kernel's driver that has the
/// parallel port of that name, where /proc shows it.
std::string InUseLine(const std::string& what, const std::string& procFolder,
                      const std::string& path);

}  // namespace tarnwell
