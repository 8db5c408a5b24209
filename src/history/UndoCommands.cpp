#include "history/UndoCommands.h"

#include "command/WriteTexts.h"

namespace tarnwell {

void UndoCommands::Go(Direction direction) {
    const CommandScope scope(statusBar_);
    cellEditor_.SettleEntry();
    const auto name = history_.NextName(direction);
    if (!name)
        return;
    const bool undo = direction == Direction::Undo;
    const auto beyond = history_.Beyond(direction);
    if (!beyond)
        return Post(undo ? "Undo Needs More Than Ten Pending EEP Writes; Nothing Changed"
                         : "Redo Needs More Than Ten Pending EEP Writes; Nothing Changed");
    if (!MayChangeTarget(beyond->target))
        return Post(kTargetNotChanged);
    history_.Cross(direction, *beyond);
    if (const std::string path = history_.NamesNotWritten(); !path.empty())
        user_.ShowBox(Box(kNamesNotWritten).WithLine(path));
    Post((undo ? "Undone: " : "Redone: ") + *name);
}

bool UndoCommands::MayChangeTarget(TargetDevice target) {
    return target == state_.targetDevice || target == TargetDevice::Primary ||
           user_.ShowBox(kWarnOfSecondary) == Answer::Ok;
}

}  // namespace tarnwell
