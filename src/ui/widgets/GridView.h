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
    void copy();
    void paste();
    int visibleRows() const;
    void layOutColumns();
    void placeEditBox();
    void showSelection();
    void dragOn();
    GridCell cellTowards(QPoint place) const;

    DataGrid& m_grid;
    CellEditor& m_editor;
    const ProgramState& m_state;
    GridModel m_model;
    CellEditBox m_editBox;
    QTimer m_dragTimer;
    QPoint m_dragPlace;  ///< where the mouse was last
    bool m_drags = false;
    bool m_scrollingToCell = false;
};

}  // namespace tarnwell
