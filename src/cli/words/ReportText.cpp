#include <algorithm>
#include <cstdio>
#include <cstring>

#include "cli/words/Report.h"
#include "core/Pages.h"
#include "core/Words.h"
#include "sets/HistoryTexts.h"

namespace tarnwell::cli {

namespace {

template <typename... Values>
std::string Format(const char* format, Values... values) {
    char text[256];
    std::snprintf(text, sizeof text, format, values...);
    return text;
}

std::string Place(int address, std::optional<int> cell) {
    return "Address " + std::to_string(address) + (cell ? " (" + CellName(*cell) + ")" : "");
}

std::string ByteCount(const std::optional<int>& count) {
    return count ? Counted(*count, "byte") : "";
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
        const auto cell = CellOn(report.settingsOf, byte.address);
        text +=
            Format("%4d 0x%04X  %3d 0x%02X%s\n", byte.address, unsigned(byte.address), byte.value,
                   unsigned(byte.value), cell ? ("  " + CellName(*cell)).c_str() : "");
    }
    return text;
}

std::string MismatchLine(const std::string& place, int expected, int found) {
    return place + ": expected " + std::to_string(expected) + ", found " + std::to_string(found) +
           "\n";
}

/// Where values are told, bits that belong to no setting get a line of their own, as in a list of
/// the window.
std::string MismatchList(const Report& report) {
    std::string text;
    for (const auto& [address, expected, found] : report.mismatches) {
        const auto cell = CellOn(report.settingsOf, address);
        const bool hasValues = cell && report.mismatchesAre == Told::BytesAndValues;
        const int shift = hasValues ? Cell(*cell).setting->shift : 0;
        if (FieldOf(expected, shift) != FieldOf(found, shift))
            text +=
                MismatchLine(Place(address, cell), FieldOf(expected, shift), FieldOf(found, shift));
        if (((expected ^ found) & ((1 << shift) - 1)) != 0)
            text += MismatchLine(Place(address, {}), expected, found);
    }
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

/// "2026-11-24 19:52:30".
std::string WhenOf(std::string time) {
    return EventWhen({.time = std::move(time)});
}

std::string SetTable(const Report& report) {
    std::string text;
    if (!report.sets)
        return text;
    for (const TvSet& set : report.sets->sets) {
        text += set.name + (set.model.empty() ? "" : " (" + set.model + ")");
        const std::string& read = std::max(set.lastRead[0], set.lastRead[1]);
        text += read.empty() ? "" : ", last read " + WhenOf(read);
        const auto written = LastWrite(HistoryPath(set));
        text += written ? ", last written " + WhenOf(written->time) : "";
        text += "\n";
    }
    for (const std::string& path : report.sets->damaged)
        text += path + " is damaged, or of a newer program: it is left as it is.\n";
    return text;
}

std::string EventTable(const Report& report) {
    std::string text;
    if (!report.events)
        return text;
    for (const HistoryEvent& event : *report.events) {
        text += Format("%4d", event.number) + "  " + EventWhen(event) + "  ";
        text += event.kind == EventKind::Read ? "read" : event.command;
        if (!event.image.empty())
            text += (event.kind == EventKind::Read ? ", kept as " : " ") + event.image;
        text.append(", ").append(DeviceWord(event.device));
        if (event.kind == EventKind::Read && event.image.empty())
            text += ", " + Counted(event.bytes.size(), "byte", "was", "were") + " otherwise";
        else if (event.kind != EventKind::Read)
            text.append(", ")
                .append(WordOf(event.end))
                .append(", ")
                .append(Counted(event.written, "byte"));
        text += "\n";
        for (const EventByte& byte : event.bytes)
            text += "      " +
                    ChangeText(byte, event.device, NumberMode::Decimal,
                               [&](int address) {
                                   const auto cell = CellOn(event.device, address);
                                   return cell ? CellName(*cell) : std::string();
                               }) +
                    "\n";
    }
    if (report.skipped > 0)
        text += Counted(report.skipped, "line") +
                " of the history cannot be read: cut short, or damaged.\n";
    return text;
}

std::string LeftOut(const Report& report) {
    std::string text;
    for (const int address : report.newer)
        text += Place(address, CellOn(report.settingsOf, address)) + " was written again since.\n";
    for (const int address : report.unknown)
        text += Place(address, CellOn(report.settingsOf, address)) +
                ": what it held before is not known.\n";
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

std::string BitsOf(int cell) {
    const auto [lowest, highest] = BitsOf(*Cell(cell).setting);
    return std::to_string(highest) + "-" + std::to_string(lowest);
}

std::string_view DescriptionOf(int cell) {
    const Setting* setting = Cell(cell).setting;
    while (setting->description.empty() && setting != kCatalog.data())
        --setting;
    return setting->description;
}

namespace {

/// Whether the bits below the setting's stay.
bool IsOfSettingAlone(const ByteChange& change, int cell) {
    return WithValue(change.before, cell, ValueIn(change.after, cell)) == change.after;
}

}  // namespace

std::string ChangeLines(const std::vector<ByteChange>& changes, TargetDevice device,
                        std::size_t most) {
    const bool whole = changes.size() == kEepromBytes;
    std::string text;
    std::size_t lines = 0;
    std::size_t differing = 0;
    for (const ByteChange& change : changes) {
        const bool differs = change.before != change.after;
        differing += differs ? 1 : 0;
        if (whole && !differs)
            continue;
        if (++lines > most)
            continue;
        const auto cell = CellOn(device, change.address);
        const int shift = cell && IsOfSettingAlone(change, *cell) ? Cell(*cell).setting->shift : 0;
        text += "  " + Place(change.address, cell) + ": " +
                std::to_string(FieldOf(change.before, shift)) + " becomes " +
                std::to_string(FieldOf(change.after, shift)) + "\n";
    }
    if (lines > most)
        text += "  and " + std::to_string(lines - most) + " more\n";
    if (whole)
        text = "  All 8192 bytes, of which " + std::to_string(differing) + " change\n" + text;
    return text;
}

std::string PlainText(const WatchedChange& change) {
    const auto& [address, before, after] = change.row.bytes.front();
    const auto& cell = change.row.cell;
    const int shift = cell ? Cell(*cell).setting->shift : 0;
    return WhenOf(change.time) + "  " + Place(address, cell) + ": " +
           std::to_string(FieldOf(before, shift)) + " becomes " +
           std::to_string(FieldOf(after, shift)) + "\n";
}

std::string PlainText(const Report& report) {
    std::string text;
    const auto add = [&](std::string_view what, const std::string& value) {
        if (!value.empty())
            text.append(what).append(": ").append(value).append("\n");
    };
    if (!report.IsError() && !report.message.empty())
        text += report.message + "\n";
    add("Set", report.set);
    if (!report.looksLike.empty())
        text += report.looksLike + "\n";
    if (report.device)
        add("Device", EepromName(*report.device) + (report.simulated ? ", simulated" : ""));
    for (const auto device : {TargetDevice::Primary, TargetDevice::Secondary}) {
        if (report.devices)
            add(EepromName(device), report.devices->at(static_cast<std::size_t>(device))
                                        ? "answers"
                                        : "does not answer");
    }
    add("File", report.file);
    add("Read", ByteCount(report.bytes));
    add("Written", ByteCount(report.written));
    add("CRC-32", report.crc);
    add("Backup", report.backup);
    add("To be asked", report.doubts);
    text += ChangeLines(report.planned, report.settingsOf, report.planned.size());
    text += LeftOut(report) + SetTable(report) + EventTable(report);
    return text + BackupTable(report) + DataTable(report) + MismatchList(report) +
           SettingsTable(report);
}

}  // namespace tarnwell::cli
