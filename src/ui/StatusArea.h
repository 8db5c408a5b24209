// The bottom of the main window: the captions on their strip and the four status panels.
#pragma once

#include <QWidget>
#include <array>

#include "core/StatusBar.h"
#include "ui/Fitted.h"

namespace tarnwell {

class StatusArea final : public QWidget {
    Q_OBJECT
  public:
    explicit StatusArea(QWidget* parent);

    /// Height in twips.
    static constexpr int kHeight = 555;

    void colourStrip();
    void setLayoutMode(SizeMode mode);
    void refresh(const StatusBar& statusBar, Panel panel);

  Q_SIGNALS:
    void captionDoubleClicked();

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    static constexpr std::size_t kPanels = 4;
    QWidget m_strip;
    std::array<FittedLabel*, kPanels> m_captions{};
    std::array<FittedLabel*, kPanels> m_panels{};
};

}  // namespace tarnwell
