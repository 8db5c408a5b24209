#include "settings/EditedValue.h"

#include "core/user/Number.h"

namespace tarnwell {

void EditedValue::BeginAt(int value) {
    value_ = value;
    typing_ = false;
}

void EditedValue::Become(int value, bool typing) {
    value_ = value;
    typing_ = typing;
    Turned();
}

void EditedValue::StepTo(int value) {
    Become(value, false);
}

bool EditedValue::TypeDigit(char character) {
    const auto digit = FilterKey(character, mode_);
    if (!digit)
        return false;
    const int before = typing_ ? value_ * BaseOf(mode_) : 0;
    const int value = before + *HexDigit(*digit);
    if (value > Maximum())
        TellRange();
    else
        Become(value, true);
    return true;
}

void EditedValue::EraseDigit() {
    Become(value_ / BaseOf(mode_), true);
}

std::string EditedValue::Readout(int value) const {
    return NumberText(static_cast<std::uint32_t>(value), mode_);
}

}  // namespace tarnwell
