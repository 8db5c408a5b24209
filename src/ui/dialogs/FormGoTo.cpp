#include "ui/dialogs/FormGoTo.h"

#include <QDialogButtonBox>
#include <QPushButton>
#include <QVBoxLayout>

#include "ui/looks/Measures.h"
#include "ui/looks/Text.h"

namespace tarnwell {

namespace {

constexpr int kGoToWidth = 4800;
constexpr int kGoToMargin = 180;

QStringList namesOf(const Destinations& destinations) {
    QStringList names;
    for (const std::string& name : destinations.Names())
        names.append(toQt(name));
    return names;
}

}  // namespace

FormGoTo::FormGoTo(const Destinations& destinations, QWidget* parent)
    : QDialog(parent), m_destinations(destinations), m_completer(namesOf(destinations)) {
    setObjectName(QStringLiteral("formGoTo"));
    setWindowTitle(QStringLiteral("Go to"));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(scaled(kGoToMargin), scaled(kGoToMargin), scaled(kGoToMargin),
                               scaled(kGoToMargin));
    layout->setSpacing(scaled(kGoToMargin) / 2);

    auto* prompt = new QLabel(QStringLiteral("&Address, or a setting such as R-YR 480p:"));
    prompt->setObjectName(QStringLiteral("lblGoTo"));
    prompt->setBuddy(&m_text);
    m_text.setObjectName(QStringLiteral("txtGoTo"));
    m_text.setAccessibleName(QStringLiteral("Address or setting"));
    m_text.setMinimumWidth(scaled(kGoToWidth));
    m_completer.setCaseSensitivity(Qt::CaseInsensitive);
    m_completer.setFilterMode(Qt::MatchContains);
    m_text.setCompleter(&m_completer);
    m_problem.setObjectName(QStringLiteral("lblGoToProblem"));

    auto* buttons = new QDialogButtonBox;
    QPushButton* go = buttons->addButton(QStringLiteral("&Go"), QDialogButtonBox::AcceptRole);
    go->setObjectName(QStringLiteral("cmdGoTo"));
    go->setDefault(true);
    buttons->addButton(QDialogButtonBox::Cancel)->setObjectName(QStringLiteral("cmdCancel"));
    connect(buttons, &QDialogButtonBox::accepted, this, &FormGoTo::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    // The completer's list keeps the key from the default button.
    connect(&m_text, &QLineEdit::returnPressed, this, &FormGoTo::accept);
    connect(&m_text, &QLineEdit::textEdited, &m_problem, &QLabel::clear);

    layout->addWidget(prompt);
    layout->addWidget(&m_text);
    layout->addWidget(&m_problem);
    layout->addWidget(buttons);
    layout->setSizeConstraint(QLayout::SetFixedSize);
}

void FormGoTo::accept() {
    m_destination = m_destinations.From(fromQt(m_text.text()));
    if (m_destination)
        return QDialog::accept();
    m_problem.setText(toQt(m_destinations.NoneText(fromQt(m_text.text()))));
    m_text.selectAll();
    m_text.setFocus();
}

}  // namespace tarnwell
