#include "editor/Find.h"

#include <algorithm>
#include <utility>

#include "core/Letters.h"

namespace tarnwell {

Find::Find(const CommandContext& context, DataGrid& grid, EditorPage& editorPage)
    : Command(context), grid_(grid), editorPage_(editorPage) {}

bool Find::LookFor(std::string_view text, FindKind kind) {
    if (kind == FindKind::Name) {
        if (text.empty())
            return false;
        name_ = text;
        pattern_.clear();
        return true;
    }
    auto pattern = kind == FindKind::Text
                       ? PatternOf(text)
                       : PatternFromText(text, state_.numberMode).value_or(BytePattern{});
    if (pattern.empty())
        return false;
    pattern_ = std::move(pattern);
    return true;
}

std::string Find::NothingToFindText(FindKind kind) const {
    if (kind == FindKind::Text)
        return "Type the text to look for";
    if (kind == FindKind::Name)
        return "Type a part of a name";
    return "Type bytes from 0 to " + NumberText(255, state_.numberMode) + ", or ?? for any byte";
}

std::vector<int> Find::Matches() const {
    if (!pattern_.empty())
        return MatchesOf(pattern_, grid_.Bytes());
    std::vector<int> matches;
    for (int address = 0; address < kEepromBytes; ++address)
        if (ContainsIgnoringCase(names_(address), name_))
            matches.push_back(address);
    return matches;
}

void Find::Go(FindDirection direction) {
    const CommandScope scope(statusBar_);
    editorPage_.SettleEntry();
    const std::vector<int> matches = Matches();
    if (matches.empty())
        return Post("Not found");
    const int current = grid_.Current().Address();
    const bool forward = direction == FindDirection::Next;
    auto match = forward ? std::ranges::upper_bound(matches, current)
                         : std::ranges::lower_bound(matches, current);
    const bool wraps = match == (forward ? matches.end() : matches.begin());
    if (wraps)
        match = forward ? matches.begin() : matches.end();
    if (!forward)
        --match;
    editorPage_.ShowByte(*match);
    Post(std::to_string(match - matches.begin() + 1) + " of " + std::to_string(matches.size()) +
         (wraps ? ", wrapped" : ""));
}

}  // namespace tarnwell
