// A value cell on a settings page: a bordered field that opens the value editor.
#pragma once

#include <QAbstractButton>

#include "command/Standing.h"
#include "settings/SettingCells.h"

namespace tarnwell {

class SettingCell final : public QAbstractButton {
    Q_OBJECT
  public:
    SettingCell(int cell, QWidget* page);

    int cell() const { return m_cell; }
    struct Look {
        QString caption;
        CellColour colour;
        QString misfit;  ///< what is wrong with the value, which then is underlined
        Standing::Kind kind;
        QString standing;
    };
    void show(const Look& look);

    /// The lines of the tooltip below the catalog's own text.
    void showPlace(const QString& place);

    QSize sizeHint() const override { return size(); }

  Q_SIGNALS:
    /// The user wants the next cell in a direction: one of the arrow keys.
    void arrowPressed(SettingCell* from, int key);

    void characterTyped(char character);

    /// The user wants the cell's menu at a place on the screen.
    void menuWanted(const QPoint& place);

  protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

  private:
    int m_cell;
    QColor m_background;
    Standing::Kind m_kind = Standing::Kind::NoValue;
};

}  // namespace tarnwell
