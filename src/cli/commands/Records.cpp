// The commands that show the records of sets.
#include <algorithm>

#include "archive/ImageRecords.h"
#include "cli/commands/Commands.h"
#include "cli/tools/Device.h"
#include "cli/tools/Files.h"
#include "cli/tools/Records.h"
#include "cli/tools/SystemCalendar.h"
#include "core/Letters.h"
#include "core/Words.h"
#include "sets/Sheet.h"

namespace tarnwell::cli {

namespace {

/// Leaves of an event what changed one of the names, if some are given; whether anything is left.
bool KeepOnly(const NameList& names, const NameBook& book, HistoryEvent& event) {
    if (names.empty())
        return true;
    std::erase_if(event.bytes, [&](const EventByte& byte) {
        const NameList& here = book.At(event.device, byte.address);
        return std::ranges::find_first_of(here, names) == here.end();
    });
    return !event.bytes.empty();
}

}  // namespace

void ListSets(const Arguments& /*arguments*/, Report& report) {
    report.sets = KnownSets();
    if (report.sets->sets.empty())
        report.End(Status::Done, "There is no set: --set=NAME --new-set makes one.");
}

void ShowLog(const Arguments& arguments, Report& report) {
    auto history = LoadHistory(arguments, report);
    if (!history)
        return;
    std::vector<HistoryEvent>& events = history->events;
    std::erase_if(events, [&](HistoryEvent& event) {
        return event.time < arguments.since || !KeepOnly(arguments.logNames, arguments.book, event);
    });
    std::ranges::reverse(events);
    report.events = std::move(events);
    if (report.events->empty())
        report.End(Status::Done, "Nothing of that is in the history.");
}

namespace {

bool MayMakeSheet(const Arguments& arguments, Report& report) {
    if (SuffixOf(arguments.file) == ".pdf") {
        report.End(Status::WrongUse,
                   "The sheet is a page of HTML here: name it .html. The window saves PDF.");
        return false;
    }
    return !RefusesSettings(arguments, report) && MaySave(arguments.file, arguments, report);
}

void SaveSheet(const MemoryBuffer& image, const std::string& name, const Arguments& arguments,
               Report& report) {
    SheetFacts facts{.set = name,
                     .date = SystemCalendar().ZonedTime().substr(0, 10),
                     .image = image,
                     .first = {},
                     .names = arguments.book.On(TargetDevice::Primary)};
    if (arguments.set) {
        facts.set = arguments.set->name;
        facts.model = arguments.set->model;
        const std::vector<KeptImage> kept = KeptBackups(arguments);
        facts.first = kept.empty() ? std::nullopt : LoadOwnImage(kept.back().path);
    }
    report.crc = mCRC32::BufferCrcText(image);
    SaveText(arguments.file, SheetHtml(facts), "Settings Sheet Saved: ", report);
}

}  // namespace

void WriteSheet(const Arguments& arguments, Device& device, Report& report) {
    MemoryBuffer image{};
    if (!MayMakeSheet(arguments, report) || !device.Open() || !device.ReadImage(image))
        return;
    device.GiveBack();
    SaveSheet(image, EepromName(arguments.device), arguments, report);
}

void WriteSheetOfFile(const Arguments& arguments, Report& report) {
    if (!MayMakeSheet(arguments, report))
        return;
    const auto content = Load(*arguments.image, arguments, report);
    if (!content)
        return;
    if (!content->image)
        return report.End(Status::File, *arguments.image + " holds settings, no image.");
    SaveSheet(*content->image, *arguments.image, arguments, report);
}

}  // namespace tarnwell::cli
