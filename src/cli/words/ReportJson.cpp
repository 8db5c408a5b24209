#include <nlohmann/json.hpp>

#include "cli/words/Report.h"
#include "core/Pages.h"

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
    for (const auto [cell, value] : report.settings) {
        const CellInfo& info = Cell(cell);
        const std::string name = CellName(cell);
        const std::size_t point = name.find('.');
        list.push_back({{"name", info.setting->code},
                        {"format", point == std::string::npos ? "" : name.substr(point + 1)},
                        {"page", Info(info.setting->page).caption},
                        {"description", DescriptionOf(cell)},
                        {"value", value},
                        {"maximum", info.setting->maximum},
                        {"address", info.address},
                        {"bits", BitsOf(cell)}});
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
        if (const auto name = SettingAt(mismatch.address))
            list.back()["setting"] = *name;
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

}  // namespace

std::string JsonText(const Report& report) {
    Json object = Json::object();
    if (report.command)
        object["command"] = Info(*report.command).name;
    if (report.device)
        object["device"] = *report.device == TargetDevice::Primary ? "primary" : "secondary";
    if (report.devices)
        object["devices"] = {{"primary", (*report.devices)[0]},
                             {"secondary", (*report.devices)[1]}};
    if (!report.port.empty()) {
        object["port"] = report.port;
        object["simulated"] = report.simulated;
    }
    object["result"] = ResultOf(report.status);
    if (!report.crc.empty())
        object["crc"] = report.crc;
    if (report.bytes)
        object["bytes"] = *report.bytes;
    if (!report.data.empty() || !report.planned.empty())
        object["data"] = DataOf(report);
    if (report.written)
        object["written"] = *report.written;
    if (!report.mismatches.empty())
        object["mismatches"] = MismatchesOf(report);
    if (!report.settings.empty())
        object["settings"] = SettingsOf(report);
    if (report.backups)
        object["backups"] = BackupsOf(*report.backups);
    if (!report.backup.empty())
        object["backup"] = report.backup;
    if (!report.message.empty())
        object["message"] = report.message;
    return object.dump(-1, ' ', false, Json::error_handler_t::replace) + "\n";
}

}  // namespace tarnwell::cli
