// Editing the pin options: one selection a group, and no pin for two lines.
#pragma once

#include <array>
#include <optional>

#include "i2c/parallel/PinGroups.h"
#include "i2c/parallel/mI2Ccode.h"

namespace tarnwell {

/// No group has a selection before the first Load.
class PortOptions {
  public:
    PortOptions(ProgramState& state, StatusBar& statusBar, User& user, mI2Ccode& i2c);

    /// Starts from the program state. A pin that would conflict leaves its group without a
    /// selection.
    void Load();

    /// The index of the group's selected option, or nothing.
    std::optional<int> Selected(PinPosition position) const;

    /// Selects an option. If the other line has this pin, the group is left without a selection
    /// and the box that says so is returned.
    [[nodiscard]] std::optional<Message> Select(PinPosition position, int index);

    enum class Accepted : std::uint8_t { Yes, No };

    /// Stores the selections and puts them into effect. If a group has no selection, says which
    /// one and changes nothing.
    [[nodiscard]] Accepted Accept();

    /// Stores the default selections.
    void Defaults();
    void Cancel();
    void Help();

    void Show(const Message& message);

  private:
    std::optional<int>& At(PinPosition position);
    void Store();

    ProgramState& state_;
    StatusBar& statusBar_;
    User& user_;
    mI2Ccode& i2c_;
    std::array<std::optional<int>, kPinPositions> selected_;
};

}  // namespace tarnwell
