#include "ui/dialogs/FormEdit.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QWheelEvent>

#include "core/user/Number.h"
#include "ui/dialogs/StripSystemMenu.h"
#include "ui/looks/Colours.h"
#include "ui/looks/Text.h"

namespace tarnwell {

namespace {

constexpr int kLiveHeight = 240;

bool isStep(const QKeyEvent& key) {
    switch (key.key()) {
        case Qt::Key_Up:
        case Qt::Key_Down:
        case Qt::Key_PageUp:
        case Qt::Key_PageDown:
        case Qt::Key_Home:
        case Qt::Key_End:
            return true;
        default:
            return false;
    }
}

}  // namespace

FormEdit::FormEdit(EditedValue& value, ProgramState& state, const QWidget& cell, QWidget* parent)
    : QDialog(parent),
      m_value(value),
      m_state(state),
      m_readout(this),
      m_ok(QStringLiteral("OK"), this),
      m_abort(QStringLiteral("Abort"), this),
      m_upDown(this),
      m_live(QStringLiteral("&Live"), this),
      m_note(this) {
    setObjectName(QStringLiteral("formEdit"));
    setWindowTitle(QStringLiteral(" Edit Value"));
    const int liveHeight = m_value.Live() == nullptr ? 0 : kLiveHeight;
    setFixedSize(scaled(1320), scaled(1230 + liveHeight));

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
    m_live.setObjectName(QStringLiteral("chkLive"));
    m_live.setGeometry(scaledRect(72, 960, 1224, kLiveHeight));
    m_live.setAccessibleName(QStringLiteral("Live"));
    m_live.setToolTip(QStringLiteral(" Writes each value to the EEPROM at once "));
    m_note.setObjectName(QStringLiteral("lblWritten"));
    m_note.setGeometry(scaledRect(72, 960 + liveHeight, 1224, 240));
    m_note.setAlignment(Qt::AlignCenter);
    m_live.setHidden(m_value.Live() == nullptr);
    m_ok.setDefault(true);
    setTabOrder(&m_ok, &m_abort);
    setTabOrder(&m_abort, &m_upDown);
    setTabOrder(&m_upDown, &m_live);

    connect(&m_ok, &QPushButton::clicked, this, &FormEdit::accepted);
    connect(&m_abort, &QPushButton::clicked, this, &QDialog::reject);
    connect(&m_live, &QCheckBox::toggled, this, &FormEdit::goLive);
    connect(&m_standing.timer(), &QTimer::timeout, this, &FormEdit::stood);

    const WindowPlace kept{DecimalValue(m_state.editTop), DecimalValue(m_state.editLeft)};
    if (m_state.editTop == kFirstPlace && m_state.editLeft == kFirstPlace)
        m_place.placeBeside(*this, kept, QRect(cell.mapToGlobal(QPoint()), cell.size()));
    else
        m_place.place(*this, kept);
    m_upDown.setEnds(m_value.Minimum(), m_value.Maximum());
    showValue();
    connect(&m_upDown, &QScrollBar::actionTriggered, this,
            [this] { step(m_upDown.sliderPosition()); });
    connect(&m_upDown, &QScrollBar::valueChanged, this, &FormEdit::step);
    for (QWidget* control : std::initializer_list<QWidget*>{&m_ok, &m_abort, &m_upDown, &m_live})
        control->installEventFilter(this);
    mGlobal::StripSystemMenu(*this);
    m_ok.setFocus();
}

FormEdit::~FormEdit() {
    if (LiveValue* live = m_value.Live())
        live->Pause();  // its timer ends here
    const WindowPlace place = m_place.of(*this);
    m_state.editTop = std::to_string(place.top);
    m_state.editLeft = std::to_string(place.left);
}

bool FormEdit::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::KeyPress)
        return QDialog::eventFilter(watched, event);
    const auto& key = static_cast<const QKeyEvent&>(*event);
    if (watched != &m_upDown && isStep(key))
        return QCoreApplication::sendEvent(&m_upDown, event);
    return enter(key) || QDialog::eventFilter(watched, event);
}

void FormEdit::wheelEvent(QWheelEvent* event) {
    QCoreApplication::sendEvent(&m_upDown, event);
}

bool FormEdit::enter(const QKeyEvent& key) {
    if (key.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier))
        return false;
    if (key.key() == Qt::Key_Backspace)
        m_value.EraseDigit();
    else if (key.text().size() != 1 || !m_value.TypeDigit(key.text().front().toLatin1()))
        return false;
    m_isAccepted = false;
    showValue();
    return true;
}

// What is typed after a step, even one that the end of the range stops, is another number.
void FormEdit::step(int value) {
    m_isAccepted = false;
    m_value.StepTo(value);
    showValue();
}

void FormEdit::showValue() {
    const QSignalBlocker quiet(m_upDown);
    m_upDown.setValue(m_value.Value());
    m_readout.setText(toQt(m_value.Readout(m_value.Value())));
    const QSignalBlocker unasked(m_live);
    m_live.setChecked(m_value.Live() != nullptr && m_value.Live()->IsOn());
    m_note.setText(toQt(m_value.Note()));
    m_note.setToolTip(m_note.text());
    m_readout.setAccessibleName((m_readout.text() + ' ' + m_note.text()).trimmed());
}

void FormEdit::goLive(bool live) {
    m_isAccepted = false;
    if (!live)
        m_value.Live()->Pause();
    else if (!m_value.Live()->Begin(m_value.Value(), m_standing))
        m_live.setChecked(false);
    showValue();
}

void FormEdit::stood() {
    m_value.Live()->Due();
    showValue();
    if (m_isAccepted && m_value.Live()->Holds(m_value.Value()))
        accepted();
}

/// Live writes no sooner because of it.
void FormEdit::accepted() {
    m_isAccepted = m_value.Live() != nullptr && m_value.Live()->Waits();
    if (m_isAccepted)
        return;
    if (m_value.Accept() == EditedValue::Accepted::Changed)
        accept();
    else
        showValue();
}

}  // namespace tarnwell
