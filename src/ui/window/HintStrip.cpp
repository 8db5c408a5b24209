#include "ui/window/HintStrip.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>
#include <utility>

#include "ui/looks/Measures.h"

namespace tarnwell {

namespace {

constexpr int kMargin = 60;

}  // namespace

HintStrip::HintStrip(QWidget* parent) : QWidget(parent), m_text(new QLabel(this)) {
    setObjectName(QStringLiteral("HintStrip"));
    m_text->setObjectName(QStringLiteral("lblHint"));
    const auto button = [this](const char* name, const QString& caption, auto&& pressed) {
        auto* made = new QPushButton(caption, this);
        made->setObjectName(QLatin1String(name));
        made->setAutoDefault(false);
        connect(made, &QPushButton::clicked, this, pressed);
        return made;
    };
    m_useI2C = button("cmdUseI2C", QStringLiteral("Use an I2C adapter..."), &HintStrip::i2cWanted);
    m_usePort =
        button("cmdUsePort", QStringLiteral("Use a parallel port..."), &HintStrip::portWanted);
    m_readNow = button("cmdReadNow", QStringLiteral("Read the EEPROM"), &HintStrip::readWanted);
    m_useSet = button("cmdUseSet", QStringLiteral("Use it"), &HintStrip::setWanted);
    auto* hide = button("cmdHideStrip", QStringLiteral("Hide"), [this] {
        (m_likeness.isEmpty() ? m_putAway : m_isLikenessPutAway) = true;
        show(m_hint, m_likeness);
    });
    hide->setToolTip(QStringLiteral("Until the program is started again"));
    auto* rows = new QVBoxLayout(this);
    rows->setContentsMargins(scaled(kMargin), scaled(kMargin), scaled(kMargin), scaled(kMargin));
    rows->setSpacing(scaled(kMargin));
    rows->addWidget(m_text);
    auto* buttons = new QHBoxLayout;
    for (QPushButton* made : {m_useI2C, m_usePort, m_readNow, m_useSet, hide})
        buttons->addWidget(made);
    buttons->insertStretch(4);
    rows->addLayout(buttons);
    setVisible(false);
}

void HintStrip::show(Hint hint, const QString& likeness) {
    m_hint = hint;
    if (likeness != std::exchange(m_likeness, likeness))
        m_isLikenessPutAway = false;
    const bool tellsSet = !likeness.isEmpty() && !m_isLikenessPutAway;
    const Hint shown = tellsSet || m_putAway ? Hint::None : hint;
    const bool reachesNone = shown == Hint::Simulated || shown == Hint::NoPort;
    m_text->setText(tellsSet ? likeness
                    : hint == Hint::Simulated
                        ? QStringLiteral("Simulated television: nothing you write reaches a set.")
                    : hint == Hint::NoPort
                        ? QStringLiteral("The parallel port cannot be used: nothing reaches a set.")
                        : QStringLiteral("Nothing read yet."));
    m_useI2C->setVisible(reachesNone);
    m_usePort->setVisible(reachesNone);
    m_readNow->setVisible(shown == Hint::NothingRead);
    m_useSet->setVisible(tellsSet);
    setVisible(tellsSet || shown != Hint::None);
}

}  // namespace tarnwell

#include "moc_HintStrip.cpp"
