#include "ui/dialogs/FormFind.h"

#include <QAbstractItemView>
#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QPushButton>
#include <QScreen>
#include <QShortcut>
#include <QVBoxLayout>
#include <array>

#include "ui/looks/Measures.h"
#include "ui/looks/Text.h"

namespace tarnwell {

namespace {

constexpr int kFindWidth = 3900;
constexpr int kFindMargin = 180;

}  // namespace

FormFind::FormFind(Find& find, QWidget* parent) : QDialog(parent), m_find(find) {
    setObjectName(QStringLiteral("formFind"));
    setWindowTitle(QStringLiteral("Find"));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(scaled(kFindMargin), scaled(kFindMargin), scaled(kFindMargin),
                               scaled(kFindMargin));
    layout->setSpacing(scaled(kFindMargin) / 2);

    m_kind.setObjectName(QStringLiteral("cboKind"));
    m_kind.setAccessibleName(QStringLiteral("What to find"));
    m_kind.addItems({QStringLiteral("Bytes"), QStringLiteral("Text"), QStringLiteral("Name")});
    m_text.setObjectName(QStringLiteral("txtFind"));
    m_text.setAccessibleName(QStringLiteral("Bytes, text or name"));
    m_completer.setModel(&m_names);
    m_completer.setCaseSensitivity(Qt::CaseInsensitive);
    m_completer.setFilterMode(Qt::MatchContains);
    m_text.setMinimumWidth(scaled(kFindWidth));
    m_problem.setObjectName(QStringLiteral("lblFindProblem"));

    auto* buttons = new QDialogButtonBox;
    const auto addButton = [&](const char* name, const QString& caption, FindDirection direction) {
        QPushButton* button = buttons->addButton(caption, QDialogButtonBox::ActionRole);
        button->setObjectName(QLatin1String(name));
        connect(button, &QPushButton::clicked, this, [this, direction] { look(direction); });
        return button;
    };
    addButton("cmdFindNext", QStringLiteral("Find &Next"), FindDirection::Next)->setDefault(true);
    addButton("cmdFindPrevious", QStringLiteral("Find &Previous"), FindDirection::Previous);
    buttons->addButton(QDialogButtonBox::Close)->setObjectName(QStringLiteral("cmdClose"));
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(&m_text, &QLineEdit::textEdited, &m_problem, &QLabel::clear);
    // The completer's list keeps the key from the default button.
    connect(&m_text, &QLineEdit::returnPressed, this, [this] {
        if (m_completer.popup()->isVisible())
            look(FindDirection::Next);
    });
    connect(&m_kind, &QComboBox::currentIndexChanged, this, &FormFind::showKind);
    connect(new QShortcut(Qt::Key_F3, this), &QShortcut::activated, this,
            [this] { look(FindDirection::Next); });
    connect(new QShortcut(Qt::SHIFT | Qt::Key_F3, this), &QShortcut::activated, this,
            [this] { look(FindDirection::Previous); });

    showKind();
    auto* row = new QHBoxLayout;
    row->addWidget(&m_kind);
    row->addWidget(&m_text);
    layout->addLayout(row);
    layout->addWidget(&m_problem);
    layout->addWidget(buttons);
    layout->setSizeConstraint(QLayout::SetFixedSize);
}

void FormFind::showKind() {
    constexpr std::array kTips{"Bytes with blanks between them, ?? for any byte",
                               "Capital and small letters are different",
                               "A part of the name of a byte or of a setting"};
    m_problem.clear();
    m_text.setToolTip(QLatin1String(kTips[static_cast<std::size_t>(kind())]));
    m_text.setCompleter(kind() == FindKind::Name ? &m_completer : nullptr);
}

void FormFind::ask(std::optional<FindKind> wanted, const QStringList& names) {
    m_names.setStringList(names);
    if (wanted)
        m_kind.setCurrentIndex(static_cast<int>(*wanted));
    if (!testAttribute(Qt::WA_Moved))
        placeBelow();
    show();
    raise();
    activateWindow();
    m_text.selectAll();
    m_text.setFocus();
}

/// Below the window, where it covers nothing that is found, if the screen has room there.
void FormFind::placeBelow() {
    const QPoint corner = parentWidget()->mapToGlobal(parentWidget()->rect().bottomLeft());
    const QRect place(corner + QPoint(0, kWindowFrame.height()), sizeHint() + kWindowFrame);
    if (parentWidget()->screen()->availableGeometry().contains(place))
        move(place.topLeft());
}

void FormFind::look(FindDirection direction) {
    if (m_find.LookFor(fromQt(m_text.text()), kind())) {
        m_problem.clear();
        Q_EMIT wanted(direction);
        activateWindow();  // the search may have turned the page behind a warning
        return;
    }
    m_problem.setText(toQt(m_find.NothingToFindText(kind())));
    m_text.selectAll();
    m_text.setFocus();
}

}  // namespace tarnwell

#include "moc_FormFind.cpp"
