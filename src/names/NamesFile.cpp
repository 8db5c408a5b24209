#include "names/NamesFile.h"

#include <algorithm>
#include <filesystem>
#include <nlohmann/json.hpp>

#include "core/Words.h"
#include "core/files/AtomicFile.h"
#include "core/files/SmallFile.h"

namespace tarnwell {

namespace {

using Json = nlohmann::ordered_json;

constexpr int kFormat = 1;
constexpr const char* kNames = "names";
constexpr std::size_t kMostBytes = 16U << 20U;

/// Thrown at what cannot be a name.
struct Wrong {
    std::string key;
    std::string sentence;
};

/// The lines in which the objects of the list begin, in a text that is JSON, up to a zero byte.
std::vector<int> LinesOfNames(std::string_view text) {
    constexpr int kDeepest = 16;
    std::vector<int> lines;
    std::string_view key;  // or another text of the outermost object
    bool inList = false;
    int line = 1;
    int depth = 0;
    for (std::size_t at = 0; at < text.size(); ++at) {
        const char letter = text[at];
        if (letter == '"') {
            const std::size_t begin = at + 1;
            while (++at < text.size() && text[at] != '"')
                at += text[at] == '\\' ? 1 : 0;
            if (depth == 1)
                key = text.substr(begin, at - begin);
        } else if (letter == '{' || letter == '[') {
            if (depth == 1)
                inList = key == kNames;
            if (depth == 1 && inList)
                lines.clear();
            if (depth == 2 && inList && letter == '{')
                lines.push_back(line);
            if (++depth > kDeepest)
                throw Wrong{{}, "line " + std::to_string(line) + ": It is nested too deeply."};
        } else {
            depth -= letter == '}' || letter == ']' ? 1 : 0;
            line += letter == '\n' ? 1 : 0;
        }
    }
    return lines;
}

std::string Dumped(const Json& json) {
    return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

Json TakeOut(Json& json, const char* key) {
    const auto found = json.find(key);
    if (found == json.end())
        return {};
    Json value = std::move(*found);
    json.erase(found);
    return value;
}

int NumberIn(const Json& json, const char* key) {
    if (!json.is_number_unsigned() || json.get<std::uint64_t>() > 0xFFFF)
        throw Wrong{key, "It has to be a number from 0 to 65535."};
    return json.get<int>();
}

std::string StringIn(const Json& json, const char* key) {
    if (!json.is_null() && !json.is_string())
        throw Wrong{key, "It has to be a text."};
    return json.is_null() ? std::string() : json.get<std::string>();
}

/// Leaves both as they are if nothing is said.
void TakePair(const Json& json, const char* key, int& one, int& other) {
    if (json.is_null())
        return;
    if (!json.is_array() || json.size() != 2)
        throw Wrong{key, "It has to be two numbers, the lowest and the highest."};
    one = NumberIn(json[0], key);
    other = NumberIn(json[1], key);
}

TargetDevice DeviceIn(const Json& json) {
    for (const TargetDevice device : {TargetDevice::Primary, TargetDevice::Secondary}) {
        if (json == std::string(DeviceWord(device)))
            return device;
    }
    throw Wrong{"device", "It has to be \"primary\" or \"secondary\"."};
}

std::map<int, std::string> ValuesIn(const Json& json) {
    constexpr const char* kKey = "values";
    if (!json.is_null() && !json.is_object())
        throw Wrong{kKey, "It has to be an object of texts."};
    std::map<int, std::string> values;
    for (const auto& [key, text] : json.items()) {
        const auto value = NumberFromText(key, NumberMode::Decimal, 0xFFFF);
        if (!value)
            throw Wrong{kKey, "\"" + key + "\" is no value."};
        values[*value] = StringIn(text, kKey);
    }
    return values;
}

NamedValue NameIn(Json json) {
    NamedValue named;
    named.name = StringIn(TakeOut(json, "name"), "name");
    named.device = DeviceIn(TakeOut(json, "device"));
    named.address = NumberIn(TakeOut(json, "address"), "address");
    if (const Json low = TakeOut(json, "low"); !low.is_null())
        named.low = NumberIn(low, "low");
    TakePair(TakeOut(json, "bits"), "bits", named.bits.lowest, named.bits.highest);
    std::string key;
    named.highest = LargestIn(named);
    TakePair(TakeOut(json, "range"), "range", named.lowest, named.highest);
    named.text = StringIn(TakeOut(json, "text"), "text");
    named.values = ValuesIn(TakeOut(json, "values"));
    if (!json.empty())
        named.unknown = Dumped(json);
    if (std::string fault = FaultOf(named, key); !fault.empty())
        throw Wrong{key, std::move(fault)};
    return named;
}

void TakeNames(const Json& list, const std::vector<int>& lines, NamesFile& file) {
    NameIndex index;
    std::size_t object = 0;
    for (std::size_t number = 0; number < list.size(); ++number) {
        const Json& entry = list[number];
        const std::string place = "names[" + std::to_string(number) + "]";
        if (!entry.is_object()) {
            file.faults.push_back(place + ": It is no name.");
            file.kept.push_back(Dumped(entry));
            continue;
        }
        const int line = object < lines.size() ? lines[object] : 0;
        ++object;
        try {
            auto named = std::make_shared<const NamedValue>(NameIn(entry));
            std::string key;
            if (std::string clash = index.Clash(*named, key); !clash.empty())
                throw Wrong{key, std::move(clash)};
            index.Add(named);
            file.names.push_back(std::move(named));
        } catch (const Wrong& wrong) {
            file.faults.push_back("line " + std::to_string(line) + ", " + place + "." + wrong.key +
                                  ": " + wrong.sentence);
            file.kept.push_back(Dumped(entry));
        }
    }
}

NamesFile Refused(NamesFile file, std::string why) {
    file.usable = Usable::No;
    file.faults = {std::move(why)};
    return file;
}

/// What the library says of a text: the line and the column stand in front, its own words behind.
std::string SyntaxFault(const std::string& what) {
    const std::size_t begin = what.find("line ");
    return what.substr(begin == std::string::npos ? 0 : begin) + ".";
}

Json JsonOf(const NamedValue& named) {
    Json json{
        {"name", named.name}, {"device", DeviceWord(named.device)}, {"address", named.address}};
    if (named.low)
        json["low"] = *named.low;
    if (named.bits != NamedValue().bits)
        json["bits"] = {named.bits.lowest, named.bits.highest};
    if (named.lowest != 0 || named.highest != LargestIn(named))
        json["range"] = {named.lowest, named.highest};
    if (!named.text.empty())
        json["text"] = named.text;
    for (const auto& [value, text] : named.values)
        json["values"][std::to_string(value)] = text;
    if (!named.unknown.empty())
        json.update(Json::parse(named.unknown));
    return json;
}

}  // namespace

NamesFile NamesIn(std::string_view text, const std::string& path) {
    NamesFile file{.path = path};
    std::vector<int> lines;
    Json json;
    try {
        json = Json::parse(text);
        lines = LinesOfNames(text);
    } catch (const Json::exception& fault) {
        return Refused(std::move(file), SyntaxFault(fault.what()));
    } catch (const Wrong& wrong) {
        return Refused(std::move(file), wrong.sentence);
    }
    if (!json.is_object() || !json.contains(kNames) || !json[kNames].is_array())
        return Refused(std::move(file), "It is no file of names.");
    if (json.value("format", Json()) != kFormat)
        return Refused(std::move(file), "It is of another version of the program.");
    TakeNames(TakeOut(json, kNames), lines, file);
    json.erase("format");
    if (!json.empty())
        file.unknown = Dumped(json);
    SortByPlace(file.names);
    return file;
}

NamesFile ReadNames(const std::string& path) {
    const SmallFile read = ReadSmallFile(path, kMostBytes);
    switch (read.fault) {
        case FileFault::None:
            return NamesIn(read.content, path);
        case FileFault::Missing:
            return {.path = path};
        case FileFault::TooLarge:
            return Refused({.path = path}, "It is too large to be a file of names.");
        default:
            return Refused({.path = path}, "It cannot be read.");
    }
}

std::string TextOf(const NamesFile& file) {
    NameList names = file.names;
    SortByPlace(names);
    const std::string indent(2, ' ');
    std::string text = "{\n";
    const auto addKey = [&](const std::string& key) -> std::string& {
        return text.append(indent).append(Dumped(key)).append(":");
    };
    addKey("format").append(std::to_string(kFormat)).append(",\n");
    const Json others = file.unknown.empty() ? Json() : Json::parse(file.unknown);
    for (const auto& [key, value] : others.items())
        addKey(key).append(Dumped(value)).append(",\n");
    addKey(kNames).append("[");
    std::string before = "\n" + indent + indent;
    const auto add = [&](const std::string& entry) {
        text.append(before).append(entry);
        before = ",\n" + indent + indent;
    };
    for (const Named& named : names)
        add(Dumped(JsonOf(*named)));
    for (const std::string& entry : file.kept)
        add(entry);
    return text + "\n" + indent + "]\n}\n";
}

bool WriteNames(const NamesFile& file) {
    if (file.usable == Usable::No)
        return false;
    std::error_code failed;
    std::filesystem::create_directories(std::filesystem::path(file.path).parent_path(), failed);
    AtomicFile atomic(file.path);
    atomic.Write(TextOf(file));
    return atomic.Commit();
}

std::string FaultIn(const NameList& names, const NamedValue& named, std::string& key) {
    if (std::string fault = FaultOf(named, key); !fault.empty())
        return fault;
    NameIndex index;
    for (const Named& other : names)
        index.Add(other);
    return index.Clash(named, key);
}

NameMerge MergeOf(const NameList& mine, const NameList& theirs) {
    NameIndex index;
    for (const Named& named : mine)
        index.Add(named);
    NameMerge merge;
    for (const Named& named : theirs) {
        std::string key;
        if (index.Clash(*named, key).empty()) {
            merge.added.push_back(named);
            continue;
        }
        const Named same = index.Find(named->name);
        if (same && *same != *named)
            merge.conflicts.push_back({same, named});
        for (const Named& other : index.Meeting(*named)) {
            if (other != same)
                merge.conflicts.push_back({other, named});
        }
    }
    return merge;
}

NameList Merged(const NameList& mine, const NameMerge& merge, Keep keep) {
    NameList merged = mine;
    std::ranges::copy(merge.added, std::back_inserter(merged));
    for (const auto& [own, theirs] : merge.conflicts) {
        if (keep == Keep::Mine)
            break;
        std::erase(merged, own);
        if (std::ranges::find(merged, theirs) == merged.end())
            merged.push_back(theirs);
    }
    SortByPlace(merged);
    return merged;
}

}  // namespace tarnwell
