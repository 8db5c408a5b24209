// Shows a window's content; with scroll bars where the screen is smaller than the content.
#pragma once

#include <QScrollArea>

namespace tarnwell {

/// As large as its content, if the screen has room for it. With scroll bars it takes the focus, so
/// that the arrow keys scroll it, and follows the focus of what it shows.
class ScreenArea final : public QScrollArea {
  public:
    /// `content` sizes itself; what is `beside` it stands above or below the area in the same
    /// window.
    ScreenArea(QWidget& content, QList<const QWidget*> beside, QWidget* parent);

    /// The content fills the area, which may be larger than what the content asks for.
    void stretch();

    /// The content has its own size again.
    void fix();

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return around(least()); }

  protected:
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    QSize room() const;
    QSize least() const;
    QSize around(QSize content) const;
    bool scrolls() const;
    void adapt();

    QList<const QWidget*> m_beside;
};

}  // namespace tarnwell
