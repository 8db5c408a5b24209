#include "sets/HistoryEvent.h"

#include <algorithm>
#include <array>
#include <nlohmann/json.hpp>

#include "core/Words.h"

namespace tarnwell {

namespace {

using Json = nlohmann::ordered_json;

constexpr std::array<std::string_view, 3> kKinds{"write", "restore", "read"};
constexpr std::array<std::string_view, 4> kEnds{"verified", "not verified", "interrupted",
                                                "failed"};
constexpr std::array<std::string_view, 2> kDeviceWords{DeviceWord(TargetDevice::Primary),
                                                       DeviceWord(TargetDevice::Secondary)};

Json NumberOrNull(std::optional<std::uint8_t> value) {
    return value ? Json(*value) : Json();
}

Json JsonOf(const EventByte& byte, const ByteNames& names) {
    Json json{{"address", byte.address}};
    if (std::string name = names ? names(byte.address) : ""; !name.empty())
        json["setting"] = std::move(name);
    json["from"] = NumberOrNull(byte.from);
    json["to"] = NumberOrNull(byte.to);
    json["held"] = NumberOrNull(byte.held);
    return json;
}

/// Thrown at what is no event.
struct Unfit {};

template <typename Word>
Word WordIn(const Json& json, const char* key, const auto& words) {
    const auto* const found = std::ranges::find(words, json.at(key).get_ref<const std::string&>());
    if (found == words.end())
        throw Unfit{};
    return static_cast<Word>(found - words.begin());
}

int NumberIn(const Json& json, int most) {
    if (!json.is_number_unsigned() || json.get<std::uint64_t>() > static_cast<unsigned>(most))
        throw Unfit{};
    return json.get<int>();
}

std::optional<std::uint8_t> ByteIn(const Json& json, const char* key) {
    const Json& value = json.at(key);
    return value.is_null() ? std::nullopt
                           : std::optional(static_cast<std::uint8_t>(NumberIn(value, 255)));
}

std::string TextIn(const Json& json, const char* key) {
    const auto found = json.find(key);
    return found == json.end() ? std::string() : found->get<std::string>();
}

HistoryEvent EventIn(const Json& json) {
    HistoryEvent event;
    event.time = json.at("time");
    event.kind = WordIn<EventKind>(json, "event", kKinds);
    event.command = TextIn(json, "command");
    event.image = TextIn(json, "image");
    event.device = WordIn<TargetDevice>(json, "device", kDeviceWords);
    event.port = TextIn(json, "port");
    event.version = TextIn(json, "version");
    event.crc = TextIn(json, "crc");
    if (event.kind != EventKind::Read) {
        event.end = WordIn<WriteEnd>(json, "end", kEnds);
        event.written = NumberIn(json.at("written"), kEepromBytes);
    }
    const Json& bytes = json.at("bytes");
    event.bytes.reserve(bytes.size());
    for (const Json& byte : bytes)
        event.bytes.push_back({NumberIn(byte.at("address"), kEepromBytes - 1), ByteIn(byte, "from"),
                               ByteIn(byte, "to"), ByteIn(byte, "held")});
    return event;
}

}  // namespace

std::string_view WordOf(WriteEnd end) {
    return kEnds[static_cast<std::size_t>(end)];
}

std::string JsonOf(const HistoryEvent& event, const ByteNames& names) {
    Json json{{"time", event.time}, {"event", kKinds[static_cast<std::size_t>(event.kind)]}};
    if (!event.command.empty())
        json["command"] = event.command;
    if (!event.image.empty())
        json["image"] = event.image;
    json["device"] = DeviceWord(event.device);
    json["port"] = event.port;
    json["version"] = event.version;
    if (event.kind == EventKind::Read) {
        json["crc"] = event.crc;
        json["differing"] = event.bytes.size();
    } else {
        json["end"] = WordOf(event.end);
        json["written"] = event.written;
    }
    json["bytes"] = Json::array();
    for (const EventByte& byte : event.bytes)
        json["bytes"].push_back(JsonOf(byte, names));
    return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

std::optional<HistoryEvent> EventOf(std::string_view line) {
    try {
        return EventIn(Json::parse(line));
    } catch (const Json::exception&) {
        return std::nullopt;
    } catch (const Unfit&) {
        return std::nullopt;
    }
}

}  // namespace tarnwell
