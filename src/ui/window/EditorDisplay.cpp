#include "ui/window/EditorDisplay.h"

#include "core/Pages.h"
#include "ui/dialogs/FormWarning.h"
#include "ui/looks/Measures.h"
#include "ui/looks/Text.h"
#include "ui/window/WaitingTabs.h"

namespace tarnwell {

namespace {

QRect writePendingPlace() {
    return scaledRect(7320, 3120, 1935, 300);
}

}  // namespace

void EditorDisplay::build(Program& program, QTabWidget& tabs) {
    m_program = &program;
    m_tabs = &tabs;
    m_page = new EditorPageWidget(program);
    tabs.addTab(m_page, toQt(Info(Page::Editor).caption));
    m_pendingFrame = new PendingFrame(program.pending, tabs.parentWidget());
    m_writePending = new CommandButton({"cmdWriteData", "Write Pending to EEP",
                                        " Write pending Data Editor changes to the EEP ", "P"},
                                       writePendingPlace(), tabs.parentWidget());
    layOut({});
}

void EditorDisplay::layOut(QSize growth) {
    m_page->layOut(growth);
    m_pendingFrame->setGeometry(scaledRect(7320, 60, 1935, 3015).translated(growth.width(), 0));
    m_writePending->move(writePendingPlace().topLeft() + QPoint(growth.width(), growth.height()));
}

void EditorDisplay::colour() {
    m_page->colourHeadings();
    m_pendingFrame->colourRows();
}

void EditorDisplay::showSwitch() {
    m_page->showSwitch(m_program->state.editor);
}

void EditorDisplay::showCaption() {
    showWaiting(*m_tabs, *m_program, Page::Editor);
}

void EditorDisplay::PendingWritesChanged() {
    m_pendingFrame->refresh();
    showWaiting(*m_tabs, *m_program, Page::Editor);
}

void EditorDisplay::setLayoutMode(SizeMode mode) {
    m_pendingFrame->setVisible(mode == SizeMode::Big);
    m_writePending->setVisible(mode == SizeMode::Big);
}

bool EditorDisplay::ShowWarningAgain() {
    FormWarning warning(&m_window);
    warning.exec();
    return !warning.dontShowAgain();
}

}  // namespace tarnwell
