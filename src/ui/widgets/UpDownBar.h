// A vertical scroll bar that is just its two arrows; the value grows upward.
#pragma once

#include <QScrollBar>

namespace tarnwell {

class UpDownBar final : public QScrollBar {
  public:
    explicit UpDownBar(QWidget* parent);

    /// The values that the bottom and the top arrow lead to.
    void setEnds(int bottom, int top);

  protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

  private:
    void drawArrow(QPainter& painter, const QRect& room, bool up);

    enum class Pressed { None, Up, Down };
    Pressed m_pressed = Pressed::None;
    int m_wheel = 0;
};

}  // namespace tarnwell
