// The command "Compare": two sides, what tells them apart, and taking it into the memory buffer.
#pragma once

#include "archive/ImageArchive.h"
#include "archive/SettingsArchive.h"
#include "differences/Comparison.h"
#include "differences/DifferenceCount.h"
#include "image/DeviceReader.h"

namespace tarnwell {

/// What a side may be, in the order in which it is offered.
enum class Source : std::uint8_t {
    Buffer,
    Primary,
    Secondary,
    ImageArchive,
    SettingsArchive,
    Backup
};

enum class Side : std::uint8_t { Left, Right };

class Compare final : private Command {
  public:
    Compare(const CommandContext& context, DeviceReader& reader, ImageArchive& imageArchive,
            SettingsArchive& settingsArchive, SettingCells& cells, MemoryBuffer& buffer,
            BufferDisplays& displays);

    /// Both sides are empty, but that the left one is the buffer if that holds an image.
    void Begin();

    /// Makes `source` a side: reads a device, or asks for a file. False if the side is empty now,
    /// for a device, or else stays as it was; the user was told.
    bool Choose(Side side, Source source);

    /// Makes an image that the program kept a side; false if it cannot be read.
    bool ChooseBackup(Side side, const KeptImage& kept);

    /// What a side is; nothing while it is empty.
    std::optional<Source> Of(Side side) const;

    /// What differs; none while a side is empty.
    const std::vector<DifferenceRow>& Rows() const { return rows_; }

    /// "14 bytes differ: 3 settings, 11 other bytes in 2 places", or empty while a side is.
    std::string Summary() const;

    /// All bytes of a side as they were compared: what a settings archive does not have is as on
    /// the other side. Both sides are chosen.
    const MemoryBuffer& Image(Side side) const { return images_[Index(side)]; }

    /// Whose named settings count: the primary's, unless a side is the secondary EEPROM's and none
    /// is a settings archive.
    TargetDevice Device() const { return device_; }

    /// Whether exactly one side is the buffer and the other is not empty.
    bool CanTake() const;

    /// Brings the rows' values of the other side into the buffer, as a merge does; on the primary
    /// EEPROM settings then wait to be written. Asks before edits in the grid are lost.
    void Take(const std::vector<DifferenceRow>& rows);

  private:
    struct Chosen {
        std::optional<Source> source;
        MemoryBuffer image{};
        SettingDigits digits{};
        TargetDevice device = TargetDevice::Primary;  ///< of a backup
    };

    static std::size_t Index(Side side) { return static_cast<std::size_t>(side); }
    bool Load(Chosen& chosen, Source source);
    bool ReadDevice(Chosen& chosen, TargetDevice device);
    bool IsSecondary(const Chosen& chosen) const;
    MemoryBuffer Shown(const Chosen& chosen) const;
    void Refresh();
    void ShowTaken(const std::vector<DifferenceRow>& rows);

    DeviceReader& reader_;
    ImageArchive& imageArchive_;
    SettingsArchive& settingsArchive_;
    SettingCells& cells_;
    MemoryBuffer& buffer_;
    BufferDisplays& displays_;
    std::array<Chosen, 2> sides_;
    std::array<MemoryBuffer, 2> images_{};
    std::vector<DifferenceRow> rows_;
    TargetDevice device_ = TargetDevice::Primary;
};

}  // namespace tarnwell
