#include "ui/dialogs/FormI2CBus.h"

#include <QDialogButtonBox>
#include <QVBoxLayout>

#include "ui/looks/Measures.h"
#include "ui/looks/Pictures.h"
#include "ui/looks/Text.h"

namespace tarnwell {

namespace {

enum BusColumn { Name, Node };

/// An adapter that is plugged in appears after that, in ms.
constexpr int kRefresh = 1000;

constexpr int kBusPictureSide = 480;
constexpr int kAnswerLines = 3;

QLabel* wrapped(QLabel* label) {
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    return label;
}

}  // namespace

FormI2CBus::FormI2CBus(BusChooser& chooser, const std::optional<I2cBus>& inUse, QWidget* parent)
    : QDialog(parent),
      m_chooser(chooser),
      m_table("tblBuses", QStringLiteral("I2C buses"),
              {QStringLiteral("Bus"), QStringLiteral("Node")}) {
    setObjectName(QStringLiteral("formI2CBus"));
    setWindowTitle(QStringLiteral("I2C Bus"));
    auto* layout = new QVBoxLayout(this);
    auto* intro = new QLabel(QStringLiteral("I2C &buses that the kernel drives:"));
    intro->setBuddy(&m_table);
    layout->addWidget(intro);
    layout->addWidget(&m_table, 1);
    addAnswers();
    addWarning();
    addButtons();

    connect(&m_table, &QTreeWidget::itemSelectionChanged, this, &FormI2CBus::showSelection);
    connect(&m_table, &QTreeWidget::itemDoubleClicked, &m_use, &QPushButton::click);
    fill(inUse);
    const int width = std::max(scaled(6600), m_table.fitColumns() + scaled(600));
    resize(QSize(width, scaled(4500)).boundedTo(roomFor(*this)));
    m_table.setFocus();
    connect(&m_timer, &QTimer::timeout, this, &FormI2CBus::refresh);
    m_timer.start(kRefresh);
}

// The table may tell of its own end.
FormI2CBus::~FormI2CBus() {
    m_table.disconnect(this);
}

void FormI2CBus::addAnswers() {
    m_look.setText(QStringLiteral("&Look"));
    m_look.setObjectName(QStringLiteral("cmdLook"));
    m_look.setAccessibleName(QStringLiteral("Look"));
    m_look.setAutoDefault(false);
    connect(&m_look, &QPushButton::clicked, this, &FormI2CBus::look);
    m_answers.setObjectName(QStringLiteral("lblAnswers"));
    wrapped(&m_answers)->setMinimumHeight(kAnswerLines * m_answers.fontMetrics().lineSpacing());
    m_answers.setAlignment(Qt::AlignLeft | Qt::AlignTop);
    auto* row = new QHBoxLayout;
    row->addWidget(&m_look, 0, Qt::AlignTop);
    row->addWidget(&m_answers, 1);
    static_cast<QVBoxLayout*>(layout())->addLayout(row);
}

void FormI2CBus::addWarning() {
    auto* warning = wrapped(new QLabel(QStringLiteral(
        "Use the bus of your adapter and no other. Monitors and memory modules have devices at "
        "the same addresses: what is written to them can make them useless.")));
    warning->setObjectName(QStringLiteral("lblBusWarning"));
    auto* row = new QHBoxLayout;
    row->addWidget(pictureLabel(":/pictures/warning.svg", "Warning sign", kBusPictureSide, this));
    row->addWidget(warning, 1);
    static_cast<QVBoxLayout*>(layout())->addLayout(row);
}

void FormI2CBus::addButtons() {
    auto* buttons = new QDialogButtonBox;
    m_use.setText(QStringLiteral("&Use"));
    m_use.setObjectName(QStringLiteral("cmdUse"));
    m_use.setAccessibleName(QStringLiteral("Use"));
    m_use.setDefault(true);
    buttons->addButton(&m_use, QDialogButtonBox::ActionRole);
    buttons->addButton(QDialogButtonBox::Cancel)->setObjectName(QStringLiteral("cmdCancel"));
    connect(&m_use, &QPushButton::clicked, this, &FormI2CBus::use);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    layout()->addWidget(buttons);
}

void FormI2CBus::fill(const std::optional<I2cBus>& wanted) {
    m_table.clear();
    for (const I2cBus& bus : m_chooser.Buses()) {
        m_table.addTopLevelItem(new QTreeWidgetItem({toQt(bus.name), toQt(bus.node)}));
        if (bus == wanted)
            m_table.setCurrentItem(m_table.topLevelItem(m_table.topLevelItemCount() - 1));
    }
    // Without a row that is the current one, Space would select none.
    if (m_table.currentItem() == nullptr)
        m_table.setCurrentItem(m_table.topLevelItem(0), 0, QItemSelectionModel::NoUpdate);
    showSelection();
}

void FormI2CBus::refresh() {
    const std::optional<I2cBus> before =
        selected() != nullptr ? std::optional(*selected()) : std::nullopt;
    if (m_chooser.Refresh())
        fill(before);
}

const I2cBus* FormI2CBus::selected() const {
    const int row = m_table.selectedRow();
    return row < 0 ? nullptr : &m_chooser.Buses()[static_cast<std::size_t>(row)];
}

void FormI2CBus::showSelection() {
    const bool isSelected = selected() != nullptr;
    allow(m_look, isSelected && BusChooser::MayLook(*selected()),
          isSelected ? "Nothing is asked on the mainboard's own bus" : "Select a bus first");
    allow(m_use, isSelected, "Select a bus first");
    tell(m_chooser.Advice(selected()));
}

void FormI2CBus::look() {
    tell(m_chooser.Look(*selected()));
}

void FormI2CBus::use() {
    const std::string obstacle = m_chooser.Obstacle(*selected());
    if (obstacle.empty())
        accept();
    else
        tell(obstacle);
}

void FormI2CBus::tell(const std::string& text) {
    m_answers.setText(toQt(text));
}

}  // namespace tarnwell
