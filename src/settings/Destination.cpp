#include "settings/Destination.h"

#include <sstream>

#include "core/Letters.h"
#include "core/user/Number.h"

namespace tarnwell {

namespace {

/// The words of `text`, one blank between them; a point between a code and a format is one, too,
/// and so is a comma in front of a description.
std::string Squeezed(std::string_view text) {
    std::string words;
    for (const char character : text) {
        const bool blank = std::string_view(" \t.,").find(character) != std::string_view::npos;
        if (!blank)
            words.push_back(character);
        else if (!words.empty() && words.back() != ' ')
            words.push_back(' ');
    }
    if (words.ends_with(' '))
        words.pop_back();
    return words;
}

std::string NameAndDescription(int cell) {
    const std::string_view description = Cell(cell).setting->description;
    return SettingName(cell).append(description.empty() ? "" : ", ").append(description);
}

bool IsNamed(int cell, std::string_view name) {
    return EqualIgnoringCase(name, SettingName(cell)) || EqualIgnoringCase(name, CellTitle(cell)) ||
           EqualIgnoringCase(name, Cell(cell).setting->code);
}

/// Whether each of the words begins one of the cell's name or description.
bool IsDescribed(int cell, const std::string& words) {
    const std::string all = " " + Squeezed(NameAndDescription(cell));
    std::istringstream typed(words);
    for (std::string word; typed >> word;) {
        const std::string begun = " " + word;
        const auto same = [](char one, char other) { return Lower(one) == Lower(other); };
        if (std::search(all.begin(), all.end(), begun.begin(), begun.end(), same) == all.end())
            return false;
    }
    return !words.empty();
}

}  // namespace

std::optional<Destination> DestinationFrom(std::string_view text, NumberMode mode) {
    const std::string name = Squeezed(text);
    for (const int cell : CellsInOrder()) {
        if (IsNamed(cell, name))
            return Destination{Cell(cell).address, cell};
    }
    if (const auto address = NumberFromText(name, mode, kEepromBytes - 1))
        return Destination{*address, std::nullopt};
    for (const int cell : CellsInOrder()) {
        if (IsDescribed(cell, name))
            return Destination{Cell(cell).address, cell};
    }
    return std::nullopt;
}

std::vector<std::string> DestinationNames() {
    std::vector<std::string> names;
    for (const int cell : CellsInOrder())
        names.push_back(NameAndDescription(cell));
    return names;
}

std::string NoDestinationText(NumberMode mode) {
    return "Neither an address from 0 to " + NumberText(kEepromBytes - 1, mode) +
           " nor a setting's name";
}

}  // namespace tarnwell
