// The picture settings on the screen: their pages, their buttons and the value editor.
#pragma once

#include "program/Program.h"
#include "ui/widgets/CommandButton.h"
#include "ui/window/SettingsPages.h"

namespace tarnwell {

class SettingsDisplay final : public SettingsView {
  public:
    /// `window` is the one that the value editor belongs to.
    explicit SettingsDisplay(QWidget& window) : m_window(window) {}

    /// Makes the widgets, the pages as the first of `tabs` and the buttons beside them. The
    /// program, which is made with this view of it, shows nothing before.
    void build(Program& program, QTabWidget& tabs);

    struct Buttons {
        CommandButton* read;
        CommandButton* merge;
        CommandButton* write;
    };

    SettingsPages& pages() { return *m_pages; }
    const Buttons& buttons() const { return m_buttons; }
    void enableButtons();

    /// The buttons stand this much lower than designed.
    void layOut(int extraHeight);

    /// A command may have read or written the device.
    void showStandings();

    void SettingCellChanged(int cell) override;
    void ShowCell(int cell) override;
    void ShowFormEdit() override;

  private:
    QWidget& m_window;
    Program* m_program = nullptr;
    QTabWidget* m_tabs = nullptr;
    SettingsPages* m_pages = nullptr;
    Buttons m_buttons{};
};

}  // namespace tarnwell
