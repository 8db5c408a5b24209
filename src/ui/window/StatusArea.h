// The bottom of the main window: the captions on their strip and the four status panels.
#pragma once

#include <QPushButton>
#include <array>

#include "core/user/StatusBar.h"
#include "ui/looks/Fitted.h"

namespace tarnwell {

/// A panel behind whose text a bar fills.
class ProgressPanel final : public FittedLabel {
  public:
    using FittedLabel::FittedLabel;

    /// No bar without a percentage.
    void setPercent(std::optional<int> percent);

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    std::optional<int> m_percent;
};

class StatusArea final : public QWidget {
    Q_OBJECT
  public:
    StatusArea(const StatusBar& statusBar, QWidget* parent);

    /// Height in twips.
    static constexpr int kHeight = 555;

    void colourStrip();

    /// Lays out the panels as designed for the mode; what the window is wider is the status line's.
    void layOut(SizeMode mode, int extraWidth);

    /// There while a percentage stands below it.
    QPushButton& stop() { return m_stop; }

    void refresh(Panel panel);

    /// Tells a screen reader what the panel shows.
    void name(Panel panel);

    /// Shows the I2C bus that is worked on in the panels' tooltips, none without a name, and in
    /// that of the checksum where the memory buffer comes from.
    void setTips(const QString& bus, const QString& origin);

  Q_SIGNALS:
    void captionDoubleClicked();

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    static constexpr std::size_t kPanels = 4;
    const StatusBar& m_statusBar;
    FittedLabel m_strip;
    std::array<FittedLabel*, kPanels> m_captions{};
    std::array<FittedLabel*, kPanels> m_panels{};
    ProgressPanel* m_progress = nullptr;
    QPushButton m_stop;
};

}  // namespace tarnwell
