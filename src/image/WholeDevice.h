// The commands of the "I2C Operations" menu, each on a whole EEPROM at once.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "command/Command.h"
#include "core/Calendar.h"
#include "image/DeviceReader.h"

namespace tarnwell {

/// What the whole-device commands need of the displays that follow the memory buffer.
class BufferDisplays {
  public:
    virtual ~BufferDisplays() = default;

    /// Asks before edits that are only in the data editor's grid are lost by a refill.
    virtual bool MayRefillGrid() = 0;

    virtual void FillGrid() = 0;
    virtual void ShowSettingsFromBuffer() = 0;
    virtual void ClearSettingCells() = 0;

    /// Whether a setting waits to be written or archived.
    virtual bool HasChangedSettings() const = 0;

    virtual void ClearPendingWrites() = 0;
};

class WholeDevice final : private Command {
  public:
    WholeDevice(const CommandContext& context, DeviceReader& reader, const Calendar& calendar,
                MemoryBuffer& buffer, BufferDisplays& displays);

    void ReadEntireEep();
    void WriteEntireEep();
    void FillEntireEep();
    void SelectEeprom(TargetDevice device);

  private:
    void SelectPrimary();
    void SelectSecondary();
    bool WantsSecondary();
    void ShowTarget(TargetDevice device, std::string_view status);

    /// What the status line says of writing and verifying an image.
    struct Lines {
        std::string_view write;
        std::string_view verify;
        std::string_view mismatch;
        const char* rest = "";  ///< after it was stopped
    };
    void WriteAndVerify(const MemoryBuffer& image, const Lines& lines);

    /// Of a write that was stopped: how many of the bytes written the device is found to hold.
    std::string HowFar(const MemoryBuffer& image);

    /// What differs from `image`; nothing if the read was aborted.
    std::optional<std::vector<Mismatch>> VerifyEEP(const MemoryBuffer& image,
                                                   std::string_view waitLine);

    DeviceReader& reader_;
    const Calendar& calendar_;
    MemoryBuffer& buffer_;
    BufferDisplays& displays_;
};

/// The fill value that an answer gives: one decimal number, halves rounded upward, 0 to 255;
/// blanks around it are allowed. Nothing for any other text.
std::optional<std::uint8_t> FillValue(std::string_view answer);

}  // namespace tarnwell
