// The design's measures, scaled to the user's font.
#pragma once

#include <QFont>
#include <QList>
#include <QPoint>
#include <QRect>
#include <optional>
#include <string>

#include "core/options/Options.h"

class QWidget;

namespace tarnwell {

/// Pixels of a size in twips. The design's font has lines of 13 pixels, at which 15 twips are one
/// pixel; all sizes grow with the line height of the user's font.
int scaled(int twips);

/// A rectangle given in twips as left, top, width and height.
QRect scaledRect(int left, int top, int width, int height);

enum class Weight { Normal, Bold };

/// The user's font at a size of the design, in points.
QFont scaledFont(double points, Weight weight);

/// A window's size as an option keeps it, "WIDTH HEIGHT" in pixels; nothing from any other text.
std::string textOf(QSize size);
std::optional<QSize> sizeFrom(const std::string& text);

/// Positions on the screen: 15 twips a logical pixel, whatever the font.
int screenTwips(int pixels);
int screenPixels(int twips);

/// Where a window's frame has to be so that it can be grasped by its title: where it is if enough
/// of the title shows on one of the screens, else inside the screen that is nearest.
QPoint broughtBack(const QRect& frame, const QList<QRect>& screens);

/// A window's place on the screen in twips. It reads back as it was set while the window has not
/// been moved, though a pixel is many twips. It is always on a screen that exists.
class ScreenPlace {
  public:
    /// The window has its size.
    void place(QWidget& window, WindowPlace place);
    WindowPlace of(const QWidget& window) const;

    /// Beside what is shown at `shown` on the screen; it reads back as `place` until it is moved.
    void placeBeside(QWidget& window, WindowPlace place, const QRect& shown);

    /// For a window that was left behind by its screen.
    void bringBack(QWidget& window);

  private:
    WindowPlace m_place{};
    QPoint m_pixels;
};

/// The window whose place is kept between runs.
class KeptPlace final : public PlacedWindow {
  public:
    explicit KeptPlace(QWidget& window) : m_window(window) {}
    void Place(WindowPlace place) override { m_place.place(m_window, place); }
    WindowPlace Place() const override { return m_place.of(m_window); }
    void bringBack() { m_place.bringBack(m_window); }

  private:
    QWidget& m_window;
    ScreenPlace m_place;
};

/// What a window manager's frame takes of the screen, in pixels.
inline constexpr QSize kWindowFrame(16, 48);

/// The largest window that the screen of `window` has room for.
QSize roomFor(const QWidget& window);

}  // namespace tarnwell
