// Where the image in the memory buffer comes from, and what has changed it since.
#pragma once

#include <bitset>
#include <optional>
#include <string>

#include "core/Shared.h"
#include "i2c/Mismatch.h"

namespace tarnwell {

/// What changes single bytes of the memory buffer.
enum class BufferChange : std::uint8_t { SettingsMerged, BytesTransferred, DifferencesTaken };
inline constexpr std::size_t kBufferChanges = 3;

struct BufferOrigin {
    enum class Source : std::uint8_t { Nothing, Device, File };

    Source source = Source::Nothing;
    std::optional<TargetDevice> device{};  ///< that was read, or that a backup was read from
    std::string place{};                   ///< of a device the port's name, of a file its path
    std::string time{};                    ///< of a reading
    int end = kEepromBytes;       ///< the bytes from here on are not from the file, which broke off
    Shared<EepromArray> image{};  ///< as it was read or loaded
    std::bitset<kBufferChanges> changes{};

    bool operator==(const BufferOrigin&) const = default;

    void Note(BufferChange change) { changes.set(static_cast<std::size_t>(change)); }

    /// "set-kitchen.mot", "Primary EEPROM", or nothing.
    std::string Name() const;

    /// How many bytes of `buffer` are not as they were read or loaded.
    std::size_t ChangedIn(const EepromArray& buffer) const;

    /// "Read from the primary EEPROM, 20:14; 3 bytes changed since: settings merged".
    std::string Text(const EepromArray& buffer) const;

    /// "set-kitchen.mot, 3 changed"; empty if nothing was read or loaded.
    std::string ShortText(const EepromArray& buffer) const;
};

}  // namespace tarnwell
