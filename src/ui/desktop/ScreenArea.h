// Shows a window's content; with scroll bars where the screen is smaller than the content.
#pragma once

#include <QScrollArea>

namespace tarnwell {

/// As large as its content, if the screen has room for it. With scroll bars it takes the focus, so
/// that the arrow keys scroll it, and follows the focus of what it shows.
class ScreenArea final : public QScrollArea {
    Q_OBJECT
  public:
    /// `content` sizes itself; `beside` stands above or below the area in the same window.
    ScreenArea(QWidget& content, const QWidget& beside, QWidget* parent);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

  protected:
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    QSize room() const;
    bool scrolls() const;
    void adapt();

    const QWidget& m_beside;
};

}  // namespace tarnwell
