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

/// "Address 5 (TINT)".
std::string Place(int address, const Named& named) {
    return AddressText(address, NumberMode::Decimal,
                       [&](int) { return named ? named->name : std::string(); });
}

std::string Place(int address, const NameBook& names, TargetDevice device) {
    return AddressText(address, NumberMode::Decimal, names.NamesOn(device));
}

/// What stands for it in a line.
std::string ValueOrByte(const Named& named, std::uint8_t byte) {
    return named ? ValueText(*named, ValueIn(byte, *named), NumberMode::Decimal)
                 : std::to_string(byte);
}

std::string ByteCount(const std::optional<int>& count) {
    return count ? Counted(*count, "byte") : "";
}

std::string SettingsTable(const Report& report) {
    if (report.settings.empty())
        return {};
    std::string text = "Name         Value  Range  Address  Bits  Page     Description\n";
    for (const auto& [named, value] : report.settings) {
        const std::string range =
            std::to_string(named->lowest) + "-" + std::to_string(named->highest);
        const auto meaning = named->values.find(value);
        text +=
            Format("%-12s %5d  %-5s  %7d  %-4s  %-8s ", named->name.c_str(), value, range.c_str(),
                   named->address, BitsOf(*named).c_str(), std::string(PageOf(*named)).c_str());
        text.append(meaning == named->values.end()
                        ? ""
                        : meaning->second + (named->text.empty() ? "" : ". "))
            .append(DescriptionOf(*named))
            .append("\n");
    }
    return text;
}

std::string DataTable(const Report& report) {
    std::string text;
    for (const AddressedByte& byte : report.data) {
        const std::string names = report.names->NamesOn(report.settingsOf)(byte.address);
        text += Format("%4d 0x%04X  %3d 0x%02X", byte.address, unsigned(byte.address), byte.value,
                       unsigned(byte.value));
        text += (names.empty() ? "" : "  ") + names + "\n";
    }
    return text;
}

std::string MismatchLine(const std::string& place, const std::string& expected,
                         const std::string& found) {
    return place + ": expected " + expected + ", found " + found + "\n";
}

/// Where values are told, bits that have no name get a line of their own, as in a list of the
/// window.
std::string MismatchLines(const Mismatch& mismatch, const Report& report) {
    const auto& [address, expected, found] = mismatch;
    const NameList& here = report.names->At(report.settingsOf, address);
    const auto line = [&, at = address, old = expected, now = found](const Named& named) {
        return MismatchLine(Place(at, named), ValueOrByte(named, old), ValueOrByte(named, now));
    };
    if (report.mismatchesAre != Told::BytesAndValues)
        return MismatchLine(Place(address, *report.names, report.settingsOf),
                            std::to_string(expected), std::to_string(found));
    int others = expected ^ found;
    std::string text;
    for (const Named& named : here) {
        const int mask = MaskAt(*named, address);
        if (named->low)
            return MismatchLine(Place(address, *report.names, report.settingsOf),
                                std::to_string(expected), std::to_string(found));
        if (((expected ^ found) & mask) != 0)
            text += line(named);
        others &= ~mask;
    }
    return text + (others != 0 ? line(nullptr) : "");
}

std::string MismatchList(const Report& report) {
    std::string text;
    for (const Mismatch& mismatch : report.mismatches)
        text += MismatchLines(mismatch, report);
    return text;
}

std::string NameTable(const Report& report) {
    std::string text;
    for (const Named& named : report.held.value_or(NameList()))
        text += "  " + named->name + ": " + PlaceText(*named, NumberMode::Decimal) +
                (named->text.empty() ? "" : ", " + named->text) + "\n";
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
                    ChangeText(byte, event.device, NumberMode::Decimal, *report.names,
                               report.names->NamesOn(event.device)) +
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
        text += Place(address, *report.names, report.settingsOf) + " was written again since.\n";
    for (const int address : report.unknown)
        text += Place(address, *report.names, report.settingsOf) +
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

Named NamedIn(const Mismatch& mismatch, const Report& report) {
    const NameList& here = report.names->At(report.settingsOf, mismatch.address);
    if (here.size() == 1)
        return here.front()->low ? nullptr : here.front();
    return report.names->Changed(report.settingsOf, mismatch.address, mismatch.expected,
                                 mismatch.found);
}

std::string BitsOf(const NamedValue& named) {
    constexpr BitRange kTwoBytes{0, 15};
    const auto [lowest, highest] = named.low    ? kTwoBytes
                                   : named.cell ? tarnwell::BitsOf(*Cell(*named.cell).setting)
                                                : named.bits;
    return std::to_string(highest) + "-" + std::to_string(lowest);
}

std::string_view DescriptionOf(const NamedValue& named) {
    if (!named.cell)
        return named.text;
    const Setting* setting = Cell(*named.cell).setting;
    while (setting->description.empty() && setting != kCatalog.data())
        --setting;
    return setting->description;
}

std::string_view PageOf(const NamedValue& named) {
    return named.cell ? Info(Cell(*named.cell).setting->page).caption : std::string_view();
}

std::string ChangeLines(const std::vector<ByteChange>& changes, TargetDevice device,
                        std::size_t most, const NameBook& names) {
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
        const Named named = names.Changed(device, change.address, change.before, change.after);
        text += "  " + Place(change.address, names, device) + ": " +
                ValueOrByte(named, change.before) + " becomes " + ValueOrByte(named, change.after) +
                "\n";
    }
    if (lines > most)
        text += "  and " + std::to_string(lines - most) + " more\n";
    if (whole)
        text = "  All 8192 bytes, of which " + std::to_string(differing) + " change\n" + text;
    return text;
}

std::string PlainText(const WatchedChange& change) {
    const auto& [address, before, after] = change.row.bytes.front();
    const Named& named = change.row.named;
    const auto text = [&](int value, int byte) {
        return named ? ValueText(*named, value, NumberMode::Decimal) : std::to_string(byte);
    };
    return WhenOf(change.time) + "  " + Place(address, named) + ": " +
           text(change.row.left, before) + " becomes " + text(change.row.right, after) + "\n";
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
    text += report.planned.empty() ? ""
                                   : ChangeLines(report.planned, report.settingsOf,
                                                 report.planned.size(), *report.names);
    text += LeftOut(report) + NameTable(report) + SetTable(report) + EventTable(report);
    return text + BackupTable(report) + DataTable(report) + MismatchList(report) +
           SettingsTable(report);
}

}  // namespace tarnwell::cli
