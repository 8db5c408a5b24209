#include "names/NameBook.h"

#include <algorithm>

namespace tarnwell {

namespace {

/// What the byte at an address is of a value: itself, or a part.
std::string_view PartAt(const NamedValue& named, int address) {
    if (!named.low)
        return "";
    return address == named.address ? " high" : " low";
}

template <typename Word>
std::string Joined(const NameList& names, int address, Word word) {
    std::string text;
    for (const Named& named : names)
        text.append(text.empty() ? "" : ", ").append(word(*named)).append(PartAt(*named, address));
    return text;
}

}  // namespace

void NameBook::Open(NameLayer layer, const std::string& path) {
    layers_[static_cast<std::size_t>(layer)] =
        path.empty() ? nullptr : std::make_shared<const NamesFile>(ReadNames(path));
    Index();
}

bool NameBook::Put(NameLayer layer, NameList names) {
    if (!At(layer))
        return false;
    auto file = std::make_shared<NamesFile>(*At(layer));
    file->names = std::move(names);
    SortByPlace(file->names);
    if (!WriteNames(*file))
        return false;
    layers_[static_cast<std::size_t>(layer)] = std::move(file);
    Index();
    return true;
}

void NameBook::Restore(const NameLayers& layers) {
    notWritten_.clear();
    for (std::size_t layer = 0; layer < layers.size(); ++layer) {
        const auto& to = layers[layer];
        if (to == layers_[layer] || !to || !layers_[layer] || to->path != layers_[layer]->path)
            continue;
        layers_[layer] = to;
        if (!WriteNames(*to))
            notWritten_ = to->path;
    }
    Index();
}

ByteNames NameBook::TitlesOn(TargetDevice device) const {
    return [this, device](int address) { return Joined(At(device, address), address, TitleOf); };
}

ByteNames NameBook::NamesOn(TargetDevice device) const {
    return [this, device](int address) {
        return Joined(At(device, address), address,
                      [](const NamedValue& named) { return named.name; });
    };
}

std::string NameBook::Text(TargetDevice device, int address, std::optional<std::uint8_t> byte,
                           NumberMode mode) const {
    std::string text;
    for (const Named& named : At(device, address)) {
        text += text.empty() ? NumberText(static_cast<std::uint32_t>(address), mode) + ": " : "; ";
        text +=
            (named->cell ? SettingName(*named->cell) : named->name) + ", " + BitsText(*named, mode);
        if (byte && !named->cell && !named->low)
            text += ": " + ValueText(*named, ValueIn(*byte, *named), mode);
    }
    return text;
}

NameList NameBook::On(TargetDevice device) const {
    NameList names;
    if (device == TargetDevice::Primary)
        names = BuiltInNames();
    std::ranges::copy_if(own_, std::back_inserter(names),
                         [device](const Named& named) { return named->device == device; });
    return names;
}

Named NameBook::Changed(TargetDevice device, int address, std::optional<std::uint8_t> from,
                        std::optional<std::uint8_t> to) const {
    const NameList& names = At(device, address);
    const bool isKnown = from && to && *from != *to;
    for (const Named& named : names) {
        const bool isIts =
            isKnown ? ((*from ^ *to) & ~MaskAt(*named, address)) == 0 : names.size() == 1;
        if (isIts)
            return named->low ? nullptr : named;
    }
    return nullptr;
}

NameLayer NameBook::LayerOf(const Named& named) const {
    for (const NameLayer layer : {NameLayer::Set, NameLayer::Opened}) {
        if (At(layer) && std::ranges::find(At(layer)->names, named) != At(layer)->names.end())
            return layer;
    }
    return NameLayer::User;
}

std::vector<std::string> NameBook::Faults() const {
    std::vector<std::string> faults;
    for (const auto& file : layers_) {
        if (!file)
            continue;
        for (const std::string& fault : file->faults)
            faults.push_back(file->path + ": " + fault);
    }
    return faults;
}

void NameBook::Index() {
    index_ = {};
    own_.clear();
    for (const auto& file : layers_) {
        if (!file)
            continue;
        for (const Named& named : file->names) {
            std::string key;
            if (!index_.Clash(*named, key).empty())
                continue;
            index_.Add(named);
            own_.push_back(named);
        }
    }
    SortByPlace(own_);
}

}  // namespace tarnwell
