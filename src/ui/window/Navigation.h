// Finding one's way: the windows in which the user names a place or what to look for.
#pragma once

#include <functional>

#include "program/Program.h"
#include "ui/dialogs/FormFind.h"

namespace tarnwell {

class Navigation final {
  public:
    /// `run` runs a command that an open entry is committed before; `window` owns the dialogs.
    Navigation(QWidget& window, Program& program,
               std::function<void(const std::function<void()>&)> run);

    void goTo();
    void find();

    /// Looks for the next or the previous match of what was looked for last, or asks for it.
    void findAgain(FindDirection direction);

    void showByte(int address);

  private:
    QWidget& m_window;
    Program& m_program;
    std::function<void(const std::function<void()>&)> m_run;
    FormFind* m_findWindow = nullptr;  ///< belongs to the window
};

}  // namespace tarnwell
