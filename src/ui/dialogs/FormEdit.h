// The value editor: one value in large digits, changed by steps or typed.
#pragma once

#include <QCheckBox>
#include <QDialog>
#include <QPushButton>

#include "settings/EditedValue.h"
#include "settings/LiveValue.h"
#include "ui/desktop/Desktop.h"
#include "ui/looks/Fitted.h"
#include "ui/looks/Measures.h"
#include "ui/widgets/UpDownBar.h"

namespace tarnwell {

class FormEdit final : public QDialog {
  public:
    /// Takes its place on the screen from `state` and leaves it there again; until the user has
    /// moved it, it opens beside `cell`, which `value` is shown in.
    FormEdit(EditedValue& value, ProgramState& state, const QWidget& cell, QWidget* parent);
    ~FormEdit() override;

  protected:
    /// Keys change the value whichever control has the focus.
    bool eventFilter(QObject* watched, QEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

  private:
    bool enter(const QKeyEvent& key);
    void step(int value);
    void showValue();
    void accepted();
    void goLive(bool live);
    void stood();

    EditedValue& m_value;
    ProgramState& m_state;
    ScreenPlace m_place;
    FittedLabel m_readout;
    QPushButton m_ok;
    QPushButton m_abort;
    UpDownBar m_upDown;
    QCheckBox m_live;
    FittedLabel m_note;
    QtTimer m_standing;
    bool m_isAccepted = false;  ///< once the value that waits is written
};

}  // namespace tarnwell
