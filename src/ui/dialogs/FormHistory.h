// What happened to a television set, and taking it back.
#pragma once

#include <QBoxLayout>
#include <QCheckBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTreeWidget>
#include <functional>

#include "program/Program.h"
#include "ui/widgets/CoursePicture.h"

namespace tarnwell {

class FormHistory final : public QDialog {
  public:
    /// `run` runs the program's commands.
    FormHistory(Program& program, User& user, const TvSet& set,
                std::function<void(const std::function<void()>&)> run, QWidget* parent);

    ~FormHistory() override;

  protected:
    void done(int result) override;

  private:
    void addFilter(QBoxLayout& layout);
    void buildTable();
    void addButtons(QBoxLayout& layout);
    void read();
    void showEvents();
    void unfold(QTreeWidgetItem& item);
    std::vector<HistoryEvent> selected() const;
    TakenEvents taken() const;
    void enableButtons();
    void takeBack();
    void goBack();

    Program& m_program;
    User& m_user;
    const TvSet m_set;
    const std::function<void(const std::function<void()>&)> m_run;
    SetHistory m_history;
    std::vector<HistoryEvent> m_events;  ///< that are shown
    QLineEdit m_filter;
    QCheckBox m_settingsOnly;
    QTreeWidget m_table;
    QLabel m_skipped;
    CoursePicture m_course;
    QCheckBox m_alsoNewer;
    QPushButton m_takeBack;
    QPushButton m_goBack;
    QPushButton m_saveList;
    QPushButton m_close;
};

}  // namespace tarnwell
