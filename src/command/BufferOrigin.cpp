#include "command/BufferOrigin.h"

#include <array>

#include <utility>

#include "core/Words.h"

namespace tarnwell {

namespace {

constexpr std::array<std::string_view, kBufferChanges> kChangeWords{
    "settings merged", "bytes transferred", "differences taken"};

}  // namespace

std::string BufferOrigin::Name() const {
    switch (source) {
        case Source::Device:
            return DeviceName(*device) + " EEPROM";
        case Source::File:
            return place.substr(place.rfind('/') + 1);
        default:
            return {};
    }
}

std::size_t BufferOrigin::ChangedIn(const EepromArray& buffer) const {
    return Mismatches(*image, buffer).size();
}

std::string BufferOrigin::Text(const EepromArray& buffer) const {
    std::string text = "Nothing read or loaded";
    if (source == Source::Device)
        text = "Read from the " + std::string(DeviceWord(*device)) + " EEPROM, " + time;
    else if (source == Source::File)
        text = Name() +
               (end == kEepromBytes ? ", whole" : ", only " + Counted(end, "byte") + " of it");
    const std::size_t changed = ChangedIn(buffer);
    if (changed == 0)
        return text;
    text += "; " + Counted(changed, "byte") + " changed since";
    std::string_view separator = ": ";
    for (std::size_t change = 0; change < kBufferChanges; ++change) {
        if (changes[change])
            text.append(std::exchange(separator, ", ")).append(kChangeWords[change]);
    }
    return text;
}

std::string BufferOrigin::ShortText(const EepromArray& buffer) const {
    const std::size_t changed = ChangedIn(buffer);
    const std::string name = Name();
    return name.empty() || changed == 0 ? name : name + ", " + std::to_string(changed) + " changed";
}

}  // namespace tarnwell
