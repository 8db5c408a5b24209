#include "program/SetCommands.h"

#include <algorithm>

#include "core/Letters.h"
#include "core/Words.h"
#include "program/Program.h"

namespace tarnwell {

namespace {

constexpr Message kBadName{"", "E R R O R", BoxStyle::Exclamation};
constexpr Message kNotWritten{"This could not be written:", "E R R O R", BoxStyle::Exclamation};
constexpr Message kNotRemoved{"This could not be moved to the trash:", "E R R O R",
                              BoxStyle::Exclamation};
constexpr Message kOtherDevice{"", "E R R O R", BoxStyle::Exclamation};
constexpr Message kStays{"", "I N F O", BoxStyle::Information};
constexpr Message kNotKnown{"", "I N F O", BoxStyle::Information};
constexpr int kMostLines = 100;
constexpr Message kAskRemove{"", "W A R N I N G", BoxStyle::YesNoExclamation};

bool IsChosen(const Program& program, const TvSet& set) {
    return program.record.Chosen() && program.record.Chosen()->folder == set.folder;
}

}  // namespace

std::optional<std::string> SetCommands::AskName(std::string_view title, std::string_view proposed) {
    auto name = user_.AskText({"Name of the television set:", title, proposed});
    if (!name || *name == proposed)
        return std::nullopt;
    Box box = kBadName;
    box.text = SetStore::NameFault(*name);
    const auto other = box.text.empty() ? program_.sets.Find(*name) : std::nullopt;
    if (other && !EqualIgnoringCase(*name, proposed))
        box.text = "There is a set of the name " + other->name + ".";
    if (box.text.empty())
        return name;
    user_.ShowBox(box);
    return std::nullopt;
}

bool SetCommands::Saved(const TvSet& set) {
    if (!SetStore::SaveTexts(set)) {
        user_.ShowBox(Box(kNotWritten).WithLine(set.folder + "/set.json"));
        return false;
    }
    if (IsChosen(program_, set))
        program_.ChooseSet(program_.sets.Find(set.name));
    return true;
}

std::optional<TvSet> SetCommands::Make() {
    const CommandScope scope(program_.statusBar);
    const auto name = AskName("N E W   S E T", "");
    if (!name)
        return std::nullopt;
    auto made = program_.sets.Create(*name);
    if (!made)
        user_.ShowBox(Box(kNotWritten).WithLine(program_.sets.Folder()));
    return made;
}

bool SetCommands::Rename(TvSet& set) {
    const CommandScope scope(program_.statusBar);
    const auto name = AskName("R E N A M E   S E T", set.name);
    if (!name)
        return false;
    TvSet renamed = set;
    renamed.name = *name;
    if (!Saved(renamed))
        return false;
    set = renamed;
    return true;
}

void SetCommands::SaveTexts(const TvSet& set) {
    const CommandScope scope(program_.statusBar);
    Saved(set);
}

bool SetCommands::Remove(const TvSet& set) {
    const CommandScope scope(program_.statusBar);
    Box box = kAskRemove;
    box.text =
        "Move the record of " + set.name + " to the trash, with its backups and its history?";
    if (user_.ShowBox(std::move(box).WithDefaultNo()) != Answer::Yes)
        return false;
    if (IsChosen(program_, set))
        Use(std::nullopt);
    if (programs_.MoveToTrash(set.folder))
        return true;
    user_.ShowBox(Box(kNotRemoved).WithLine(set.folder));
    return false;
}

void SetCommands::Use(const std::optional<TvSet>& set) {
    const CommandScope scope(program_.statusBar);
    program_.ChooseSet(set);
    program_.statusBar.ShowStatus(set ? "Record of " + set->name + " Chosen" : "No Set Chosen",
                                  kResultSeconds);
}

bool SetCommands::IsTarget(TargetDevice device) {
    if (program_.state.targetDevice == device)
        return true;
    Box box = kOtherDevice;
    box.text = "Select the " + EepromName(device) + " first.";
    user_.ShowBox(box);
    return false;
}

void SetCommands::TakeBack(const TakenEvents& taken, Newer newer) {
    const CommandScope scope(program_.statusBar);
    const std::string path = HistoryPath(*program_.record.Chosen());
    const SetHistory history = ReadHistory(path);
    const auto first =
        std::ranges::find(history.events, taken.numbers.front(), &HistoryEvent::number);
    if (first == history.events.end() || !IsTarget(first->device))
        return;
    const TargetDevice device = first->device;
    const tarnwell::TakeBack back = TakeBackOf(history, device, taken, newer);
    Box stays = kStays;
    const auto add = [&](const std::string& text, const std::vector<int>& addresses) {
        stays.text.append(stays.text.empty() ? "" : kLineBreak).append(text);
        for (const int address : addresses)
            stays.details +=
                (stays.details.empty() ? "" : "\n") +
                AddressText(address, program_.state.numberMode, program_.names.TitlesOn(device));
    };
    if (!back.newer.empty())
        add(Counted(back.newer.size(), "byte", "was", "were") + " changed again since" +
                (newer == Newer::LeftOut ? " and left out." : "; taken back as well."),
            back.newer);
    if (!back.unknown.empty())
        add("What " + Counted(back.unknown.size(), "byte") + " held before is not known: left out.",
            back.unknown);
    if (!stays.text.empty())
        user_.ShowBox(stays);
    if (back.values.empty())
        return;
    program_.writeDifferences.TakeBack([&](MemoryBuffer held) {
        for (const auto& [address, value] :
             TakeBackOf(ReadHistory(path), device, taken, newer).values)
            held[static_cast<std::size_t>(address)] = value;
        return held;
    });
}

void SetCommands::GoBack(const HistoryEvent& event) {
    const CommandScope scope(program_.statusBar);
    if (!IsTarget(event.device))
        return;
    const TvSet& set = *program_.record.Chosen();
    const KnownBytes bytes =
        BytesBefore(set, event.device, ReadHistory(HistoryPath(set)), event.number);
    if (const auto image = ImageOf(bytes))
        return program_.writeDifferences.GoBack(*image);
    Box box = kNotKnown;
    int unknown = 0;
    for (int address = 0; address < kEepromBytes; ++address) {
        if (!bytes[static_cast<std::size_t>(address)] && ++unknown <= kMostLines)
            box.details += (box.details.empty() ? "" : "\n") +
                           AddressText(address, program_.state.numberMode,
                                       program_.names.TitlesOn(event.device));
    }
    box.text = "What the EEProm held then is not known of " + Counted(unknown, "byte") + ".";
    user_.ShowBox(box);
}

}  // namespace tarnwell
