// The port options: which pins the adapter uses for the four signals, and where it inverts.
#pragma once

#include <QButtonGroup>
#include <QDialog>
#include <QGridLayout>
#include <array>

#include "i2c/parallel/PortOptions.h"
#include "ui/widgets/PortConnector.h"

namespace tarnwell {

class FormPortOpts final : public QDialog {
  public:
    FormPortOpts(PortOptions& options, QWidget* parent);

    /// Cancel, by the button or Escape.
    void reject() override;

  private:
    void addGroup(QGridLayout& layout, const PinGroup& group);
    void addButtons(QWidget& widget);
    void select(PinPosition position, int index);
    void showSelections();
    void acceptClicked();
    void defaultsClicked();
    void helpClicked();

    PortOptions& m_options;
    std::array<QButtonGroup, kPinPositions> m_groups;
    PortConnector m_connector;
};

}  // namespace tarnwell
