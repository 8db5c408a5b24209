#include "cli/tools/Records.h"

#include <algorithm>

#include "core/Words.h"
#include "core/files/UserFolders.h"
#include "sets/HistoryFile.h"

namespace tarnwell::cli {

namespace {

SetStore Store() {
    return SetStore(StateFolder() + "/sets");
}

std::string NoSuchSet(const std::string& name) {
    const SetList list = KnownSets();
    std::vector<std::string_view> names;
    names.reserve(list.sets.size());
    for (const TvSet& set : list.sets)
        names.push_back(set.name);
    std::string text = "There is no set '" + name + "'.";
    if (!names.empty())
        text.append(" Did you mean ").append(Nearest(name, names)).append("?");
    return text + " Say --new-set to make it.";
}

}  // namespace

SetList KnownSets() {
    return Store().All();
}

bool FindSet(Arguments& arguments, Report& report) {
    const std::string& name = arguments.setName;
    if (name.empty())
        return true;
    arguments.set = Store().Find(name);
    if (!arguments.set && arguments.newSet) {
        if (const std::string fault = SetStore::NameFault(name); !fault.empty()) {
            report.End(Status::WrongUse, fault);
            return false;
        }
        arguments.set = Store().Create(name);
        if (!arguments.set)
            report.End(Status::File, Store().Folder() +
                                         " cannot be written. Make room there, or name another "
                                         "place by XDG_STATE_HOME.");
    } else if (!arguments.set) {
        report.End(Status::WrongUse, NoSuchSet(name));
    }
    if (arguments.set)
        report.set = arguments.set->name;
    return arguments.set.has_value();
}

std::optional<SetHistory> LoadHistory(const Arguments& arguments, Report& report) {
    const std::string path = HistoryPath(*arguments.set);
    SetHistory history = ReadHistory(path);
    report.skipped = history.skipped;
    if (history.fault == FileFault::None)
        return history;
    report.End(Status::File, path + " cannot be read.");
    return std::nullopt;
}

bool HasEvents(const SetHistory& history, const Arguments& arguments, Report& report) {
    for (const int number : arguments.events) {
        const auto event = std::ranges::find(history.events, number, &HistoryEvent::number);
        const std::string name = "Event " + std::to_string(number);
        if (event == history.events.end()) {
            report.End(Status::WrongUse, name + " is not in the history: see 'tarnwell-cli log'.");
            return false;
        }
        if (event->device != arguments.device) {
            report.End(Status::WrongUse,
                       name + " is of the " + EepromName(event->device) +
                           ": say --device=" + std::string(DeviceWord(event->device)) + ".");
            return false;
        }
    }
    return true;
}

}  // namespace tarnwell::cli
