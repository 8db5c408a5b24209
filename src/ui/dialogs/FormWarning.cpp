#include "ui/dialogs/FormWarning.h"

#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <array>

#include "ui/dialogs/StripSystemMenu.h"
#include "ui/looks/Measures.h"
#include "ui/looks/Pictures.h"
#include "ui/looks/Text.h"

namespace tarnwell {

namespace {

constexpr const char* kInDoubt = "In Doubt? Don't Change It!";

constexpr std::array kTexts{
    kInDoubt,
    "There are no checks made as to safe values\nor the validity of entries in the Data Editor.",
    "YOU CAN KILL your expensive HDTV by writing bad\nvalues to the EEP!   YOU HAVE BEEN WARNED!",
    kInDoubt,
};
/// The labels in the order in which they stand, by their own numbers.
constexpr std::array kOrder{3, 0, 1, 2};
constexpr int kWarningPictureSide = 720;

}  // namespace

FormWarning::FormWarning(QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("formWarning"));
    setWindowTitle(QStringLiteral("W A R N I N G"));
    auto* layout = new QGridLayout(this);
    layout->setContentsMargins(scaled(240), scaled(180), scaled(240), scaled(180));
    layout->setSpacing(scaled(150));
    layout->addWidget(
        pictureLabel(":/pictures/warning.svg", "Warning sign", kWarningPictureSide, this), 0, 0);
    layout->addWidget(
        pictureLabel(":/pictures/danger.svg", "A flash in a television", kWarningPictureSide, this),
        0, 2);
    for (std::size_t line = 0; line < kTexts.size(); ++line) {
        auto* label = new QLabel(toQt(kTexts[line]), this);
        label->setObjectName(elementName("lblWarning", kOrder[line]));
        label->setAlignment(Qt::AlignCenter);
        label->setTextFormat(Qt::PlainText);
        const bool inDoubt = kTexts[line] == kInDoubt;
        label->setFont(scaledFont(inDoubt ? 12 : 9.75, Weight::Bold));
        const int row = static_cast<int>(line);
        if (line == 0)
            layout->addWidget(label, row, 1);
        else
            layout->addWidget(label, row, 0, 1, 3);
    }

    auto* button = new QPushButton(QStringLiteral("I Accept Full Responsibility"), this);
    button->setObjectName(QStringLiteral("cmdAccept"));
    button->setAccessibleName(button->text());
    button->setDefault(true);
    layout->addWidget(button, 4, 0, 1, 3, Qt::AlignCenter);
    m_dontShow.setText(QStringLiteral("Don't Show This Again"));
    m_dontShow.setObjectName(QStringLiteral("checkShowWarning"));
    m_dontShow.setAccessibleName(m_dontShow.text());
    layout->addWidget(&m_dontShow, 5, 0, 1, 3, Qt::AlignCenter);
    layout->setSizeConstraint(QLayout::SetFixedSize);
    setTabOrder(button, &m_dontShow);
    connect(button, &QPushButton::clicked, this, &QDialog::accept);
    mGlobal::StripSystemMenu(*this);
}

}  // namespace tarnwell
