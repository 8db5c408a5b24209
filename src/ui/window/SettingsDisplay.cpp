#include "ui/window/SettingsDisplay.h"

#include "ui/dialogs/FormEdit.h"
#include "ui/looks/Measures.h"
#include "ui/window/WaitingTabs.h"

namespace tarnwell {

namespace {

constexpr int kButtonsTop = 3120;

}  // namespace

void SettingsDisplay::build(Program& program, QTabWidget& tabs) {
    m_program = &program;
    m_tabs = &tabs;
    m_pages = new SettingsPages(tabs);
    QWidget* const body = tabs.parentWidget();
    m_buttons = {new CommandButton({"cmdReadSettings", "Read Settings from EEP",
                                    " Read settings values from the EEP ", "R"},
                                   scaledRect(75, kButtonsTop, 2240, 300), body),
                 new CommandButton({"cmdCopySettingsToBuffer", "Merge Settings with Buffer",
                                    " Merge the settings values with the Tarnwell buffer ", "M"},
                                   scaledRect(2520, kButtonsTop, 2175, 300), body),
                 new CommandButton({"cmdSaveSettings", "Write Settings to EEP",
                                    " Write settings values to the EEP ", "W"},
                                   scaledRect(4920, kButtonsTop, 2240, 300), body)};
    for (CommandButton* button : {m_buttons.read, m_buttons.merge, m_buttons.write})
        button->setEnabled(false);
    for (int cell = 0; cell < kCellCount; ++cell)
        SettingCellChanged(cell);
}

void SettingsDisplay::layOut(int extraHeight) {
    for (CommandButton* button : {m_buttons.read, m_buttons.merge, m_buttons.write})
        button->move(button->x(), scaled(kButtonsTop) + extraHeight);
}

void SettingsDisplay::enableButtons() {
    for (CommandButton* button : {m_buttons.read, m_buttons.merge, m_buttons.write})
        button->setEnabled(true);
}

void SettingsDisplay::SettingCellChanged(int cell) {
    m_pages->refresh(*m_program, cell);
    showWaiting(*m_tabs, *m_program, Cell(cell).setting->page);
}

void SettingsDisplay::showStandings() {
    for (int cell = 0; cell < kCellCount; ++cell)
        m_pages->refresh(*m_program, cell);
    for (const PageInfo& info : kPages)
        showWaiting(*m_tabs, *m_program, info.page);
}

void SettingsDisplay::ShowCell(int cell) {
    m_tabs->setCurrentIndex(static_cast<int>(Cell(cell).setting->page));
    m_pages->focus(cell);
}

void SettingsDisplay::ShowFormEdit() {
    ValueEditor& editor = m_program->valueEditor;
    FormEdit(editor, m_program->state, m_pages->widget(editor.EditedCell()), &m_window).exec();
}

}  // namespace tarnwell
