// Looking while one turns: each value that stands for a moment while it is edited goes to the
// EEPROM at once.
#pragma once

#include <optional>

#include "command/Command.h"

namespace tarnwell {

class LiveValue final : private Command {
  public:
    explicit LiveValue(const CommandContext& context) : Command(context) {}

    /// The cell whose value is edited until End.
    void Edit(int cell) { cell_ = cell; }

    /// From `value` on what stands on the cell is written, the time by `timer`, which lives until
    /// Pause and whose end is told by Due. The user agrees to it once a run. The bus is held until
    /// End, so that all of it is one write of the record. False if it came to nothing, of which the
    /// user was told.
    [[nodiscard]] bool Begin(int value, Timer& timer);

    /// Writes no more for now; it can begin again.
    void Pause();

    bool IsOn() const { return timer_ != nullptr; }

    /// The value has come to this, and is written if it stays.
    void Turn(int value);

    /// The timer's time is over.
    void Due();

    /// Writes and verifies the value at once, unless the EEPROM holds it; false if that failed,
    /// which ends it, and the user was told.
    [[nodiscard]] bool Write(int value);

    /// Whether a value stands that is to be written when the timer's time is over.
    bool Waits() const { return IsOn() && wanted_ && !Holds(*wanted_); }

    /// Whether the EEPROM was found to hold this value last.
    bool Holds(int value) const;

    /// Writes the whole byte of before the first value, if another one was written since.
    void TakeBack();

    /// Gives the bus back.
    void End();

  private:
    bool MayBegin();
    [[nodiscard]] bool WriteByte(std::uint8_t byte);

    int cell_ = 0;
    Timer* timer_ = nullptr;
    bool isAgreed_ = false;  ///< in this run
    std::optional<BusClaim> claim_;
    std::uint8_t first_ = 0;  ///< byte, of before
    std::uint8_t held_ = 0;   ///< byte, found last
    std::optional<int> wanted_;
};

}  // namespace tarnwell
