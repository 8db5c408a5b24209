#include "ui/ReadableStyle.h"

#include <QApplication>
#include <QPainter>
#include <QStyleOption>

namespace tarnwell {

namespace {

constexpr int kFocusWidth = 2;
constexpr double kCorner = 2;
constexpr int kDarkest = 100;  // lightness up to which a window counts as dark

bool isDark(const QStyleOption& option) {
    return option.palette.color(QPalette::Window).lightness() <= kDarkest;
}

/// Styles draw edges as shadows, which are not seen on a dark window.
void drawEdge(QPainter& painter, const QStyleOption& option, const QRect& rect, double radius) {
    QColor colour = option.palette.color(QPalette::WindowText);
    colour.setAlphaF(0.6F);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(colour);
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(QRectF(rect).adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);
    painter.restore();
}

}  // namespace

void drawFocusFrame(QPainter& painter, const QRect& rect, const QColor& colour) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.setPen(QPen(colour, kFocusWidth, Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(rect.adjusted(1, 1, -1, -1));
    painter.restore();
}

void ReadableStyle::use() {
    static bool used = false;
    if (!std::exchange(used, true))
        QApplication::setStyle(new ReadableStyle);
}

/// Boxes and circles grow with the text beside them.
int ReadableStyle::pixelMetric(PixelMetric metric, const QStyleOption* option,
                               const QWidget* widget) const {
    const int given = QProxyStyle::pixelMetric(metric, option, widget);
    switch (metric) {
        case PM_IndicatorWidth:
        case PM_IndicatorHeight:
        case PM_ExclusiveIndicatorWidth:
        case PM_ExclusiveIndicatorHeight:
            return qMax(given, QFontMetrics(QApplication::font()).ascent());
        default:
            return given;
    }
}

void ReadableStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option,
                                  QPainter* painter, const QWidget* widget) const {
    const QColor text = option->palette.color(QPalette::WindowText);
    if (element == PE_FrameFocusRect)
        return drawFocusFrame(*painter, option->rect, text);
    QProxyStyle::drawPrimitive(element, option, painter, widget);
    const bool focused = option->state.testFlag(State_HasFocus);
    switch (element) {
        case PE_IndicatorRadioButton:
            return drawEdge(*painter, *option, option->rect, option->rect.width() / 2.0);
        case PE_IndicatorCheckBox:
            return drawEdge(*painter, *option, option->rect, kCorner);
        case PE_PanelButtonCommand:
            if (focused)
                return drawFocusFrame(*painter, option->rect, text);
            [[fallthrough]];
        case PE_FrameLineEdit:
        case PE_Frame:
        case PE_PanelMenu:
            if (isDark(*option) && !focused)
                drawEdge(*painter, *option, option->rect, kCorner);
            return;
        default:
            return;
    }
}

void ReadableStyle::drawControl(ControlElement element, const QStyleOption* option,
                                QPainter* painter, const QWidget* widget) const {
    QProxyStyle::drawControl(element, option, painter, widget);
    const bool selectedTab =
        element == CE_TabBarTabShape && option->state.testFlag(State_Selected);
    if (!selectedTab || !isDark(*option))
        return;
    QRect line = option->rect.adjusted(3, 0, -3, 0);
    line.setHeight(kFocusWidth);
    painter->fillRect(line, option->palette.color(QPalette::WindowText));
}

void ReadableStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                                       QPainter* painter, const QWidget* widget) const {
    QProxyStyle::drawComplexControl(control, option, painter, widget);
    if (control == CC_ScrollBar && isDark(*option))
        drawEdge(*painter, *option,
                 proxy()->subControlRect(control, option, SC_ScrollBarSlider, widget), kCorner);
}

}  // namespace tarnwell
