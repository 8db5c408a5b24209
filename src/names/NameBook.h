// All names: the built-in settings, and those of the files that are open.
#pragma once

#include <array>

#include "core/user/Message.h"
#include "i2c/Mismatch.h"
#include "names/NamesFile.h"

namespace tarnwell {

/// Of names that clash the first layer's counts.
enum class NameLayer : std::uint8_t {
    Set,     ///< of the set whose record is kept
    Opened,  ///< of a file that was opened beside the others
    User,
};
inline constexpr std::size_t kNameLayers = 3;
inline constexpr std::string_view kNamesFile = "names.json";

/// The path of the file stands below it.
inline constexpr Message kNamesNotWritten{"This could not be written:", "E R R O R",
                                          BoxStyle::Exclamation};

/// The files of the layers, as they are kept by undo; null where none is open.
using NameLayers = std::array<std::shared_ptr<const NamesFile>, kNameLayers>;

class NameBook {
  public:
    /// Opens a layer's file, which need not exist, in the place of the one before; none if the path
    /// is empty.
    void Open(NameLayer layer, const std::string& path);

    /// The layer's file; null if none is open.
    const NamesFile* File(NameLayer layer) const { return At(layer).get(); }

    /// Gives a layer's file other names and writes it. False if that failed, or if no file that can
    /// be written is open, which changes nothing.
    [[nodiscard]] bool Put(NameLayer layer, NameList names);

    const NameLayers& Layers() const { return layers_; }

    /// Brings back what the layers held, and writes the files that change; which is of those that
    /// are open alone. What could not be written is as it is brought back here, and not on the
    /// disk.
    void Restore(const NameLayers& layers);

    /// The path of a file that Restore could not write; empty if it could.
    const std::string& NotWritten() const { return notWritten_; }

    /// The value of that name, in whatever case; null if there is none.
    Named Find(std::string_view name) const { return index_.Find(name); }

    /// What is at a byte of a device: a setting of the primary EEPROM, or names of one's own.
    const NameList& At(TargetDevice device, int address) const {
        return index_.At(device, address);
    }

    /// The titles at the bytes of a device, parted by commas: "480p R-YR", "AGC.Level high".
    ByteNames TitlesOn(TargetDevice device) const;

    /// The same with names as the command line has them: "R-YR.480p".
    ByteNames NamesOn(TargetDevice device) const;

    /// What is at a byte, in numbers of a mode: "2401: R-YR 480p, bits 0 to 3"; of one's own names
    /// with their values, if the byte is given. Empty if nothing has a name there.
    std::string Text(TargetDevice device, int address, std::optional<std::uint8_t> byte,
                     NumberMode mode) const;

    /// The settings and the user's names that are on a device.
    NameList On(TargetDevice device) const;

    /// The value that a change of a byte is told of: all bits that change are its own, or it is all
    /// that is known at the byte. Null if there is none, or it is of two bytes.
    Named Changed(TargetDevice device, int address, std::optional<std::uint8_t> from,
                  std::optional<std::uint8_t> to) const;

    /// The names of one's own that count, by place.
    const NameList& Own() const { return own_; }

    /// The layer of a name that counts.
    NameLayer LayerOf(const Named& named) const;

    /// What is wrong in the files, each behind the file's path.
    std::vector<std::string> Faults() const;

  private:
    const std::shared_ptr<const NamesFile>& At(NameLayer layer) const {
        return layers_[static_cast<std::size_t>(layer)];
    }
    void Index();

    NameLayers layers_{};
    NameIndex index_;
    NameList own_;
    std::string notWritten_;
};

}  // namespace tarnwell
