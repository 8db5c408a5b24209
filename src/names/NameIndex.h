// Names that stand beside each other: which one a name is, and what is at a byte.
#pragma once

#include <string_view>
#include <unordered_map>
#include <vector>

#include "names/NamedValue.h"

namespace tarnwell {

using NameList = std::vector<Named>;

/// The built-in settings, in the order of their pages.
const NameList& BuiltInNames();

class NameIndex {
  public:
    /// Of the built-in settings.
    NameIndex();

    /// Why the name cannot stand beside those that are there, in one sentence; empty if it can.
    /// `key` gets what it is wrong in, as the file calls it.
    std::string Clash(const NamedValue& named, std::string& key) const;

    /// It clashes with none that is there.
    void Add(Named named);

    /// The value of that name, in whatever case; null if there is none.
    Named Find(std::string_view name) const;

    /// What is at a byte of a device.
    const NameList& At(TargetDevice device, int address) const {
        return places_[Place(device, address)];
    }

    /// Those that take a bit of it.
    NameList Meeting(const NamedValue& named) const;

  private:
    static std::size_t Place(TargetDevice device, int address) {
        return static_cast<std::size_t>(device) * kEepromBytes + static_cast<std::size_t>(address);
    }

    std::unordered_map<std::string, Named> names_;  ///< by the name in small letters
    std::vector<NameList> places_;
};

/// By device, address and bits.
void SortByPlace(NameList& names);

}  // namespace tarnwell
