// The data editor's grid: browsing, clicks and the edit box over the current cell.
#pragma once

#include <QTableView>
#include <QTimer>

#include "ui/widgets/CellEditBox.h"
#include "ui/widgets/GridModel.h"

namespace tarnwell {

class GridView final : public QTableView {
    Q_OBJECT
  public:
    GridView(Program& program, QWidget* parent);

    /// Gives the rows their height and shows the grid's texts.
    void setUp();

    /// Gives the columns what the window is wider than designed.
    void layOut(int extraWidth);

    /// The room of a character among the texts of a row.
    static QRect characterPlace(const QRect& texts, int offset);

    /// The column of the bytes at `offset` in their rows.
    QRect columnPlace(int offset) const;

    void refill() { m_model.refill(); }
    void refresh(GridCell cell) { m_model.refresh(cell); }
    void showCurrentCell();
    void openEditBox(EditSelection selection);
    void refreshEditBox() { m_editBox.refreshText(); }
    void closeEditBox();

  Q_SIGNALS:
    void columnsLaidOut();

    /// The user wants to fill or to save the selection.
    void fillWanted();
    void saveWanted();

    /// And to name the current byte.
    void nameWanted();

  protected:
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;

  private:
    bool browse(const QKeyEvent& event);
    void paste();
    int visibleRows() const;
    void layOutColumns();
    void placeEditBox();
    void showSelection();
    void dragOn();
    GridCell cellTowards(QPoint place) const;
    int columnTowards(int x) const;

    DataGrid& m_grid;
    CellEditor& m_editor;
    const Selection& m_selection;
    const ProgramState& m_state;
    GridModel m_model;
    CellEditBox m_editBox;
    QTimer m_dragTimer;
    int m_extraWidth = 0;
    QPoint m_dragPlace;  ///< where the mouse was last
    bool m_drags = false;
    bool m_scrollingToCell = false;
};

}  // namespace tarnwell
