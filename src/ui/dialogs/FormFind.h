// Asks for the bytes or the text to find; it stays open beside the window that shows them.
#pragma once

#include <QComboBox>
#include <QCompleter>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QStringListModel>

#include "editor/Find.h"

namespace tarnwell {

class FormFind final : public QDialog {
    Q_OBJECT
  public:
    FormFind(Find& find, QWidget* parent);

    /// Brings the dialog up, with its text marked, for the kind that is given or else the last.
    /// `names` are offered while one is typed.
    void ask(std::optional<FindKind> wanted, const QStringList& names);

  Q_SIGNALS:
    /// `Find` knows what is looked for.
    void wanted(FindDirection direction);

  private:
    FindKind kind() const { return static_cast<FindKind>(m_kind.currentIndex()); }
    void look(FindDirection direction);
    void placeBelow();
    void showKind();

    Find& m_find;
    QComboBox m_kind;
    QLineEdit m_text;
    QStringListModel m_names;
    QCompleter m_completer;
    QLabel m_problem;
};

}  // namespace tarnwell
