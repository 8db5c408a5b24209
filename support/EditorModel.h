// What the data editor should do, written without it: its grid, queue and buffer, and what it asks.
#pragma once

#include <random>

#include "support/TestProgram.h"

namespace tarnwell {

inline constexpr std::size_t kBytes = 8192;
inline const std::string kModified = "Values in the Data Grid have been modified.\r\n\r\n";
inline const std::string kAskCopy =
    "Data Modified|" + kModified + "Copy changes to the Tarnwell Memory Buffer?";
inline const std::string kAskMerge =
    "D A T A - Changed|" + kModified + "Merge the changes with the Memory Buffer?";
inline const std::string kAskSecondary =
    "W A R N I N G|B E   C A R E F U L !\r\nLittle is known about this EEProm.\r\n"
    "Bad data values here could KILL your HDTV!";
inline const std::string kAskNow =
    "Write Changes?|There are now ten pending EEP changes. Click <Yes> to write the EEP changes "
    "now\r\nor click <No> to postpone the pending EEP write until later.\r\n\r\nIf <No> is "
    "clicked, the entire EEP must be written later to save these changes.\r\n\r\n"
    "Do you want to write the EEP changes now?";
inline const std::string kOutOfRange = "W A R N I N G|The new value was out of range and";
inline const std::string kTryAgain = "\r\nhas been discarded. Try again.";
inline const std::string kFull = "Pending EEP Writes Are Full; Change Discarded";

/// It acts before the program does and draws the answers that the program then gets.
struct EditorModel {
    struct Entry {
        std::size_t address;
        std::string before, after;
    };
    std::deque<Answer>& answers;
    NumberMode mode = NumberMode::Decimal;
    bool on = false, onPage = false, changed = false, open = false;
    std::size_t target = 0, current = 0;
    std::string edit{};
    std::array<std::string, kBytes> grid{};
    EepromImage buffer{};
    std::array<EepromImage, 2> devices{};
    std::vector<Entry> queue{};
    std::map<std::size_t, int> edits{};  ///< committed, not given up, and nowhere but in the grid

    std::mt19937 random{20261117};
    std::vector<std::string> asked{};
    std::map<std::string, int> seen{};

    std::string Form(std::size_t value) const {
        return NumberText(static_cast<std::uint32_t>(value), mode);
    }
    std::uint8_t Byte(const std::string& text) const {
        return ByteFromText(text, mode).value_or(0);
    }
    bool Ask(const std::string& box, Answer yes = Answer::Yes, Answer no = Answer::No) {
        asked.push_back(box);
        ++seen[box.substr(0, box.find('|'))];
        answers.push_back((random() % 3 == 0) == box.starts_with("V E R I F Y") ? yes : no);
        return answers.back() == yes;
    }
    void Fill() {
        std::ranges::transform(buffer, grid.begin(), [this](auto byte) { return Form(byte); });
        open = false;
    }
    void Transfer() {
        std::ranges::transform(grid, buffer.begin(), [this](auto& text) { return Byte(text); });
        changed = false;
    }
    bool Discard() {
        if (!Ask("C A U T I O N|Really discard the Data Grid changes?"))
            return false;
        Fill();
        changed = false;
        queue.clear();
        edits.clear();
        return true;
    }
    void Write() {
        const std::string count = std::to_string(queue.size());
        const std::string values = queue.size() == 1 ? " new value" : " new values";
        if (queue.empty() || !Ask("V E R I F Y|Write " + count + values + " to the EEP?"))
            return;
        for (const Entry& entry : queue)
            devices[target][entry.address] = Byte(entry.after);
        queue.clear();
        Transfer();
    }
    void AskWhenFull() {
        if (queue.size() == 10 && Ask(kAskNow))
            Write();
        else if (queue.size() == 10)
            queue.clear();
    }
    /// False if the queue had no room.
    bool Commit() {
        const std::string before = grid[current];
        if (edit == before)
            return true;
        const std::string entered = std::exchange(edit, before);
        if (!ByteFromText(entered, mode)) {
            asked.push_back(kOutOfRange + (mode == NumberMode::Hex ? "" : " ") + kTryAgain);
            return changed = true;
        }
        AskWhenFull();
        if (queue.size() == 10)
            return ++seen[kFull] == 0;
        queue.push_back({current, before, entered});
        edit = grid[current] = entered;
        edits[current] = Byte(entered);
        changed = true;
        AskWhenFull();
        return true;
    }
    void Begin(const std::string& text) {
        open = on;
        edit = text;
    }
    bool Leave() {
        open = open && !edit.empty() && !Commit();
        return !open;
    }
    void Move(std::size_t to) {
        if (to == current || !Leave())
            return;
        current = to;
        Begin(grid[current]);
    }
    void Key(EditKey key) {
        const std::map<EditKey, std::size_t> targets{
            {EditKey::Next, (current + 1) % kBytes},
            {EditKey::Previous, (current + kBytes - 1) % kBytes},
            {EditKey::Left, current % 16 == 0 ? current : current - 1},
            {EditKey::Down, current + 16 < kBytes ? current + 16 : current},
            {EditKey::Up, current < 16 ? current : current - 16},
        };
        if (edit.empty() && !grid[current].empty())
            edit = "0";
        if (Commit())
            Move(targets.at(key));
    }
    /// False if changes stay in the grid alone.
    bool Settle(const std::string& question = {}) {
        Leave();
        open = false;
        if (changed && !question.empty() && Ask(question))
            Transfer();
        return !changed || Discard();
    }
    void Select(std::size_t device) {
        if (device == 1 && !Ask(kAskSecondary, Answer::Ok, Answer::Cancel))
            return;
        if (device != target)
            queue.clear();
        target = device;
    }
    void ChangeMode() {
        const EditorModel old = *this;
        mode = mode == NumberMode::Hex ? NumberMode::Decimal : NumberMode::Hex;
        for (std::string& text : grid)
            text = Form(old.Byte(text));
        for (Entry& entry : queue)
            entry = {entry.address, Form(old.Byte(entry.before)), Form(old.Byte(entry.after))};
    }
};

}  // namespace tarnwell
