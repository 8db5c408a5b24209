#include "names/Destination.h"

#include <algorithm>
#include <iterator>
#include <sstream>

#include "core/Letters.h"
#include "core/Words.h"

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

std::string NameAndDescription(const NamedValue& named) {
    std::string text = named.cell ? SettingName(*named.cell) : named.name;
    return text.append(named.text.empty() ? "" : ", ").append(named.text);
}

bool IsNamed(const NamedValue& named, std::string_view name) {
    return EqualIgnoringCase(name, Squeezed(named.name)) ||
           EqualIgnoringCase(name, Squeezed(TitleOf(named))) ||
           (named.cell && EqualIgnoringCase(name, Cell(*named.cell).setting->code));
}

/// Whether each of the words begins one of its name or description.
bool IsDescribed(const NamedValue& named, const std::string& words) {
    const std::string all = " " + Squeezed(NameAndDescription(named));
    std::istringstream typed(words);
    for (std::string word; typed >> word;) {
        const std::string begun = " " + word;
        const auto same = [](char one, char other) { return Lower(one) == Lower(other); };
        if (std::search(all.begin(), all.end(), begun.begin(), begun.end(), same) == all.end())
            return false;
    }
    return !words.empty();
}

Destination PlaceOf(const NamedValue& named) {
    return {named.address, named.cell};
}

}  // namespace

/// Whatever the target is, a setting has its page.
NameList Destinations::All() const {
    NameList all = BuiltInNames();
    std::ranges::copy_if(names.Own(), std::back_inserter(all),
                         [this](const Named& named) { return named->device == target; });
    return all;
}

std::optional<Destination> Destinations::From(std::string_view text) const {
    const std::string name = Squeezed(text);
    const NameList all = All();
    for (const Named& named : all) {
        if (IsNamed(*named, name))
            return PlaceOf(*named);
    }
    if (const auto address = NumberFromText(name, mode, kEepromBytes - 1))
        return Destination{*address, std::nullopt};
    for (const Named& named : all) {
        if (IsDescribed(*named, name))
            return PlaceOf(*named);
    }
    return std::nullopt;
}

std::vector<std::string> Destinations::Names() const {
    std::vector<std::string> texts;
    for (const Named& named : All())
        texts.push_back(NameAndDescription(*named));
    return texts;
}

std::string Destinations::NoneText(std::string_view text) const {
    if (const Named named = names.Find(text); named && named->device != target)
        return named->name + " is on the " + EepromName(named->device);
    return "Neither an address from 0 to " + NumberText(kEepromBytes - 1, mode) +
           " nor a setting's name";
}

}  // namespace tarnwell
