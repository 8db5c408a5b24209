#include <nlohmann/json.hpp>

#include "cli/words/Report.h"
#include "core/Pages.h"
#include "core/Words.h"

namespace tarnwell::cli {

namespace {

using Json = nlohmann::ordered_json;

std::string_view ResultOf(Status status) {
    switch (status) {
        case Status::Done:
            return "done";
        case Status::Different:
            return "different";
        case Status::WrongUse:
        case Status::NotConfirmed:
            return "refused";
        case Status::Bus:
        case Status::File:
            return "failed";
        case Status::Unverified:
            return "unverified";
        case Status::Interrupted:
            break;
    }
    return "interrupted";
}

Json SettingsOf(const Report& report) {
    Json list = Json::array();
    for (const auto& [named, value] : report.settings) {
        const std::size_t point = named->cell ? named->name.find('.') : std::string::npos;
        list.push_back({{"name", named->name.substr(0, point)},
                        {"format", point == std::string::npos ? "" : named->name.substr(point + 1)},
                        {"page", PageOf(*named)},
                        {"description", DescriptionOf(*named)},
                        {"value", value},
                        {"maximum", named->highest},
                        {"address", named->address},
                        {"bits", BitsOf(*named)}});
        if (named->cell)
            continue;
        list.back()["minimum"] = named->lowest;
        if (named->low)
            list.back()["low"] = *named->low;
        if (const auto meaning = named->values.find(value); meaning != named->values.end())
            list.back()["meaning"] = meaning->second;
    }
    return list;
}

Json DataOf(const Report& report) {
    Json list = Json::array();
    for (const AddressedByte& byte : report.data)
        list.push_back({{"address", byte.address}, {"value", byte.value}});
    for (const ByteChange& change : report.planned)
        list.push_back({{"address", change.address}, {"value", change.after}});
    return list;
}

Json MismatchesOf(const Report& report) {
    Json list = Json::array();
    for (const Mismatch& mismatch : report.mismatches) {
        list.push_back({{"address", mismatch.address},
                        {"expected", mismatch.expected},
                        {"found", mismatch.found}});
        const std::string names = report.names->NamesOn(report.settingsOf)(mismatch.address);
        if (names.empty())
            continue;
        const Named named = NamedIn(mismatch, report);
        list.back()["setting"] = named ? named->name : names;
        if (!named)
            continue;
        const bool isValue = report.mismatchesAre == Told::Values;
        const auto valueOf = [&](std::uint8_t byte) {
            return isValue ? byte : ValueIn(byte, *named);
        };
        list.back()["expectedValue"] = valueOf(mismatch.expected);
        list.back()["foundValue"] = valueOf(mismatch.found);
    }
    return list;
}

/// Numbers count from the newest.
Json BackupsOf(const std::vector<KeptImage>& backups) {
    Json list = Json::array();
    for (const KeptImage& backup : backups)
        list.push_back(
            {{"number", list.size() + 1}, {"kept", KeptWhen(backup)}, {"file", backup.path}});
    return list;
}

Json SetsOf(const SetList& sets) {
    Json list = Json::array();
    for (const TvSet& set : sets.sets) {
        list.push_back({{"name", set.name},
                        {"model", set.model},
                        {"notes", set.notes},
                        {"folder", set.folder},
                        {"lastRead", Json::object()}});
        for (const TargetDevice device : {TargetDevice::Primary, TargetDevice::Secondary}) {
            const std::string& time = set.lastRead[static_cast<std::size_t>(device)];
            if (!time.empty())
                list.back()["lastRead"][std::string(DeviceWord(device))] = time;
        }
        if (const auto event = LastWrite(HistoryPath(set)))
            list.back()["lastWritten"] = event->time;
    }
    return list;
}

Json EventsOf(const Report& report) {
    Json list = Json::array();
    for (const HistoryEvent& event : *report.events) {
        list.push_back({{"number", event.number}});
        list.back().update(Json::parse(JsonOf(event, report.names->NamesOn(event.device))));
    }
    return list;
}

std::string OnALine(const Json& object) {
    return object.dump(-1, ' ', false, Json::error_handler_t::replace) + "\n";
}

}  // namespace

std::string JsonText(const WatchedChange& change) {
    const auto& [address, before, after] = change.row.bytes.front();
    Json object{{"time", change.time}, {"device", DeviceWord(change.device)}, {"address", address}};
    object["from"] = before;
    object["to"] = after;
    if (const Named& named = change.row.named) {
        object["setting"] = named->name;
        object["fromValue"] = change.row.left;
        object["toValue"] = change.row.right;
    }
    return OnALine(object);
}

std::string JsonText(const std::string& time, TargetDevice device, const std::string& message) {
    return OnALine({{"time", time}, {"device", DeviceWord(device)}, {"message", message}});
}

std::string JsonText(const Report& report) {
    Json object = Json::object();
    if (!report.command.empty())
        object["command"] = report.command;
    if (report.device)
        object["device"] = DeviceWord(*report.device);
    for (const TargetDevice device : {TargetDevice::Primary, TargetDevice::Secondary}) {
        if (report.devices)
            object["devices"][std::string(DeviceWord(device))] =
                report.devices->at(static_cast<std::size_t>(device));
    }
    if (!report.port.empty()) {
        object["port"] = report.port;
        object["simulated"] = report.simulated;
    }
    if (!report.file.empty())
        object["file"] = report.file;
    object["result"] = ResultOf(report.status);
    if (!report.crc.empty())
        object["crc"] = report.crc;
    if (report.bytes)
        object["bytes"] = *report.bytes;
    if (!report.data.empty() || !report.planned.empty())
        object["data"] = DataOf(report);
    if (!report.doubts.empty())
        object["doubts"] = report.doubts;
    if (report.written)
        object["written"] = *report.written;
    if (!report.mismatches.empty())
        object["mismatches"] = MismatchesOf(report);
    if (!report.nameFaults.empty())
        object["nameFaults"] = report.nameFaults;
    if (report.held)
        object["names"] = Json::parse(TextOf({.names = *report.held}))["names"];
    if (!report.settings.empty())
        object["settings"] = SettingsOf(report);
    if (report.backups)
        object["backups"] = BackupsOf(*report.backups);
    if (!report.backup.empty())
        object["backup"] = report.backup;
    if (!report.set.empty())
        object["set"] = report.set;
    if (!report.looksLike.empty())
        object["looksLike"] = report.looksLike;
    if (report.sets) {
        object["sets"] = SetsOf(*report.sets);
        object["damaged"] = report.sets->damaged;
    }
    if (report.events)
        object["events"] = EventsOf(report);
    if (report.skipped > 0)
        object["skipped"] = report.skipped;
    if (!report.newer.empty())
        object["newer"] = report.newer;
    if (!report.unknown.empty())
        object["unknown"] = report.unknown;
    if (!report.message.empty())
        object["message"] = report.message;
    return OnALine(object);
}

}  // namespace tarnwell::cli
