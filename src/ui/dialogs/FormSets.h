// The television sets that records are kept of.
#pragma once

#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <functional>

#include "program/Program.h"
#include "ui/widgets/RowTable.h"

namespace tarnwell {

/// Several lines of text, with room for the focus frame around them.
class NotesEdit final : public QPlainTextEdit {
  public:
    NotesEdit() { setViewportMargins(2, 2, 2, 2); }
};

class FormSets final : public QDialog {
  public:
    /// How it ends.
    enum class Choice { Use = 10, UseNone, History, Backups, ShowFolder };

    /// `run` runs the program's commands.
    FormSets(Program& program, std::function<void(const std::function<void()>&)> run,
             QWidget* parent);

    ~FormSets() override;

    /// The set of the selected row; null if there is none.
    const TvSet* selected() const;

  protected:
    void done(int result) override;

  private:
    QPushButton* addButton(const char* name, const QString& text, std::function<void()> pressed);
    void addTexts();
    void addButtons();
    void fill(const std::string& folder);
    void addRow(const TvSet& set);
    void showSelection();
    void saveTexts();
    void make();
    void rename();
    void remove();

    Program& m_program;
    const std::function<void(const std::function<void()>&)> m_run;
    SetList m_sets;
    RowTable m_table;
    QLineEdit m_model;
    NotesEdit m_notes;
    QLabel m_damaged;
    QList<QPushButton*> m_rowButtons;
    std::optional<TvSet> m_shown;  ///< whose texts stand there
};

}  // namespace tarnwell
