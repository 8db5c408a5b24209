// The images that the program kept by itself, to look at and to go back to.
#pragma once

#include <QDialog>
#include <QPushButton>

#include "program/Program.h"
#include "ui/widgets/RowTable.h"

namespace tarnwell {

class FormBackups final : public QDialog {
  public:
    /// Shown to go back to one of them, or to pick one for a comparison that is open already.
    enum class Purpose { Restore, Pick };

    /// How it ends.
    enum class Choice { Load = 10, Restore, Compare, ShowFolder };

    /// Those of a folder.
    FormBackups(const Program& program, const std::string& folder, Purpose purpose,
                QWidget* parent);

    ~FormBackups() override;

    /// The image of the selected row.
    const KeptImage& selected() const;

  private:
    void addRow(const KeptImage& kept);
    QPushButton* addButton(const char* name, const QString& text, Choice choice);
    void enableButtons();

    const Program& m_program;
    const std::vector<KeptImage> m_kept;
    RowTable m_table;
    QList<QPushButton*> m_rowButtons;
};

}  // namespace tarnwell
