#include "sets/SetStore.h"

#include <algorithm>
#include <filesystem>
#include <nlohmann/json.hpp>

#include "core/Letters.h"
#include "core/Words.h"
#include "core/files/AtomicFile.h"
#include "core/files/SmallFile.h"

namespace tarnwell {

namespace fs = std::filesystem;

namespace {

using Json = nlohmann::ordered_json;

constexpr int kFormat = 1;
constexpr std::size_t kLongestName = 60;
constexpr std::array kDevices{TargetDevice::Primary, TargetDevice::Secondary};

std::string SetPath(const std::string& folder) {
    return folder + "/set.json";
}

/// Discarded where the file cannot be used.
Json Parsed(const std::string& folder) {
    const SmallFile file = ReadSmallFile(SetPath(folder));
    Json json = Json::parse(file.content, nullptr, false);
    const bool usable = file.fault == FileFault::None && json.is_object() &&
                        json.value("format", Json()) == kFormat &&
                        json.value("name", Json()).is_string();
    return usable ? json : Json(Json::value_t::discarded);
}

std::string TextOf(const Json& json) {
    return json.is_string() ? json.get<std::string>() : std::string();
}

std::string TextOf(const Json& json, const char* key) {
    return TextOf(json.value(key, Json()));
}

/// What stands under a key for one of the devices, or null.
Json OfDevice(const Json& json, const char* key, TargetDevice device) {
    const Json both = json.value(key, Json());
    return both.is_object() ? both.value(std::string(DeviceWord(device)), Json()) : Json();
}

std::optional<TvSet> SetIn(const std::string& folder) {
    const Json json = Parsed(folder);
    if (json.is_discarded())
        return std::nullopt;
    TvSet set{folder, TextOf(json, "name"), TextOf(json, "model"), TextOf(json, "notes")};
    for (const TargetDevice device : kDevices) {
        const auto index = static_cast<std::size_t>(device);
        set.lastRead[index] = TextOf(OfDevice(json, "lastRead", device));
        for (const Json& address : OfDevice(json, "unknown", device)) {
            if (address.is_number_unsigned() && address.get<std::uint64_t>() < kEepromBytes)
                set.unknown[index].insert(address.get<int>());
        }
    }
    return set;
}

/// The name as a folder's: what a file system could refuse is a line.
std::string FolderName(const std::string& name) {
    std::string folder = name;
    std::ranges::replace_if(
        folder,
        [](char letter) {
            return std::string_view(R"(/\:*?"<>|)").find(letter) != std::string_view::npos;
        },
        '-');
    if (folder.front() == '.')
        folder.front() = '-';
    return folder;
}

/// False where the file is there and cannot be used, or cannot be written.
template <typename Edit>
bool Change(const std::string& folder, Edit edit) {
    Json json = Parsed(folder);
    std::error_code unreachable;
    if (json.is_discarded()) {
        if (fs::exists(SetPath(folder), unreachable))
            return false;
        json = {{"format", kFormat}};
    }
    edit(json);
    AtomicFile file(SetPath(folder));
    file.Write(json.dump(2, ' ', false, Json::error_handler_t::replace) + "\n");
    return file.Commit();
}

}  // namespace

SetList SetStore::All() const {
    SetList list;
    std::error_code failed;
    for (fs::directory_iterator entry(folder_, failed), end; !failed && entry != end;
         entry.increment(failed)) {
        const std::string folder = entry->path();
        std::error_code unreachable;
        if (!fs::exists(SetPath(folder), unreachable))
            continue;
        if (auto set = SetIn(folder))
            list.sets.push_back(*std::move(set));
        else
            list.damaged.push_back(SetPath(folder));
    }
    std::ranges::sort(list.sets, {},
                      [](const TvSet& set) { return std::pair(set.name, set.folder); });
    std::ranges::sort(list.damaged);
    return list;
}

std::optional<TvSet> SetStore::Find(std::string_view name) const {
    const std::vector<TvSet> sets = All().sets;
    const auto found = std::ranges::find_if(
        sets, [&](const TvSet& set) { return EqualIgnoringCase(set.name, name); });
    return found == sets.end() ? std::nullopt : std::optional(*found);
}

std::optional<TvSet> SetStore::Create(const std::string& name) const {
    std::error_code failed;
    fs::create_directories(folder_, failed);
    const std::string first = folder_ + "/" + FolderName(name);
    std::string folder = first;
    for (int number = 2; !fs::create_directory(folder, failed) && !fs::is_empty(folder, failed);
         ++number) {
        if (failed)
            return std::nullopt;
        folder = first + "-" + std::to_string(number);
    }
    const TvSet set{folder, name, {}, {}};
    return SaveTexts(set) ? std::optional(set) : std::nullopt;
}

bool SetStore::SaveTexts(const TvSet& set) {
    return Change(set.folder, [&](Json& json) {
        json["name"] = set.name;
        json["model"] = set.model;
        json["notes"] = set.notes;
    });
}

bool SetStore::SaveKnown(const TvSet& set) {
    return Change(set.folder, [&](Json& json) {
        for (const char* key : {"lastRead", "unknown"})
            json[key] = Json::object();
        for (const TargetDevice device : kDevices) {
            const auto index = static_cast<std::size_t>(device);
            const std::string word(DeviceWord(device));
            if (!set.lastRead[index].empty())
                json["lastRead"][word] = set.lastRead[index];
            if (!set.unknown[index].empty())
                json["unknown"][word] = set.unknown[index];
        }
    });
}

std::string SetStore::NameFault(std::string_view name) {
    if (name.empty() || name.front() == ' ' || name.back() == ' ')
        return "A set's name begins and ends with something else than a blank.";
    if (name.size() > kLongestName)
        return "A set's name has at most 60 letters.";
    if (std::ranges::any_of(name,
                            [](char letter) { return static_cast<unsigned char>(letter) < ' '; }))
        return "A set's name has no line breaks.";
    return {};
}

}  // namespace tarnwell
