// The bottom of the main window: the captions on their strip and the four status panels.
#pragma once

#include <QWidget>
#include <array>

#include "core/StatusBar.h"
#include "ui/looks/Fitted.h"

namespace tarnwell {

/// A panel behind whose text a bar fills.
class ProgressPanel final : public FittedLabel {
    Q_OBJECT
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
    void setLayoutMode(SizeMode mode);
    void refresh(Panel panel);

    /// Tells a screen reader what the panel shows.
    void name(Panel panel);

    /// Shows the I2C bus that is worked on in the panels' tooltips; none without a name.
    void setBus(const QString& name);

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
};

}  // namespace tarnwell
