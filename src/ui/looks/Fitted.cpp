#include "ui/looks/Fitted.h"

#include <QFontMetrics>
#include <QPainter>

#include "ui/looks/Colours.h"
#include "ui/looks/Measures.h"
#include "ui/looks/ReadableStyle.h"

namespace tarnwell {

FittedLabel::FittedLabel(QWidget* parent) : QLabel(parent) {
    setTextFormat(Qt::PlainText);
}

void FittedLabel::setColours(const QColor& background, const QColor& text) {
    m_colours = {background, text};
    update();
}

void FittedLabel::paintEvent(QPaintEvent* event) {
    if (m_colours) {
        QPainter painter(this);
        return paintColoured(painter);
    }
    if (fontMetrics().horizontalAdvance(text()) <= contentsRect().width()) {
        QLabel::paintEvent(event);
        return;
    }
    QPainter painter(this);
    drawFrame(&painter);
    painter.setPen(
        palette().color(isEnabled() ? QPalette::Active : QPalette::Disabled, foregroundRole()));
    drawFitted(painter, contentsRect(), alignment(), text());
}

void FittedLabel::paintColoured(QPainter& painter) {
    drawFrame(&painter);
    painter.fillRect(
        frameRect().marginsRemoved({frameWidth(), frameWidth(), frameWidth(), frameWidth()}),
        m_colours->background);
    painter.setPen(isEnabled() ? m_colours->text
                               : colours::dimmed(m_colours->text, m_colours->background));
    drawFitted(painter, contentsRect(), alignment(), text());
    if (hasFocus())
        drawFocusFrame(painter, contentsRect(), m_colours->text);
}

void drawFitted(QPainter& painter, const QRect& room, Qt::Alignment alignment,
                const QString& text) {
    const int width = painter.fontMetrics().horizontalAdvance(text);
    if (width <= room.width()) {
        painter.drawText(room, static_cast<int>(alignment | Qt::TextSingleLine), text);
        return;
    }
    painter.save();
    painter.translate(room.left(), 0);
    painter.scale(static_cast<double>(room.width()) / width, 1);
    painter.drawText(QRect(0, room.top(), width + 1, room.height()),
                     static_cast<int>((alignment & Qt::AlignVertical_Mask) | Qt::TextSingleLine),
                     text);
    painter.restore();
}

void fitCaption(QAbstractButton& button, int besides) {
    QString caption = button.text();
    caption.remove(QLatin1Char('&'));
    const int room = button.width() - scaled(besides);
    const int width = button.fontMetrics().horizontalAdvance(caption);
    if (width <= room || room <= 0)
        return;
    QFont font = button.font();
    font.setPixelSize(qMax(1, button.fontInfo().pixelSize() * room / width));
    button.setFont(font);
}

}  // namespace tarnwell

#include "moc_Fitted.cpp"
