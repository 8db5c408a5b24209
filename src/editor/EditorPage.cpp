#include "editor/EditorPage.h"

#include "core/Pages.h"

namespace tarnwell {

namespace {

constexpr Message kAskCopy{
    "Values in the Data Grid have been modified.\r\n\r\n"
    "Copy changes to the Tarnwell Memory Buffer?",
    "Data Modified", BoxStyle::YesNoQuestion};
constexpr Message kAskMerge{
    "Values in the Data Grid have been modified.\r\n\r\n"
    "Merge the changes with the Memory Buffer?",
    "D A T A - Changed", BoxStyle::YesNoQuestion};
constexpr Message kAskDiscard{"Really discard the Data Grid changes?", "C A U T I O N",
                              BoxStyle::YesNoExclamation};

}  // namespace

EditorPage::EditorPage(const CommandContext& context, DataGrid& grid, PendingWrites& pending,
                       CellEditor& cellEditor, EditorView& view)
    : Command(context), grid_(grid), pending_(pending), cellEditor_(cellEditor), view_(view) {}

void EditorPage::ToggleEditor() {
    state_.editor = state_.editor == EditorSwitch::On ? EditorSwitch::Off : EditorSwitch::On;
    ApplyEditorSwitch();
}

void EditorPage::ApplyEditorSwitch() {
    const bool on = state_.editor == EditorSwitch::On;
    if (!on)
        grid_.AbandonEntry();
    SetLayout(on && state_.page == Page::Editor ? SizeMode::Big : SizeMode::Small);
    Post(on ? "Data Editor Enabled" : "Data Editor Disabled");
    screen_.Changed(Shown::EditorSwitch);
    screen_.Changed(Shown::Menus);
    view_.FocusGrid();
}

void EditorPage::ToggleTextColumn() {
    state_.textColumn = !state_.textColumn;
    cellEditor_.SetSide(GridSide::Bytes);
    Post(state_.textColumn ? "Text Column Shown; F6 Goes There" : "Text Column Hidden");
    screen_.Changed(Shown::Layout);
    screen_.Changed(Shown::Menus);
}

void EditorPage::SetLayout(SizeMode mode) {
    state_.sizeMode = mode;
    screen_.Changed(Shown::Layout);
}

void EditorPage::SwitchPage(Page page) {
    const CommandScope scope(statusBar_);
    const Page left = state_.page;
    if (left == Page::Editor) {
        cellEditor_.SettleEntry();
        AskAndSettle(kAskCopy);
    }
    state_.page = page;
    Post(Info(page).status);
    if (page != Page::Editor)
        SetLayout(SizeMode::Small);
    else if (state_.editor == EditorSwitch::On)
        SetLayout(SizeMode::Big);
    if (page == Page::Editor && state_.editorWarning == kShowWarning)
        ShowWarning();
}

void EditorPage::ShowByte(int address) {
    const CommandScope scope(statusBar_);
    if (state_.page != Page::Editor)
        view_.TurnToEditor();
    const GridCell cell = GridCell::At(address);
    if (!cellEditor_.MoveTo(cell))
        return;
    grid_.MoveCurrent(cell);  // one that is current already may be out of sight
    view_.FocusGrid();
    cellEditor_.Click();
}

void EditorPage::ShowWarning() {
    state_.editorWarning = view_.ShowWarningAgain() ? kShowWarning : kNoWarning;
}

void EditorPage::WritePending() {
    const CommandScope scope(statusBar_);
    const int attempts = pending_.Attempts();
    cellEditor_.SettleEntry();
    const bool madeRoom = pending_.Count() > 0 && !pending_.IsFull();
    if (pending_.Attempts() == attempts || madeRoom)
        pending_.WritePending();
}

void EditorPage::TakeBackPending(int row) {
    const CommandScope scope(statusBar_);
    if (row >= pending_.Count())
        return;
    const PendingEntry meant = pending_.Entry(row);
    cellEditor_.SettleEntry();
    if (row < pending_.Count() && pending_.Entry(row) == meant)
        pending_.TakeBack(row);
}

bool EditorPage::SettleGridEdits() {
    const CommandScope scope(statusBar_);
    cellEditor_.SettleEntry();
    return AskAndSettle(kAskMerge);
}

bool EditorPage::MayRefillGrid() {
    const CommandScope scope(statusBar_);
    cellEditor_.SettleEntry();
    return !state_.GridChanged || user_.ShowBox(kAskDiscard) == Answer::Yes;
}

void EditorPage::RefillGrid() {
    grid_.FillGrid();
    if (!state_.GridChanged)
        return;
    grid_.SetGridChanged(false);
    pending_.ClearPendingWrites();
}

bool EditorPage::AskAndSettle(const Message& question) {
    if (!state_.GridChanged)
        return true;
    if (user_.ShowBox(question) != Answer::Yes)
        return AskAndDiscard();
    const Step step(steps_, {"Transfer of Data Grid"});
    origin_.Note(BufferChange::BytesTransferred);
    grid_.TransferGrid();
    return true;
}

bool EditorPage::AskAndDiscard() {
    if (user_.ShowBox(kAskDiscard) != Answer::Yes)
        return false;
    ApplyEditorSwitch();
    DiscardGridEdits();
    return true;
}

void EditorPage::DiscardGridEdits() {
    const Step step(steps_, {"Discard of Grid Changes"});
    RefillGrid();
}

}  // namespace tarnwell
