#include "ui/dialogs/FormAbout.h"

#include <QVBoxLayout>

#include "ui/looks/Measures.h"
#include "ui/looks/Pictures.h"

namespace tarnwell {

namespace {

constexpr int kAboutPictureSide = 1800;

QString versionLine() {
    return QStringLiteral("Beta Version %1.%2.%3")
        .arg(TARNWELL_VERSION_MAJOR)
        .arg(TARNWELL_VERSION_MINOR)
        .arg(TARNWELL_VERSION_REVISION);
}

QLabel* addLine(QVBoxLayout& layout, const char* name, const QString& text, double points,
                Weight weight) {
    auto* label = new QLabel(text);
    label->setObjectName(QLatin1String(name));
    label->setFont(scaledFont(points, weight));
    label->setAlignment(Qt::AlignCenter);
    layout.addWidget(label);
    return label;
}

}  // namespace

FormAbout::FormAbout(QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("formAbout"));
    setWindowTitle(QStringLiteral("About Tarnwell 2"));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(scaled(480), scaled(240), scaled(480), scaled(240));
    layout->setSpacing(scaled(90));
    addLine(*layout, "lblHeading", QStringLiteral("Tarnwell!"), 24, Weight::Bold);
    addLine(*layout, "lblPurpose", QStringLiteral("HDTV EEP Value Editor"), 12, Weight::Bold);
    addLine(*layout, "lblVersion", versionLine(), 8.25, Weight::Normal);
    layout->addWidget(
        pictureLabel(":/pictures/about.svg", "Picture of a television", kAboutPictureSide, this));
    addLine(*layout, "lblSupport", QStringLiteral("Support Quality Freeware!"), 9.75, Weight::Bold);
    addLine(*layout, "lblThanks", QStringLiteral("- Thanks for Your Support -"), 8.25,
            Weight::Normal);
    addLine(*layout, "lblCredit", QStringLiteral("Thanks to the maker of the DLPortIO driver"),
            8.25, Weight::Normal);
    layout->setSizeConstraint(QLayout::SetFixedSize);
}

}  // namespace tarnwell
