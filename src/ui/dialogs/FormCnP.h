// The window from which the port driver's path is copied.
#pragma once

#include <QDialog>
#include <QLineEdit>

namespace tarnwell {

class FormCnP final : public QDialog {
  public:
    FormCnP(const std::string& driverPath, QWidget* parent);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    QLineEdit m_path;
};

}  // namespace tarnwell
