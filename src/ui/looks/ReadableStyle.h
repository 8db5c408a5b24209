// The desktop's style, with what has the focus and where controls end made plain in every theme.
#pragma once

#include <QProxyStyle>

namespace tarnwell {

/// A frame around what has the focus, thick enough to be seen on any background that `colour` is
/// seen on.
void drawFocusFrame(QPainter& painter, const QRect& rect, const QColor& colour);

/// The contrast ratio of WCAG 2.1, from 1 to 21.
double contrast(const QColor& one, const QColor& other);

class ReadableStyle final : public QProxyStyle {
  public:
    /// Gives the application this style, once.
    static void use();

    using QProxyStyle::polish;
    void polish(QPalette& palette) override;
    int pixelMetric(PixelMetric metric, const QStyleOption* option,
                    const QWidget* widget) const override;
    QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& contents,
                           const QWidget* widget) const override;
    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override;
    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                            QPainter* painter, const QWidget* widget) const override;
};

}  // namespace tarnwell
