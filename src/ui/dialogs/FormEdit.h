// The value editor: one setting's value in large digits, changed a step at a time.
#pragma once

#include <QDialog>
#include <QPushButton>

#include "settings/ValueEditor.h"
#include "ui/looks/Fitted.h"
#include "ui/looks/Measures.h"
#include "ui/widgets/UpDownBar.h"

namespace tarnwell {

class FormEdit final : public QDialog {
    Q_OBJECT
  public:
    /// Takes its place on the screen from `state` and leaves it there again.
    FormEdit(ValueEditor& editor, ProgramState& state, QWidget* parent);
    ~FormEdit() override;

  private:
    void showValue();
    void accepted();

    ValueEditor& m_editor;
    ProgramState& m_state;
    ScreenPlace m_place;
    FittedLabel m_readout;
    QPushButton m_ok;
    QPushButton m_abort;
    UpDownBar m_upDown;
};

}  // namespace tarnwell
