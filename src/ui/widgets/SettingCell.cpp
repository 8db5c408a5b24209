#include "ui/widgets/SettingCell.h"

#include <QKeyEvent>
#include <QPainter>
#include <QStyleOptionFrame>

#include "ui/looks/Colours.h"
#include "ui/looks/Fitted.h"
#include "ui/looks/Measures.h"
#include "ui/looks/ReadableStyle.h"
#include "ui/looks/Text.h"
#include "ui/widgets/StandingMark.h"

namespace tarnwell {

SettingCell::SettingCell(int cell, QWidget* page) : QAbstractButton(page), m_cell(cell) {
    setObjectName(elementName("lblSetting", cell));
    setFont(scaledFont(9.75, Weight::Bold));
    setFocusPolicy(Qt::StrongFocus);
}

void SettingCell::showPlace(const QString& place) {
    const QString own = toQt(Cell(m_cell).setting->cellTooltip);
    setToolTip(own.isEmpty() ? place : own + QLatin1Char('\n') + place);
}

void SettingCell::show(const Look& look) {
    setText(look.caption);
    m_kind = look.kind;
    const bool noValue = m_kind == Standing::Kind::NoValue;
    QFont marked = scaledFont(9.75, noValue ? Weight::Normal : Weight::Bold);
    marked.setUnderline(!look.misfit.isEmpty());
    if (marked != font())
        setFont(marked);
    m_background = colours::of(look.colour);
    setAccessibleName(toQt(CellTitle(m_cell)) + QLatin1Char(' ') + look.caption);
    const Setting& setting = *Cell(m_cell).setting;
    QStringList parts{toQt(setting.description),
                      QStringLiteral("from 0 to %1").arg(setting.maximum), look.misfit,
                      look.standing};
    parts.removeAll(QString());
    setAccessibleDescription(parts.join(QStringLiteral(", ")));
    update();
}

void SettingCell::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    QStyleOptionFrame frame;
    frame.initFrom(this);
    frame.frameShape = QFrame::Panel;
    frame.lineWidth = 1;
    frame.state |= QStyle::State_Sunken;
    style()->drawControl(QStyle::CE_ShapedFrame, &frame, &painter, this);
    painter.fillRect(rect().adjusted(1, 1, -1, -1), m_background);
    drawStanding(painter, rect().adjusted(1, 1, -1, -1), m_kind);
    painter.setPen(m_kind == Standing::Kind::NoValue ? colours::paler(colours::kValueText)
                                                     : colours::kValueText);
    drawFitted(painter, rect().adjusted(2, 1, -2, -1), Qt::AlignCenter, text());
    if (hasFocus())
        drawFocusFrame(painter, rect().adjusted(3, 3, -3, -3), colours::kText);
}

void SettingCell::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
        case Qt::Key_Return:
        case Qt::Key_Enter:
            click();
            return;
        case Qt::Key_Left:
        case Qt::Key_Right:
        case Qt::Key_Up:
        case Qt::Key_Down:
            Q_EMIT arrowPressed(this, event->key());
            return;
        default:
            break;
    }
    const bool typed = event->text().size() == 1 && event->text().front().isLetterOrNumber() &&
                       !(event->modifiers() & (Qt::ControlModifier | Qt::AltModifier));
    if (typed)
        Q_EMIT characterTyped(event->text().front().toLatin1());
    else
        QAbstractButton::keyPressEvent(event);
}

void SettingCell::contextMenuEvent(QContextMenuEvent* event) {
    setFocus(Qt::OtherFocusReason);
    Q_EMIT menuWanted(event->reason() == QContextMenuEvent::Mouse
                          ? event->globalPos()
                          : mapToGlobal(rect().bottomLeft()));
}

}  // namespace tarnwell

#include "moc_SettingCell.cpp"
