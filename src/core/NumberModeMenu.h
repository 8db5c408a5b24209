// The Number Mode menu: choosing a mode converts every number on the screen.
#pragma once

#include <string>
#include <vector>

#include "core/Number.h"
#include "core/StatusBar.h"

namespace tarnwell {

/// Holds numbers that are shown as text.
class NumberDisplay {
  public:
    virtual ~NumberDisplay() = default;

    /// Reads each text in the mode that is left and writes it in `mode`.
    virtual void ConvertNumbers(NumberMode mode) = 0;
};

/// `text`, written in the other mode than `to`, in the mode `to`. Empty texts become "0".
std::string ConvertedNumber(const std::string& text, NumberMode to);

class NumberModeMenu {
  public:
    /// `displays` are converted in their order.
    NumberModeMenu(ProgramState& state, StatusBar& statusBar, Screen& screen,
                   std::vector<NumberDisplay*> displays);

    /// The menu's click: does nothing if `mode` is the current one.
    void Select(NumberMode mode);

  private:
    void ChangeNumberDisplay(NumberMode mode);

    ProgramState& state_;
    StatusBar& statusBar_;
    Screen& screen_;
    std::vector<NumberDisplay*> displays_;
};

}  // namespace tarnwell
