#include "ui/widgets/UpDownBar.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QStyleOptionButton>
#include <QWheelEvent>

#include "ui/looks/ReadableStyle.h"

namespace tarnwell {

namespace {

constexpr int kWheelNotch = 120;

}  // namespace

UpDownBar::UpDownBar(QWidget* parent) : QScrollBar(Qt::Vertical, parent) {
    setFocusPolicy(Qt::StrongFocus);
    setSingleStep(1);
}

void UpDownBar::setEnds(int bottom, int top) {
    setRange(bottom, top);
    setPageStep(qMax(1, (top - bottom + 1) / 16));
}

void UpDownBar::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    drawArrow(painter, {0, 0, width(), height() / 2}, true);
    drawArrow(painter, {0, height() / 2, width(), height() - height() / 2}, false);
    if (hasFocus())
        drawFocusFrame(painter, rect(), palette().color(QPalette::WindowText));
}

void UpDownBar::drawArrow(QPainter& painter, const QRect& room, bool up) {
    QStyleOptionButton option;
    option.initFrom(this);
    option.rect = room;
    const bool down = m_pressed == (up ? Pressed::Up : Pressed::Down);
    option.state.setFlag(QStyle::State_Sunken, down);
    option.state.setFlag(QStyle::State_Raised, !down);
    option.state.setFlag(QStyle::State_HasFocus, false);
    style()->drawPrimitive(QStyle::PE_PanelButtonCommand, &option, &painter, this);
    const int side = room.height() / 2;
    option.rect = QRect(room.center().x() - side / 2, room.center().y() - side / 2, side, side);
    style()->drawPrimitive(up ? QStyle::PE_IndicatorArrowUp : QStyle::PE_IndicatorArrowDown,
                           &option, &painter, this);
}

void UpDownBar::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton)
        return;
    const bool up = event->position().y() < height() / 2.0;
    m_pressed = up ? Pressed::Up : Pressed::Down;
    triggerAction(up ? SliderSingleStepAdd : SliderSingleStepSub);
    setRepeatAction(up ? SliderSingleStepAdd : SliderSingleStepSub);
    update();
}

void UpDownBar::mouseMoveEvent(QMouseEvent* event) {
    event->accept();
}

void UpDownBar::mouseReleaseEvent(QMouseEvent* /*event*/) {
    setRepeatAction(SliderNoAction);
    m_pressed = Pressed::None;
    update();
}

void UpDownBar::contextMenuEvent(QContextMenuEvent* event) {
    event->accept();
}

void UpDownBar::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
        case Qt::Key_Up:
            return triggerAction(SliderSingleStepAdd);
        case Qt::Key_Down:
            return triggerAction(SliderSingleStepSub);
        case Qt::Key_PageUp:
            return triggerAction(SliderPageStepAdd);
        case Qt::Key_PageDown:
            return triggerAction(SliderPageStepSub);
        case Qt::Key_Home:
            return triggerAction(SliderToMaximum);
        case Qt::Key_End:
            return triggerAction(SliderToMinimum);
        default:
            QWidget::keyPressEvent(event);
    }
}

void UpDownBar::wheelEvent(QWheelEvent* event) {
    m_wheel += event->angleDelta().y();
    for (; m_wheel >= kWheelNotch; m_wheel -= kWheelNotch)
        triggerAction(SliderSingleStepAdd);
    for (; m_wheel <= -kWheelNotch; m_wheel += kWheelNotch)
        triggerAction(SliderSingleStepSub);
    event->accept();
}

}  // namespace tarnwell
