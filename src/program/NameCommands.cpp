#include "program/NameCommands.h"

#include <algorithm>
#include <bit>

#include "core/Words.h"
#include "program/Program.h"

namespace tarnwell {

namespace {

constexpr Message kNotRead{"This is no file of names:", "E R R O R", BoxStyle::Exclamation};
constexpr Message kAskTheirs{"", "N A M E S", BoxStyle::YesNoExclamation};

NameList Without(NameList names, const Named& former) {
    std::erase(names, former);
    return names;
}

/// "AGC.Level: Primary EEProm, address 4100, bits 0 to 7, from 0 to 9, the level".
std::string Described(const NamedValue& named, NumberMode mode) {
    const auto number = [mode](int value) {
        return NumberText(static_cast<std::uint32_t>(value), mode);
    };
    return TitleOf(named) + ": " + PlaceText(named, mode) + ", from " + number(named.lowest) +
           " to " + number(named.highest) + (named.text.empty() ? "" : ", " + named.text);
}

}  // namespace

NamedValue NameCommands::Proposed(TargetDevice device, int address) const {
    int taken = 0;
    for (const Named& named : program_.names.At(device, address))
        taken |= MaskAt(*named, address);
    NamedValue proposed{.device = device, .address = address};
    auto& [lowest, highest] = proposed.bits;
    if (taken != 0xFF) {
        lowest = std::countr_one(static_cast<unsigned>(taken));
        highest = lowest - 1 + std::countr_zero(static_cast<unsigned>(taken | 0x100) >> lowest);
    }
    proposed.highest = LargestIn(proposed);
    return proposed;
}

std::string NameCommands::Fault(const NamedValue& named, const Named& former, NameLayer layer,
                                std::string& key) const {
    const NameBook& book = program_.names;
    std::string fault = FaultIn(Without(book.Own(), former), named, key);
    if (fault.empty() && book.File(layer) != nullptr)
        fault = FaultIn(Without(book.File(layer)->names, former), named, key);
    return fault;
}

bool NameCommands::Put(NamedValue named, const Named& former, NameLayer layer) {
    const NamesFile* const file = program_.names.File(layer);
    NameList names = file != nullptr ? Without(file->names, former) : NameList();
    std::string step = "Name " + named.name;
    names.push_back(std::make_shared<const NamedValue>(std::move(named)));
    return Keep(layer, std::move(names), std::move(step));
}

void NameCommands::Remove(const NameList& names) {
    const Step step(program_.history,
                    {names.size() == 1 ? "Removal of " + names.front()->name
                                       : "Removal of " + Counted(names.size(), "Name")});
    for (const NameLayer layer : {NameLayer::Set, NameLayer::Opened, NameLayer::User}) {
        const NamesFile* const file = program_.names.File(layer);
        if (file == nullptr)
            continue;
        NameList left = file->names;
        std::erase_if(left, [&](const Named& named) {
            return std::ranges::find(names, named) != names.end();
        });
        if (left.size() < file->names.size())
            Keep(layer, std::move(left), {});
    }
}

bool NameCommands::Keep(NameLayer layer, NameList names, std::string step) {
    const CommandScope scope(program_.statusBar);
    const Step kept(program_.history, {std::move(step)});
    if (!program_.names.Put(layer, std::move(names))) {
        const NamesFile* const file = program_.names.File(layer);
        TellNotWritten(file != nullptr ? file->path : std::string(kNamesFile));
        return false;
    }
    program_.NamesChanged();
    return true;
}

void NameCommands::TellNotWritten(const std::string& path) {
    user_.ShowBox(Box(kNamesNotWritten).WithLine(path));
}

void NameCommands::EnterValue(const NamedValue& named, int value) {
    const CommandScope scope(program_.statusBar);
    program_.editorPage.ShowByte(named.address);
    program_.cellEditor.SettleEntry();
    auto image = program_.grid.Bytes();
    PutValue(image, named, value);
    std::map<int, std::uint8_t> bytes{
        {named.address, image[static_cast<std::size_t>(named.address)]}};
    if (named.low)
        bytes.emplace(*named.low, image[static_cast<std::size_t>(*named.low)]);
    program_.cellEditor.EnterBytes("Value of " + named.name, bytes);
}

void NameCommands::Open(const std::string& path) {
    program_.names.Open(NameLayer::Opened, path);
    program_.NamesChanged();
    program_.TellNameFaults();
}

void NameCommands::ReadInto(NameLayer layer, const std::string& path) {
    const CommandScope scope(program_.statusBar);
    const NamesFile read = ReadNames(path);
    const NamesFile* const into = program_.names.File(layer);
    if (read.usable == Usable::No || into == nullptr) {
        Box box = Box(kNotRead).WithLine(path);
        box.details = read.faults.empty() ? "" : read.faults.front();
        user_.ShowBox(box);
        return;
    }
    const NameMerge merge = MergeOf(into->names, read.names);
    Box question = kAskTheirs;
    for (const auto& [mine, theirs] : merge.conflicts)
        question.details += (question.details.empty() ? "" : "\n") +
                            Described(*mine, program_.state.numberMode) + "\n    in the file " +
                            Described(*theirs, program_.state.numberMode);
    auto keep = tarnwell::Keep::Mine;
    if (!merge.conflicts.empty()) {
        question.text = Counted(merge.conflicts.size(), "name", "is", "are") +
                        " otherwise in the file. Take what stands there?";
        if (user_.ShowBox(std::move(question).WithDefaultNo()) == Answer::Yes)
            keep = tarnwell::Keep::Theirs;
    }
    NameList merged = Merged(into->names, merge, keep);
    if (merged != into->names && !Keep(layer, std::move(merged), "Reading of Names"))
        return;
    program_.statusBar.ShowStatus(
        Counted(merge.added.size(), "New Name") + " Read" +
            (read.faults.empty() ? "" : ", " + Counted(read.faults.size(), "Fault")),
        kResultSeconds);
}

void NameCommands::SaveAs(const std::string& path) {
    const CommandScope scope(program_.statusBar);
    const bool isWritten = WriteNames({.path = path, .names = program_.names.Own()});
    if (!isWritten)
        return TellNotWritten(path);
    program_.statusBar.ShowStatus("Names Saved: " + path, kResultSeconds);
}

}  // namespace tarnwell
