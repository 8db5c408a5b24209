#include "ui/Measures.h"

#include <QApplication>
#include <QFontMetrics>
#include <QScreen>
#include <QWidget>
#include <algorithm>
#include <cmath>

namespace tarnwell {

namespace {

constexpr double kTwipsPerPixel = 15.0;
constexpr double kDesignLineHeight = 13.0;
constexpr double kPixelsPerPoint = 96.0 / 72.0;

constexpr WindowPlace kDefaultPlace{144, 144};

bool isOnScreen(QPoint corner) {
    const QList<QScreen*> screens = QGuiApplication::screens();
    return std::any_of(screens.begin(), screens.end(), [&](const QScreen* screen) {
        return screen->availableGeometry().intersects({corner, QSize(scaled(1320), scaled(300))});
    });
}

double fontScale() {
    return QFontMetrics(QApplication::font()).height() / kDesignLineHeight;
}

}  // namespace

int scaled(int twips) {
    return static_cast<int>(std::lround(twips / kTwipsPerPixel * fontScale()));
}

QRect scaledRect(int left, int top, int width, int height) {
    return {scaled(left), scaled(top), scaled(width), scaled(height)};
}

QFont scaledFont(double points, Weight weight) {
    QFont font = QApplication::font();
    font.setPixelSize(static_cast<int>(std::lround(points * kPixelsPerPoint * fontScale())));
    font.setBold(weight == Weight::Bold);
    return font;
}

int screenTwips(int pixels) {
    return static_cast<int>(std::lround(pixels * kTwipsPerPixel));
}

int screenPixels(int twips) {
    return static_cast<int>(std::lround(twips / kTwipsPerPixel));
}

void ScreenPlace::place(QWidget& window, WindowPlace place) {
    m_place = place;
    m_pixels = {screenPixels(place.left), screenPixels(place.top)};
    if (!isOnScreen(m_pixels)) {
        m_place = kDefaultPlace;
        m_pixels = {screenPixels(m_place.left), screenPixels(m_place.top)};
    }
    window.move(m_pixels);
}

WindowPlace ScreenPlace::of(const QWidget& window) const {
    if (window.pos() == m_pixels)
        return m_place;
    return {screenTwips(window.pos().y()), screenTwips(window.pos().x())};
}

}  // namespace tarnwell
