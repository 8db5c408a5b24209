// The Number Mode menu: choosing a mode converts every number on the screen.
#pragma once

#include <string>
#include <vector>

#include "core/user/Number.h"
#include "core/user/StatusBar.h"

namespace tarnwell {

/// Shows numbers. One that reads as it was entered is a text of the mode that is left.
class NumberDisplay {
  public:
    virtual ~NumberDisplay() = default;

    /// Shows each number in `mode`, and 0 where there was none.
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
