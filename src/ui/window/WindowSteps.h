// What start-up sets up in the main window, step by step.
#pragma once

#include "ui/desktop/QtUser.h"
#include "ui/window/EditorDisplay.h"
#include "ui/window/SettingsDisplay.h"
#include "ui/window/StatusArea.h"

namespace tarnwell {

class WindowSteps final : public StartUpSteps {
  public:
    WindowSteps(QtUser& user, Program& program, Screen& screen, StatusArea& statusArea,
                EditorDisplay& editor, SettingsDisplay& settings)
        : m_user(user),
          m_program(program),
          m_screen(screen),
          m_statusArea(statusArea),
          m_editor(editor),
          m_settings(settings) {}

    void SetUpFileDialog() override { m_user.setUpFileDialog(); }
    void SyncMenuChecks() override { m_screen.Changed(Shown::Menus); }
    void SetLayout() override { m_screen.Changed(Shown::Layout); }
    void ColourControls() override {
        m_editor.colour();
        m_statusArea.colourStrip();
    }
    void ApplyPortOptions() override { m_program.i2c.ApplyPortOptions(); }
    void ReleaseBus() override {
        if (!m_program.state.I2cBusInUse().empty())
            return;
        const BusClaim claim(m_program.i2c);
        m_program.i2c.ReleaseBus();
    }
    void SetupGrid() override {
        m_editor.page().grid().setUp();
        m_program.grid.SetupGrid();
    }
    void EnableSettingsButtons() override { m_settings.enableButtons(); }

  private:
    QtUser& m_user;
    Program& m_program;
    Screen& m_screen;
    StatusArea& m_statusArea;
    EditorDisplay& m_editor;
    SettingsDisplay& m_settings;
};

}  // namespace tarnwell
