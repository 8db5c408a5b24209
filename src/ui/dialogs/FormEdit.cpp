#include "ui/dialogs/FormEdit.h"

#include "core/Number.h"
#include "ui/dialogs/StripSystemMenu.h"
#include "ui/looks/Colours.h"
#include "ui/looks/Text.h"

namespace tarnwell {

FormEdit::FormEdit(ValueEditor& editor, ProgramState& state, QWidget* parent)
    : QDialog(parent),
      m_editor(editor),
      m_state(state),
      m_readout(this),
      m_ok(tr("OK"), this),
      m_abort(tr("Abort"), this),
      m_upDown(this) {
    setObjectName(QStringLiteral("formEdit"));
    setWindowTitle(QStringLiteral(" Edit Value"));
    setFixedSize(scaled(1320), scaled(960));

    m_readout.setObjectName(QStringLiteral("Label1"));
    m_readout.setGeometry(scaledRect(45, 75, 690, 465));
    m_readout.setAlignment(Qt::AlignCenter);
    m_readout.setFrameStyle(QFrame::Panel | QFrame::Sunken);
    m_readout.setFont(scaledFont(18, Weight::Bold));
    m_readout.setToolTip(QStringLiteral(" Current value "));
    m_readout.setColours(colours::kCell, colours::kValueText);

    m_upDown.setObjectName(QStringLiteral("VScroll1"));
    m_upDown.setGeometry(scaledRect(792, 75, 465, 465));
    m_upDown.setAccessibleName(QStringLiteral("Value"));

    m_ok.setObjectName(QStringLiteral("cmdAccept"));
    m_ok.setGeometry(scaledRect(72, 600, 588, 315));
    m_ok.setToolTip(QStringLiteral(" Click to accept value "));
    m_abort.setObjectName(QStringLiteral("cmdCancel"));
    m_abort.setGeometry(scaledRect(708, 600, 588, 312));
    m_abort.setToolTip(QStringLiteral(" Click to cancel changes "));
    for (QPushButton* button : {&m_ok, &m_abort}) {
        button->setAccessibleName(button->text());
        fitCaption(*button);
    }
    m_ok.setDefault(true);
    setTabOrder(&m_ok, &m_abort);
    setTabOrder(&m_abort, &m_upDown);

    connect(&m_ok, &QPushButton::clicked, this, &FormEdit::accepted);
    connect(&m_abort, &QPushButton::clicked, this, &QDialog::reject);
    connect(&m_upDown, &QScrollBar::valueChanged, this, &FormEdit::showValue);

    m_place.place(*this, {DecimalValue(m_state.editTop), DecimalValue(m_state.editLeft)});
    m_upDown.setTop(m_editor.Maximum());
    m_upDown.setValue(m_editor.StartValue());
    showValue();
    mGlobal::StripSystemMenu(*this);
    m_ok.setFocus();
}

FormEdit::~FormEdit() {
    const WindowPlace place = m_place.of(*this);
    m_state.editTop = std::to_string(place.top);
    m_state.editLeft = std::to_string(place.left);
}

void FormEdit::showValue() {
    m_readout.setText(toQt(m_editor.Readout(m_upDown.value())));
    m_readout.setAccessibleName(m_readout.text());
}

void FormEdit::accepted() {
    if (m_editor.Accept(fromQt(m_readout.text())) == ValueEditor::Accepted::Changed)
        accept();
}

}  // namespace tarnwell
