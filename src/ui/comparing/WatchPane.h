// Watching the device of a side: what changes, with the time, and what is left out.
#pragma once

#include <QCheckBox>
#include <QLabel>
#include <QPushButton>
#include <QTimer>
#include <QTreeWidget>
#include <functional>

#include "program/Program.h"
#include "ui/desktop/RowList.h"

namespace tarnwell {

/// Is seen while it watches, and as long as there is a change.
class WatchPane final : public QWidget {
    Q_OBJECT
  public:
    /// `run` runs the program's commands, `name` names the bytes of rows.
    WatchPane(Program& program, std::function<void(const std::function<void()>&)> run,
              NameBytes nameBytes);

    /// By which it is switched on, for a place outside the pane.
    QCheckBox& box() { return m_box; }

    /// Reads nothing until the next call of `goOn`: a command runs.
    void hold() { m_timer.stop(); }

    /// The rows have other names.
    void rename();

    /// What a side is may be another device, or hold what a command wrote.
    void goOn();

  Q_SIGNALS:
    /// Another reading has brought changes; the comparison knows of them.
    void found();

    /// A byte may have another name.
    void renamed();

    /// The pane came or went.
    void seen();

  private:
    void buildTable();
    void step();
    void ignore();
    void name();
    void clear();
    void showChanges();
    void showState();
    std::string selectedRows(char separator) const;

    Program& m_program;
    const std::function<void(const std::function<void()>&)> m_run;
    const NameBytes m_name;
    QTimer m_timer;
    QCheckBox m_box;
    QLabel m_state;
    QTreeWidget m_table;
    QPushButton m_ignore;
    QPushButton m_clear;
};

}  // namespace tarnwell
