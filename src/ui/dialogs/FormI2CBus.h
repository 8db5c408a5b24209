// The choice of an I2C bus that the kernel drives.
#pragma once

#include <QDialog>
#include <QLabel>
#include <QPushButton>
#include <QTimer>

#include "i2c/kernel/BusChooser.h"
#include "ui/widgets/RowTable.h"

namespace tarnwell {

class FormI2CBus final : public QDialog {
  public:
    /// Begins with the bus that is in use, if it is there.
    FormI2CBus(BusChooser& chooser, const std::optional<I2cBus>& inUse, QWidget* parent);

    ~FormI2CBus() override;

    /// The bus of the selected row; null if there is none.
    const I2cBus* selected() const;

  private:
    void addAnswers();
    void addWarning();
    void addButtons();
    void fill(const std::optional<I2cBus>& wanted);
    void refresh();
    void showSelection();
    void look();
    void use();
    void tell(const std::string& text);

    BusChooser& m_chooser;
    RowTable m_table;
    QLabel m_answers;
    QPushButton m_look;
    QPushButton m_use;
    QTimer m_timer;
};

}  // namespace tarnwell
