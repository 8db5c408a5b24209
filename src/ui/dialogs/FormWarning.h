// The warning that is shown when the data editor page is entered.
#pragma once

#include <QCheckBox>
#include <QDialog>

namespace tarnwell {

class FormWarning final : public QDialog {
  public:
    explicit FormWarning(QWidget* parent);

    bool dontShowAgain() const { return m_dontShow.isChecked(); }

  private:
    QCheckBox m_dontShow;
};

}  // namespace tarnwell
