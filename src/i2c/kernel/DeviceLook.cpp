#include "i2c/kernel/DeviceLook.h"

#include <algorithm>
#include <optional>
#include <vector>

namespace tarnwell {

namespace {

constexpr std::size_t kHalf = kEepromBytes / 2;

/// Of each half; the first part nearly always decides.
constexpr std::array<std::size_t, 2> kParts{256, kHalf};

constexpr std::size_t kRow = 256;     ///< addresses that share their high byte
constexpr std::size_t kWindow = 32;   ///< bytes compared at once
constexpr std::size_t kWindows = 16;  ///< compared with those of a larger device at most
constexpr std::size_t kHeader = 8;

constexpr std::string_view kBlank = "too many of its bytes are alike, which fits every size.";
constexpr std::string_view kOneByteAddresses = "its addresses have one byte.";
constexpr std::string_view kUnsteady = "it gives other bytes each time that it is read.";
constexpr std::string_view kSmaller =
    "it holds 4096 bytes or fewer, or the same bytes in both halves.";
constexpr std::string_view kLarger = "it holds more than 8192 bytes.";
constexpr std::string_view kEdid = "it describes a monitor (EDID).";
constexpr std::string_view kSpd = "it describes a memory module (SPD).";

using Header = std::array<std::uint8_t, kHeader>;

bool IsEdid(const Header& header) {
    return header == Header{0, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0};
}

/// JEDEC standard 21-C, annexes on serial presence detect: bytes used, (size,) kind of memory; and
/// the type of a DDR5 module's hub (JESD300-5).
bool IsSpd(const Header& header) {
    const bool old = header[0] == 0x80 && header[1] == 0x08 &&
                     (header[2] == 0x04 || header[2] == 0x07 || header[2] == 0x08);
    const bool ddr3 = header[2] == 0x0B && (header[0] & 0x0F) >= 1 && (header[0] & 0x0F) <= 3;
    const bool ddr4 = (header[2] == 0x0C || header[2] == 0x10) && (header[0] & 0xF0) == 0x20;
    const bool ddr5 = header[2] == 0x12 && header[0] == 0x30;
    const bool hub = header[0] == 0x51 && header[1] == 0x18;
    return old || ddr3 || ddr4 || ddr5 || hub;
}

std::string_view KnownHeader(std::span<const std::uint8_t, kHeader> bytes) {
    Header header{};
    std::ranges::copy(bytes, header.begin());
    return IsEdid(header) ? kEdid : IsSpd(header) ? kSpd : std::string_view();
}

bool Uniform(std::span<const std::uint8_t> bytes) {
    return std::ranges::all_of(bytes, [&](std::uint8_t byte) { return byte == bytes[0]; });
}

}  // namespace

int DeviceLook::Look(std::string& finding) {
    int error = LookByShortAddresses(finding);
    if (error == 0 && finding.empty())
        error = LookForKnownHeader(finding);
    for (const std::size_t part : kParts) {
        if (error != 0 || !finding.empty())
            return error;
        for (const std::size_t half : {std::size_t{0}, kHalf}) {
            if (error == 0)
                error = Read(half, std::span(image_).subspan(half, part));
        }
        if (error == 0)
            error = LookAtAddresses(part, finding);
        if (error == 0 && finding.empty())
            error = LookAtSize(part, finding);
        const bool undecided = finding == kBlank || finding == kSmaller;
        if (error == 0 && finding.empty())
            return 0;
        if (undecided && part != kParts.back())
            finding.clear();
    }
    return error;
}

// A 24C64 takes the only byte for the high one of an address, so it answers from elsewhere each
// time. A device that does not has to be found before it gets an address of two bytes, of which it
// would store the second where a stop follows; not every adapter that sends one says so.
int DeviceLook::LookByShortAddresses(std::string& finding) {
    std::array<std::uint8_t, kWindow> first{};
    int error = transfers_.ReadByShortAddress(device_, 0, first);
    const std::string_view known = KnownHeader(std::span(first).first<kHeader>());
    if (error != 0)
        return error;
    for (std::size_t place = kHeader; place + kHeader <= kWindow; place += kHeader) {
        Header again{};
        error = transfers_.ReadByShortAddress(device_, static_cast<std::uint8_t>(place), again);
        if (error != 0 || !std::ranges::equal(again, std::span(first).subspan(place, kHeader)))
            return error;
    }
    if (!known.empty())
        finding = known;
    else if (!Uniform(first))
        finding = kOneByteAddresses;
    return 0;
}

int DeviceLook::LookForKnownHeader(std::string& finding) {
    Header header{};
    const int error = Read(0, header);
    if (error == 0)
        finding = KnownHeader(header);
    return error;
}

int DeviceLook::LookAtAddresses(std::size_t part, std::string& finding) {
    for (const std::size_t half : {std::size_t{0}, kHalf}) {
        for (std::size_t address = half; address + kHeader <= half + part; ++address) {
            const std::size_t row = address / kRow * kRow;
            const auto expected = std::span(image_).subspan(address, kHeader);
            const auto expectedOfRow = std::span(image_).subspan(row, kHeader);
            if (address % kRow > kRow - kHeader || std::ranges::equal(expected, expectedOfRow))
                continue;
            Header there{};
            Header ofRow{};
            int error = Read(address, there);
            if (error == 0)
                error = Read(row, ofRow);
            if (error == 0 && there == ofRow)
                finding = kOneByteAddresses;
            else if (error == 0 && !(std::ranges::equal(there, expected) &&
                                     std::ranges::equal(ofRow, expectedOfRow)))
                finding = kUnsteady;
            return error;
        }
    }
    finding = kBlank;
    return 0;
}

int DeviceLook::LookAtSize(std::size_t part, std::string& finding) {
    const auto lower = std::span(image_).first(part);
    if (std::ranges::equal(lower, std::span(image_).subspan(kHalf, part))) {
        finding = kSmaller;
        return 0;
    }
    std::size_t compared = 0;
    for (std::size_t address = 0; address < part && compared < kWindows; address += kWindow) {
        const auto expected = lower.subspan(address, kWindow);
        if (Uniform(expected))
            continue;
        std::array<std::uint8_t, kWindow> beyond{};
        if (const int error = Read(kEepromBytes + address, beyond); error != 0)
            return error;
        if (!std::ranges::equal(beyond, expected)) {
            finding = kLarger;
            return 0;
        }
        ++compared;
    }
    if (compared == 0) {
        finding = kBlank;
        return 0;
    }
    std::array<std::uint8_t, 2 * kHeader> wrap{};
    const int error = Read(kEepromBytes - kHeader, wrap);
    if (error == 0 && !std::ranges::equal(std::span(wrap).last(kHeader), lower.first(kHeader)))
        finding = kLarger;
    return error;
}

}  // namespace tarnwell
