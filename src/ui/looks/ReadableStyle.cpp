#include "ui/looks/ReadableStyle.h"

#include <QApplication>
#include <QLineEdit>
#include <QPainter>
#include <QStyleOption>
#include <algorithm>
#include <cmath>

namespace tarnwell {

namespace {

constexpr int kFocusWidth = 2;
constexpr double kCorner = 2;
constexpr double kReadableContrast = 4.5;  // WCAG 2.1, 1.4.3
constexpr int kDarkest = 100;              // lightness up to which a window counts as dark

bool isDark(const QStyleOption& option) {
    return option.palette.color(QPalette::Window).lightness() <= kDarkest;
}

/// Relative luminance as WCAG 2.1 defines it, 0 to 1.
double luminance(const QColor& colour) {
    const auto linear = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
           0.0722 * linear(colour.blueF());
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

double contrast(const QColor& one, const QColor& other) {
    const auto [dark, light] = std::minmax({luminance(one), luminance(other)});
    return (light + 0.05) / (dark + 0.05);
}

void drawFocusFrame(QPainter& painter, const QRect& rect, const QColor& colour) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.setPen(QPen(colour, kFocusWidth, Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(rect.adjusted(1, 1, -1, -1));
    painter.restore();
}

void ReadableStyle::use() {
    [[maybe_unused]] static const QStyle* const used = [] {
        auto* style = new ReadableStyle;
        QApplication::setStyle(style);
        return style;
    }();
}

/// Many a style's highlight is too light for the text selected on it.
void ReadableStyle::polish(QPalette& palette) {
    QProxyStyle::polish(palette);
    const QColor text = palette.color(QPalette::HighlightedText);
    const bool lightText = text.lightness() > palette.color(QPalette::Highlight).lightness();
    constexpr int kSteps = 30;
    for (int step = 0; step < kSteps; ++step) {
        const QColor background = palette.color(QPalette::Highlight);
        if (contrast(text, background) >= kReadableContrast)
            return;
        palette.setColor(QPalette::Highlight,
                         lightText ? background.darker(105) : background.lighter(105));
    }
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

/// The frame around a row stands beside its text.
QSize ReadableStyle::sizeFromContents(ContentsType type, const QStyleOption* option,
                                      const QSize& contents, const QWidget* widget) const {
    const QSize given = QProxyStyle::sizeFromContents(type, option, contents, widget);
    return type == CT_ItemViewItem ? given + QSize(0, 2 * kFocusWidth) : given;
}

/// Where a caret alone would show the focus.
static bool isEmptyLine(const QWidget* widget) {
    const auto* line = qobject_cast<const QLineEdit*>(widget);
    return line != nullptr && line->text().isEmpty();
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
        case PE_Frame:
            if (focused && widget != nullptr && widget->inherits("QPlainTextEdit"))
                return drawFocusFrame(*painter, option->rect, text);
            [[fallthrough]];
        case PE_FrameLineEdit:
            if (focused && isEmptyLine(widget))
                return drawFocusFrame(*painter, option->rect, text);
            [[fallthrough]];
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
    if (element != CE_TabBarTabShape || !option->state.testFlag(State_Selected))
        return;
    const QColor text = option->palette.color(QPalette::WindowText);
    if (option->state.testFlag(State_HasFocus))
        return drawFocusFrame(*painter, option->rect.adjusted(3, 3, -3, -3), text);
    if (!isDark(*option))
        return;
    QRect line = option->rect.adjusted(3, 0, -3, 0);
    line.setHeight(kFocusWidth);
    painter->fillRect(line, text);
}

void ReadableStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                                       QPainter* painter, const QWidget* widget) const {
    QProxyStyle::drawComplexControl(control, option, painter, widget);
    if (control == CC_ScrollBar && isDark(*option))
        drawEdge(*painter, *option,
                 proxy()->subControlRect(control, option, SC_ScrollBarSlider, widget), kCorner);
}

}  // namespace tarnwell
