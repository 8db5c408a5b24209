// The edit box that floats over the grid's current cell.
#pragma once

#include <QLineEdit>

#include "editor/CellEditor.h"
#include "editor/Selection.h"

namespace tarnwell {

/// Copies the selection as a text in `mode`, which this program pastes as the same bytes in any.
void copyBytes(const Selection& selection, NumberMode mode);

/// What was copied, here or elsewhere.
std::string bytesToPaste();

class CellEditBox final : public QLineEdit {
  public:
    CellEditBox(DataGrid& grid, CellEditor& editor, const ProgramState& state, QWidget* parent);

    /// Shows the grid's entry; its first character is kept even if the filter would drop it.
    void open(EditSelection selection);

    /// Shows the text that the program gave the entry.
    void refreshText();

    /// Takes the focus back while the entry is open.
    void keepFocus();

  protected:
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void inputMethodEvent(QInputMethodEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

  private:
    bool actOn(const QKeyEvent& event);

    /// Whether the key filter leaves anything of `text`.
    bool enters(const QString& text) const;

    /// Enters `text` into cell after cell if it is several bytes.
    bool pasteBytes(const QString& text);
    void takeEditedText(const QString& edited);

    DataGrid& m_grid;
    CellEditor& m_editor;
    const ProgramState& m_state;
    QString m_foreign;  ///< the unfiltered character that opened the box
};

}  // namespace tarnwell
