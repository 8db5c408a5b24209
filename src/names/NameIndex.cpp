#include "names/NameIndex.h"

#include <algorithm>
#include <tuple>

#include "core/Letters.h"
#include "core/Words.h"

namespace tarnwell {

namespace {

std::string InSmallLetters(std::string_view name) {
    std::string small(name);
    std::ranges::transform(small, small.begin(), Lower);
    return small;
}

/// The name that names all formats of a setting.
bool IsCode(std::string_view name) {
    return std::ranges::any_of(
        kCatalog, [&](const Setting& setting) { return EqualIgnoringCase(setting.code, name); });
}

}  // namespace

NameIndex::NameIndex() : places_(std::size_t{2} * kEepromBytes) {
    for (const Named& setting : BuiltInNames())
        Add(setting);
}

const NameList& BuiltInNames() {
    static const NameList kNames = [] {
        NameList names;
        for (const int cell : CellsInOrder())
            names.push_back(std::make_shared<const NamedValue>(NamedSetting(cell)));
        return names;
    }();
    return kNames;
}

std::string NameIndex::Clash(const NamedValue& named, std::string& key) const {
    key = "name";
    const Named same = Find(named.name);
    if ((same && same->cell) || IsCode(named.name))
        return named.name + " is a setting of the television.";
    if (same)
        return named.name +
               " is already the name of another value: " + PlaceText(*same, NumberMode::Decimal) +
               ".";
    const NameList meeting = Meeting(named);
    if (meeting.empty())
        return {};
    key = "address";
    const NamedValue& first = *meeting.front();
    return "A part of it is " + TitleOf(first) +
           " already: " + PlaceText(first, NumberMode::Decimal) + ".";
}

NameList NameIndex::Meeting(const NamedValue& named) const {
    NameList meeting;
    for (const int address : {named.address, named.low.value_or(named.address)}) {
        for (const Named& other : At(named.device, address)) {
            if ((MaskAt(named, address) & MaskAt(*other, address)) != 0 &&
                std::ranges::find(meeting, other) == meeting.end())
                meeting.push_back(other);
        }
    }
    return meeting;
}

void NameIndex::Add(Named named) {
    places_[Place(named->device, named->address)].push_back(named);
    if (named->low)
        places_[Place(named->device, *named->low)].push_back(named);
    names_.emplace(InSmallLetters(named->name), std::move(named));
}

Named NameIndex::Find(std::string_view name) const {
    const auto found = names_.find(InSmallLetters(name));
    return found == names_.end() ? nullptr : found->second;
}

void SortByPlace(NameList& names) {
    std::ranges::sort(names, {}, [](const Named& named) {
        return std::tuple(named->device, named->address, named->bits.lowest);
    });
}

}  // namespace tarnwell
