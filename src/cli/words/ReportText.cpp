#include <cstdio>
#include <cstring>

#include "cli/words/Report.h"
#include "core/Pages.h"

namespace tarnwell::cli {

namespace {

template <typename... Values>
std::string Format(const char* format, Values... values) {
    char text[256];
    std::snprintf(text, sizeof text, format, values...);
    return text;
}

std::string Place(int address) {
    const auto name = SettingAt(address);
    return "Address " + std::to_string(address) + (name ? " (" + *name + ")" : "");
}

std::string Line(const ByteChange& change) {
    return "  " + Place(change.address) + ": " + std::to_string(change.before) + " becomes " +
           std::to_string(change.after) + "\n";
}

std::string DeviceName(TargetDevice device) {
    return device == TargetDevice::Primary ? "Primary EEProm" : "Secondary EEProm";
}

std::string ByteCount(const std::optional<int>& count) {
    return count ? std::to_string(*count) + (*count == 1 ? " byte" : " bytes") : "";
}

std::string SettingsTable(const Report& report) {
    if (report.settings.empty())
        return {};
    std::string text = "Name         Value  Range  Address  Bits  Page     Description\n";
    for (const auto [cell, value] : report.settings) {
        const CellInfo& info = Cell(cell);
        text += Format("%-12s %5d  0-%-3d  %7d  %-4s  %-8s %s\n", CellName(cell).c_str(), value,
                       info.setting->maximum, info.address, BitsOf(cell).c_str(),
                       std::string(Info(info.setting->page).caption).c_str(),
                       std::string(DescriptionOf(cell)).c_str());
    }
    return text;
}

std::string DataTable(const Report& report) {
    std::string text;
    for (const AddressedByte& byte : report.data) {
        const std::string name = SettingAt(byte.address).value_or("");
        text += Format("%4d 0x%04X  %3d 0x%02X%s%s\n", byte.address, unsigned(byte.address),
                       byte.value, unsigned(byte.value), name.empty() ? "" : "  ", name.c_str());
    }
    return text;
}

std::string MismatchList(const Report& report) {
    std::string text;
    for (const Mismatch& mismatch : report.mismatches)
        text += Place(mismatch.address) + ": expected " + std::to_string(mismatch.expected) +
                ", found " + std::to_string(mismatch.found) + "\n";
    return text;
}

std::string BackupTable(const Report& report) {
    std::string text;
    int number = 0;
    for (const KeptImage& backup : report.backups.value_or(std::vector<KeptImage>()))
        text += "backup:" + std::to_string(++number) + "  " + KeptWhen(backup) + "  " +
                backup.path + "\n";
    return text;
}

}  // namespace

std::string KeptWhen(const KeptImage& backup) {
    std::string text = backup.timestamp;  // 20261124-195230
    for (const auto& [place, sign] : {std::pair{13, ':'}, {11, ':'}, {6, '-'}, {4, '-'}})
        text.insert(static_cast<std::size_t>(place), 1, sign);
    text[10] = ' ';
    return text;
}

void Report::Interrupt(int bySignal, const std::string& howFar) {
    signal = bySignal;
    End(Status::Interrupted, std::string("Stopped by SIG") + sigabbrev_np(signal) + "." + howFar);
}

std::optional<std::string> SettingAt(int address) {
    const auto cell = CellAtAddress(address);
    return cell ? std::optional(CellName(*cell)) : std::nullopt;
}

std::string BitsOf(int cell) {
    return "7-" + std::to_string(Cell(cell).setting->shift);
}

std::string_view DescriptionOf(int cell) {
    const Setting* setting = Cell(cell).setting;
    while (setting->description.empty() && setting != kCatalog.data())
        --setting;
    return setting->description;
}

std::string ChangeLines(const std::vector<ByteChange>& changes, std::size_t most) {
    const bool whole = changes.size() == kEepromBytes;
    std::string text;
    std::size_t lines = 0;
    std::size_t differing = 0;
    for (const ByteChange& change : changes) {
        const bool differs = change.before != change.after;
        differing += differs ? 1 : 0;
        if (whole && !differs)
            continue;
        if (++lines <= most)
            text += Line(change);
    }
    if (lines > most)
        text += "  and " + std::to_string(lines - most) + " more\n";
    if (whole)
        text = "  All 8192 bytes, of which " + std::to_string(differing) + " change\n" + text;
    return text;
}

std::string PlainText(const Report& report) {
    std::string text;
    const auto add = [&](std::string_view what, const std::string& value) {
        if (!value.empty())
            text.append(what).append(": ").append(value).append("\n");
    };
    if (!report.IsError() && !report.message.empty())
        text += report.message + "\n";
    if (report.device)
        add("Device", DeviceName(*report.device) + (report.simulated ? ", simulated" : ""));
    for (const auto device : {TargetDevice::Primary, TargetDevice::Secondary}) {
        if (report.devices)
            add(DeviceName(device), report.devices->at(static_cast<std::size_t>(device))
                                        ? "answers"
                                        : "does not answer");
    }
    add("Read", ByteCount(report.bytes));
    add("Written", ByteCount(report.written));
    add("CRC-32", report.crc);
    add("Backup", report.backup);
    text += ChangeLines(report.planned, report.planned.size());
    return text + BackupTable(report) + DataTable(report) + MismatchList(report) +
           SettingsTable(report);
}

}  // namespace tarnwell::cli
