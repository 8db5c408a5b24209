#include "core/user/NumberModeMenu.h"

#include <utility>

namespace tarnwell {

std::string ConvertedNumber(const std::string& text, NumberMode to) {
    const NumberMode from = to == NumberMode::Hex ? NumberMode::Decimal : NumberMode::Hex;
    return NumberText(static_cast<std::uint32_t>(ParseNumber(text, from)), to);
}

NumberModeMenu::NumberModeMenu(ProgramState& state, StatusBar& statusBar, Screen& screen,
                               std::vector<NumberDisplay*> displays)
    : state_(state), statusBar_(statusBar), screen_(screen), displays_(std::move(displays)) {}

void NumberModeMenu::Select(NumberMode mode) {
    if (mode == state_.numberMode)
        return;
    state_.numberMode = mode;
    screen_.Changed(Shown::Menus);
    statusBar_.ShowMode();
    ChangeNumberDisplay(mode);
    statusBar_.ShowStatus(mode == NumberMode::Hex ? "Number Mode Changed to Hexadecimal"
                                                  : "Number Mode Changed to Decimal",
                          kResultSeconds);
}

void NumberModeMenu::ChangeNumberDisplay(NumberMode mode) {
    for (NumberDisplay* display : displays_)
        display->ConvertNumbers(mode);
}

}  // namespace tarnwell
