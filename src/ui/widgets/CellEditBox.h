// The edit box that floats over the grid's current cell.
#pragma once

#include <QLineEdit>

#include "editor/CellEditor.h"

namespace tarnwell {

class CellEditBox final : public QLineEdit {
    Q_OBJECT
  public:
    CellEditBox(DataGrid& grid, CellEditor& editor, const ProgramState& state, QWidget* parent);

    /// Shows the grid's entry; its first character is kept even if the filter would drop it.
    void open(EditSelection selection);

    /// Shows the text that the program gave the entry.
    void refreshText();

  protected:
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    bool actOn(const QKeyEvent& event);
    void takeEditedText(const QString& edited);

    DataGrid& m_grid;
    CellEditor& m_editor;
    const ProgramState& m_state;
    QString m_foreign;  ///< the unfiltered character that opened the box
};

}  // namespace tarnwell
