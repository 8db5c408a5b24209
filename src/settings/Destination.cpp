#include "settings/Destination.h"

#include "core/Letters.h"
#include "core/Number.h"

namespace tarnwell {

namespace {

/// The words of `text`, one blank between them; a point between a code and a format is one, too.
std::string Squeezed(std::string_view text) {
    std::string words;
    for (const char character : text) {
        const bool blank = character == ' ' || character == '\t' || character == '.';
        if (!blank)
            words.push_back(character);
        else if (!words.empty() && words.back() != ' ')
            words.push_back(' ');
    }
    if (words.ends_with(' '))
        words.pop_back();
    return words;
}

bool IsNamed(int cell, std::string_view name) {
    return EqualIgnoringCase(name, SettingName(cell)) || EqualIgnoringCase(name, CellTitle(cell)) ||
           EqualIgnoringCase(name, Cell(cell).setting->code);
}

}  // namespace

std::optional<Destination> DestinationFrom(std::string_view text, NumberMode mode) {
    const std::string name = Squeezed(text);
    for (const int cell : CellsInOrder()) {
        if (IsNamed(cell, name))
            return Destination{Cell(cell).address, cell};
    }
    const auto address = NumberFromText(name, mode, kEepromBytes - 1);
    return address ? std::optional(Destination{*address, std::nullopt}) : std::nullopt;
}

std::vector<std::string> DestinationNames() {
    std::vector<std::string> names;
    for (const int cell : CellsInOrder())
        names.push_back(SettingName(cell));
    return names;
}

std::string NoDestinationText(NumberMode mode) {
    return "Neither an address from 0 to " + NumberText(kEepromBytes - 1, mode) +
           " nor a setting's name";
}

}  // namespace tarnwell
