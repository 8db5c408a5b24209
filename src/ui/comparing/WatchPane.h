// Watching the device of a side: what changes, with the time, and what is left out.
#pragma once

#include <QCheckBox>
#include <QLabel>
#include <QPushButton>
#include <QTimer>
#include <QTreeWidget>
#include <functional>

#include "program/Program.h"

namespace tarnwell {

/// Is seen while it watches, and as long as there is a change.
class WatchPane final : public QWidget {
    Q_OBJECT
  public:
    /// `run` runs the program's commands.
    WatchPane(Program& program, std::function<void(const std::function<void()>&)> run);

    /// By which it is switched on, for a place outside the pane.
    QCheckBox& box() { return m_box; }

    /// Reads nothing until the next call of `goOn`: a command runs.
    void hold() { m_timer.stop(); }

    /// What a side is may be another device, or hold what a command wrote.
    void goOn();

  Q_SIGNALS:
    /// Another reading has brought changes; the comparison knows of them.
    void found();

    /// The pane came or went.
    void seen();

  private:
    void buildTable();
    void step();
    void ignore();
    void clear();
    void showChanges();
    void showState();
    std::string selectedRows(char separator) const;

    Program& m_program;
    const std::function<void(const std::function<void()>&)> m_run;
    QTimer m_timer;
    QCheckBox m_box;
    QLabel m_state;
    QTreeWidget m_table;
    QPushButton m_ignore;
    QPushButton m_clear;
};

}  // namespace tarnwell
