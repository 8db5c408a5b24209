// The command "Compare": two sides, what tells them apart, and bringing it to the memory buffer or
// to a device.
#pragma once

#include "archive/ImageArchive.h"
#include "archive/SettingsArchive.h"
#include "differences/DifferenceRows.h"
#include "differences/WriteDifferencesCommand.h"

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

/// Where a side may come from, besides the buffer.
struct CompareSources {
    DeviceReader& reader;
    ImageArchive& images;
    SettingsArchive& settings;
    WriteDifferencesCommand& writing;
};

class CompareCommand final : private Command {
  public:
    CompareCommand(const CommandContext& context, const CompareSources& sources,
                   const NameBook& book, SettingCells& cells, MemoryBuffer& buffer,
                   BufferDisplays& displays);

    /// Both sides are empty, but that the left one is the buffer if that holds an image.
    void Begin();

    /// Makes `source` a side: reads a device, or asks for a file. False if the side is empty now,
    /// for a device, or else stays as it was; the user was told.
    bool Choose(Side side, Source source);

    /// Makes a file that was used before, an image or a settings archive, a side; if that fails, it
    /// stays as it was, and the user was told.
    bool ChooseFile(Side side, Source source, const std::string& path);

    /// The path of a side that is a file; empty of any other.
    const std::string& FileOf(Side side) const { return sides_[Index(side)].path; }

    /// Makes an image that the program kept a side; false if it cannot be read.
    bool ChooseBackup(Side side, const KeptImage& kept);

    /// What a side is; nothing while it is empty.
    std::optional<Source> Of(Side side) const;

    /// What differs, by the names that there are; none while a side is empty.
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

    /// Whether exactly one side is a device and the other is not empty.
    bool HasOneDevice() const;

    /// The same, but for a settings archive beside the secondary EEPROM, which has no settings.
    bool CanWrite() const;

    /// Writes the rows' values of the other side to the device, as a write of differences; other
    /// bits stay as they are. The device's side is then what was read of it last, or empty if that
    /// is not known.
    void Write(const std::vector<DifferenceRow>& rows);

    /// Whether a side is a device.
    bool HasDevice() const;

    /// Finds what differs by the names that there are now.
    void Refresh();

    /// The device that is a side, the left one where both are, and what was read of it last.
    std::optional<TargetDevice> DeviceSide() const;
    const MemoryBuffer& DeviceHeld() const { return sides_[Index(SideOfDevice())].image; }

    /// That device was read to hold `image` meanwhile.
    void NoteHeld(const MemoryBuffer& image);

    /// Reads each side that is a device anew, which stays as it was read before if that fails. What
    /// changed from one reading to the other.
    std::vector<DifferenceRow> ReadAgain();

  private:
    struct Chosen {
        std::optional<Source> source;
        MemoryBuffer image{};
        SettingDigits digits{};
        TargetDevice device = TargetDevice::Primary;  ///< of a backup
        std::string path{};                           ///< of a file
    };

    static std::size_t Index(Side side) { return static_cast<std::size_t>(side); }
    Side SideOfDevice() const;
    bool Load(Chosen& chosen, Source source);
    bool LoadFile(Chosen& chosen, Source source, const std::string& path);
    bool ReadDevice(Chosen& chosen, TargetDevice device);
    bool MayWrite(TargetDevice to, const Chosen& from);
    std::optional<TargetDevice> OriginOf(const Chosen& chosen) const;
    bool IsSecondary(const Chosen& chosen) const;
    MemoryBuffer Shown(const Chosen& chosen) const;
    void ShowTaken(const std::vector<DifferenceRow>& rows);
    void ShowTaken(int cell);

    const CompareSources from_;
    const NameBook& book_;
    SettingCells& cells_;
    MemoryBuffer& buffer_;
    BufferDisplays& displays_;
    std::array<Chosen, 2> sides_;
    std::array<MemoryBuffer, 2> images_{};
    std::vector<DifferenceRow> rows_;
    TargetDevice device_ = TargetDevice::Primary;
};

}  // namespace tarnwell
