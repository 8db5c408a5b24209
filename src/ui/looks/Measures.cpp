#include "ui/looks/Measures.h"

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

/// The title bar, as far as it matters: its height, and how much of it must show.
constexpr int kTitleHeight = 300;
constexpr int kTitleShown = 1320;

QList<QRect> screenAreas() {
    QList<QRect> areas;
    for (const QScreen* screen : QGuiApplication::screens())
        areas.append(screen->availableGeometry());
    return areas;
}

bool showsTitle(const QRect& frame, const QRect& screen) {
    const QRect title(frame.topLeft(), QSize(frame.width(), scaled(kTitleHeight)));
    const QRect shown = title & screen;
    return shown.width() >= qMin(title.width(), scaled(kTitleShown)) &&
           shown.height() >= title.height() / 2;
}

/// The corner at which the frame is inside the screen, its upper left part if it is too large.
QPoint inside(const QRect& frame, const QRect& screen) {
    const auto kept = [](int from, int first, int last) { return qMax(first, qMin(from, last)); };
    return {kept(frame.left(), screen.left(), screen.right() + 1 - frame.width()),
            kept(frame.top(), screen.top(), screen.bottom() + 1 - frame.height())};
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

std::string textOf(QSize size) {
    return std::to_string(size.width()) + ' ' + std::to_string(size.height());
}

std::optional<QSize> sizeFrom(const std::string& text) {
    const QStringList kept = QString::fromStdString(text).split(' ');
    return kept.size() == 2 ? std::optional(QSize(kept[0].toInt(), kept[1].toInt())) : std::nullopt;
}

int screenTwips(int pixels) {
    return static_cast<int>(std::lround(pixels * kTwipsPerPixel));
}

int screenPixels(int twips) {
    return static_cast<int>(std::lround(twips / kTwipsPerPixel));
}

QSize roomFor(const QWidget& window) {
    return window.screen()->availableGeometry().size() - kWindowFrame;
}

QPoint broughtBack(const QRect& frame, const QList<QRect>& screens) {
    const auto shows = [&](const QRect& screen) { return showsTitle(frame, screen); };
    if (screens.isEmpty() || std::ranges::any_of(screens, shows))
        return frame.topLeft();
    QList<QPoint> corners;
    for (const QRect& screen : screens)
        corners.append(inside(frame, screen));
    return *std::ranges::min_element(
        corners, {}, [&](QPoint corner) { return (corner - frame.topLeft()).manhattanLength(); });
}

void ScreenPlace::place(QWidget& window, WindowPlace place) {
    m_place = place;
    m_pixels = {screenPixels(place.left), screenPixels(place.top)};
    window.move(m_pixels);
    bringBack(window);
}

void ScreenPlace::placeBeside(QWidget& window, WindowPlace place, const QRect& shown) {
    m_place = place;
    const QScreen* screen = QGuiApplication::screenAt(shown.center());
    const QRect room = (screen != nullptr ? screen : window.screen())->availableGeometry();
    const int gap = scaled(60);
    QRect frame({shown.right() + gap, shown.top()}, window.size() + kWindowFrame);
    if (frame.right() > room.right())
        frame.moveRight(shown.left() - gap);
    m_pixels = inside(frame, room);
    window.move(m_pixels);
}

void ScreenPlace::bringBack(QWidget& window) {
    QRect frame(window.pos(), window.frameSize());
    if (frame.height() == window.height())  // not shown yet: it has no title bar
        frame.setHeight(frame.height() + scaled(kTitleHeight));
    const QPoint corner = broughtBack(frame, screenAreas());
    if (corner == window.pos())
        return;
    m_pixels = corner;
    m_place = {screenTwips(corner.y()), screenTwips(corner.x())};
    window.move(corner);
}

WindowPlace ScreenPlace::of(const QWidget& window) const {
    if (window.pos() == m_pixels)
        return m_place;
    return {screenTwips(window.pos().y()), screenTwips(window.pos().x())};
}

}  // namespace tarnwell
