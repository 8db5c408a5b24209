#include "ui/dialogs/FormPortOpts.h"

#include <QGroupBox>
#include <QHBoxLayout>
#include <QPushButton>
#include <QRadioButton>

#include "ui/desktop/ScreenArea.h"
#include "ui/dialogs/StripSystemMenu.h"
#include "ui/looks/Heading.h"
#include "ui/looks/Measures.h"
#include "ui/looks/Text.h"

namespace tarnwell {

namespace {

/// Where a group stands: the two lines side by side, a heading above them.
struct Place {
    PinPosition position;
    int row;
    int column;
};

/// In the order in which Tab goes through the groups.
constexpr std::array<Place, kPinPositions> kPlaces{{
    {PinPosition::DataOut, 1, 0},
    {PinPosition::ClockOut, 1, 1},
    {PinPosition::DataOutPol, 3, 0},
    {PinPosition::ClockOutPol, 3, 1},
    {PinPosition::DataIn, 1, 3},
    {PinPosition::ClockIn, 1, 4},
    {PinPosition::DataInPol, 3, 3},
    {PinPosition::ClockInPol, 3, 4},
}};
constexpr int kGapColumn = 2;
constexpr int kPinColumns = 5;
constexpr int kConnectorRow = 4;

constexpr const Place& placeOf(PinPosition position) {
    return *std::ranges::find(kPlaces, position, &Place::position);
}

void showSelection(QButtonGroup& buttons, std::optional<int> selected) {
    if (!selected) {
        buttons.setExclusive(false);
        for (QAbstractButton* button : buttons.buttons())
            button->setChecked(false);
        buttons.setExclusive(true);
        return;
    }
    buttons.button(*selected)->setChecked(true);
    // Tab stops at the selected button; Qt itself sees to this only once the group had the focus.
    for (QAbstractButton* button : buttons.buttons())
        button->setFocusPolicy(button->isChecked() ? Qt::StrongFocus : Qt::ClickFocus);
}

}  // namespace

FormPortOpts::FormPortOpts(PortOptions& options, QWidget* parent)
    : QDialog(parent), m_options(options), m_connector(this) {
    setObjectName(QStringLiteral("formPortOpts"));
    setWindowTitle(QStringLiteral("Advanced Port Setup"));
    auto* content = new QWidget;
    auto* layout = new QGridLayout(content);
    layout->setContentsMargins(scaled(180), scaled(120), scaled(180), scaled(180));
    layout->setHorizontalSpacing(scaled(90));
    layout->setVerticalSpacing(scaled(90));
    layout->setColumnMinimumWidth(kGapColumn, scaled(90));
    for (const Place& place : kPlaces)
        addGroup(*layout, Group(place.position));
    layout->addWidget(headingLabel(QStringLiteral("Connector Pins")), kConnectorRow, 0, 1,
                      kPinColumns);
    layout->addWidget(&m_connector, kConnectorRow + 1, 0, 1, kPinColumns, Qt::AlignCenter);
    layout->setSizeConstraint(QLayout::SetFixedSize);
    layout->activate();
    auto* buttons = new QWidget(this);
    auto* parts = new QVBoxLayout(this);
    parts->setContentsMargins(0, 0, 0, 0);
    parts->setSpacing(0);
    auto* area = new ScreenArea(*content, {buttons}, this);
    addButtons(*buttons);
    parts->addWidget(area);
    parts->addWidget(buttons);
    parts->setSizeConstraint(QLayout::SetFixedSize);

    m_options.Load();
    showSelections();
    const auto first = static_cast<std::size_t>(kPlaces.front().position);
    if (QAbstractButton* selected = m_groups[first].checkedButton())
        selected->setFocus();
    mGlobal::StripSystemMenu(*this);
}

void FormPortOpts::addGroup(QGridLayout& layout, const PinGroup& group) {
    const Place& place = placeOf(group.position);
    auto* frame = new QGroupBox(toQt(group.caption), layout.parentWidget());
    frame->setObjectName(QStringLiteral("frame") + toQt(group.array));
    frame->setToolTip(toQt(group.toolTip));
    const QString name = toQt(group.heading) + QStringLiteral(", ") + toQt(group.caption);
    frame->setAccessibleName(name);
    auto* column = new QVBoxLayout(frame);
    column->setSpacing(scaled(30));
    QButtonGroup& buttons = m_groups[static_cast<std::size_t>(group.position)];
    for (std::size_t index = 0; index < group.options.size(); ++index) {
        const PinOption& option = group.options[index];
        const int id = static_cast<int>(index);
        auto* button = new QRadioButton(toQt(option.caption), frame);
        button->setObjectName(toQt(group.array) + QStringLiteral("_%1").arg(id));
        button->setAccessibleName(name + QStringLiteral(", ") + button->text());
        button->setToolTip(toQt(option.toolTip));
        column->addWidget(button);
        buttons.addButton(button, id);
    }
    column->addStretch();
    layout.addWidget(frame, place.row, place.column);
    if (place.column == 0 || place.column == kGapColumn + 1)
        layout.addWidget(headingLabel(toQt(group.heading)), place.row - 1, place.column, 1, 2);
    connect(&buttons, &QButtonGroup::idClicked, this,
            [this, position = group.position](int index) { select(position, index); });
}

void FormPortOpts::addButtons(QWidget& widget) {
    struct Button {
        const char* name;
        const char* caption;
        const char* toolTip;
        void (FormPortOpts::*run)();
    };
    const std::array<Button, 4> commands{{
        {"AcceptButton", "Accept", " Click to save current settings ",
         &FormPortOpts::acceptClicked},
        {"CancelButton", "Cancel", " Click to abort any changes ", &FormPortOpts::reject},
        {"DefaultButton", "Defaults", " Click to save settings for 'Plimby I2C Interface' ",
         &FormPortOpts::defaultsClicked},
        {"HelpButton", "Help", " Click if you have no clue! ", &FormPortOpts::helpClicked},
    }};
    auto* row = new QHBoxLayout(&widget);
    row->setContentsMargins(scaled(180), scaled(60), scaled(180), scaled(180));
    row->setSpacing(scaled(120));
    for (const Button& command : commands) {
        auto* button = new QPushButton(QLatin1String(command.caption), &widget);
        button->setObjectName(QLatin1String(command.name));
        button->setAccessibleName(button->text());
        button->setToolTip(QLatin1String(command.toolTip));
        row->addWidget(button);
        connect(button, &QPushButton::clicked, this, command.run);
    }
}

void FormPortOpts::select(PinPosition position, int index) {
    const std::optional<Message> conflict = m_options.Select(position, index);
    showSelections();
    if (conflict)
        m_options.Show(*conflict);
}

void FormPortOpts::showSelections() {
    for (const PinGroup& group : kPinGroups)
        showSelection(m_groups[static_cast<std::size_t>(group.position)],
                      m_options.Selected(group.position));
    m_connector.follow(m_options);
}

void FormPortOpts::acceptClicked() {
    if (m_options.Accept() == PortOptions::Accepted::Yes)
        accept();
}

void FormPortOpts::defaultsClicked() {
    m_options.Defaults();
    accept();
}

void FormPortOpts::helpClicked() {
    m_options.Help();
}

void FormPortOpts::reject() {
    m_options.Cancel();
    QDialog::reject();
}

}  // namespace tarnwell
