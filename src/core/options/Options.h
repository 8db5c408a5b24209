// The options kept between runs: loaded by start-up, saved by shut-down.
#pragma once

#include "core/ProgramState.h"
#include "core/options/Registry.h"

namespace tarnwell {

/// Top and left of each window before the user moved it, in twips.
inline constexpr std::string_view kFirstPlace = "144";

/// The main window's top left corner on the screen, in twips.
struct WindowPlace {
    int top;
    int left;
};

class PlacedWindow {
  public:
    virtual ~PlacedWindow() = default;
    virtual void Place(WindowPlace place) = 0;
    virtual WindowPlace Place() const = 0;
};

/// The bus that was chosen last.
ChosenBus BusOfOptions(mRegistry& registry);

/// Reads every option into `state` and places `window`. A store without a `MainTop` that counts
/// is filled with the defaults first; any other value that is missing reads as empty.
void LoadOptions(mRegistry& registry, ProgramState& state, PlacedWindow& window);

/// Writes every option; a window above the screen's top edge is moved to it first.
void SaveOptions(mRegistry& registry, const ProgramState& state, PlacedWindow& window);

}  // namespace tarnwell
