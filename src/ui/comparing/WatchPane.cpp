#include "ui/comparing/WatchPane.h"

#include <QBoxLayout>
#include <QHeaderView>
#include <map>
#include <set>
#include <utility>

#include "core/Words.h"
#include "differences/DifferenceTexts.h"
#include "ui/looks/Text.h"

namespace tarnwell {

namespace {

constexpr int kRowsShown = 5;
constexpr int kAddressRole = Qt::UserRole;

/// Before the next attempt where something else keeps the bus.
constexpr std::chrono::milliseconds kBusy{100};

}  // namespace

WatchPane::WatchPane(Program& program, std::function<void(const std::function<void()>&)> run,
                     NameBytes nameBytes)
    : m_program(program), m_run(std::move(run)), m_name(std::move(nameBytes)) {
    m_box.setText(QStringLiteral("Watc&h"));
    m_box.setObjectName(QStringLiteral("chkWatch"));
    m_box.setAccessibleName(QStringLiteral("Watch"));
    m_state.setObjectName(QStringLiteral("lblWatch"));
    m_state.setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    m_timer.setSingleShot(true);
    buildTable();
    auto* line = new QHBoxLayout;
    line->addWidget(&m_state, 1);
    const auto add = [&](QPushButton& button, const char* control, const char* caption,
                         auto action) {
        button.setText(QLatin1String(caption));
        button.setObjectName(QLatin1String(control));
        button.setAccessibleName(button.text().remove('&'));
        button.setAutoDefault(false);
        connect(&button, &QPushButton::clicked, this, action);
        line->addWidget(&button);
    };
    add(m_ignore, "cmdIgnore", "&Ignore", [this] { ignore(); });
    add(m_clear, "cmdClearChanges", "Clear Cha&nges", [this] { clear(); });
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addLayout(line);
    layout->addWidget(&m_table);
    connect(&m_timer, &QTimer::timeout, this, &WatchPane::step);
    connect(&m_box, &QCheckBox::toggled, this, &WatchPane::goOn);
    hide();
    showChanges();
}

void WatchPane::buildTable() {
    QStringList heads{QStringLiteral("Time")};
    for (const std::string_view head : kDifferenceColumns)
        heads += toQt(head);
    heads[1 + static_cast<int>(kLeftColumn)] = QStringLiteral("Before");
    heads[1 + static_cast<int>(kRightColumn)] = QStringLiteral("After");
    m_table.setObjectName(QStringLiteral("tblChanges"));
    m_table.setAccessibleName(QStringLiteral("Changes"));
    m_table.setHeaderLabels(heads);
    m_table.setRootIsDecorated(false);
    m_table.setUniformRowHeights(true);
    m_table.setAllColumnsShowFocus(true);
    m_table.setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_table.header()->setSectionsMovable(false);
    const int row = m_table.fontMetrics().lineSpacing() * 5 / 4;
    m_table.setFixedHeight((kRowsShown + 1) * row + m_table.header()->sizeHint().height());
    copyRowsByKey(m_table, [this](char separator) { return selectedRows(separator); });
    nameRowsByKey(m_table, "mnuWatchName", [this] { name(); });
    connect(&m_table, &QTreeWidget::itemSelectionChanged, this, &WatchPane::showState);
}

void WatchPane::goOn() {
    m_timer.stop();
    const auto device = m_program.compare.DeviceSide();
    allow(m_box, device.has_value(), "Choose an EEPROM on a side");
    if (!device)
        m_box.setChecked(false);
    if (m_box.isChecked()) {
        m_program.watch.Begin(*device, {{0, kEepromBytes}}, &m_program.compare.DeviceHeld());
        m_timer.start(0);
    }
    showState();
}

void WatchPane::step() {
    Watch& watch = m_program.watch;
    std::chrono::milliseconds pause = kBusy;
    m_run([&] { pause = watch.Step(); });
    if (watch.IsDeclined())
        m_box.setChecked(false);
    if (m_box.isChecked())
        m_timer.start(pause);
    if (static_cast<std::size_t>(m_table.topLevelItemCount()) == watch.Changes().size())
        return showState();
    m_program.compare.NoteHeld(watch.Held());
    showChanges();
    Q_EMIT found();
}

void WatchPane::showChanges() {
    const auto& changes = m_program.watch.Changes();
    if (static_cast<std::size_t>(m_table.topLevelItemCount()) > changes.size())
        m_table.clear();
    for (auto number = static_cast<std::size_t>(m_table.topLevelItemCount());
         number < changes.size(); ++number) {
        const auto& [time, device, row] = changes[number];
        QStringList cells{toQt(TimeOfDay(time))};
        for (const std::string& text : TextsOf(row, m_program.state.numberMode))
            cells += toQt(text);
        auto* item = new QTreeWidgetItem(&m_table, cells);
        item->setData(0, kAddressRole, row.Address());
        m_table.scrollToItem(item);
    }
    for (int column = 0; column < m_table.columnCount(); ++column)
        m_table.resizeColumnToContents(column);
    showState();
}

void WatchPane::showState() {
    const Watch& watch = m_program.watch;
    QString text;
    if (!watch.Failure().empty())
        text = toQt(watch.Failure() + (m_box.isChecked() ? " It is tried again." : ""));
    else if (m_box.isChecked())
        text = toQt("Watching the " + EepromName(watch.Device()) + ": " +
                    Counted(watch.Readings(), "reading"));
    if (watch.Ignored() > 0)
        text += toQt((text.isEmpty() ? "" : ", ") + Counted(watch.Ignored(), "byte") + " ignored");
    m_state.setText(m_state.fontMetrics().elidedText(text, Qt::ElideRight, m_state.width()));
    m_state.setToolTip(text);
    m_state.setAccessibleName(text);
    const bool hasRows = !watch.Changes().empty();
    allow(m_ignore, !m_table.selectedItems().isEmpty(), "Select a change first");
    allow(m_clear, hasRows || watch.Ignored() > 0, "Nothing has changed");
    const bool isSeen = m_box.isChecked() || hasRows || watch.Ignored() > 0;
    if (isSeen == isHidden()) {
        setVisible(isSeen);
        Q_EMIT seen();
    }
}

void WatchPane::name() {
    std::map<TargetDevice, std::set<int>> addresses;
    for (QTreeWidgetItem* item : m_table.selectedItems()) {
        const int row = m_table.indexOfTopLevelItem(item);
        const auto& change = m_program.watch.Changes()[static_cast<std::size_t>(row)];
        addresses[change.device].insert(change.row.Address());
    }
    hold();
    for (const auto& [device, those] : addresses)
        m_name(device, those, *window());
    Q_EMIT renamed();
    m_table.setFocus();
}

void WatchPane::rename() {
    m_program.watch.Refresh();
    m_table.clear();
    showChanges();
    goOn();
}

void WatchPane::ignore() {
    std::set<int> addresses;
    for (const QTreeWidgetItem* item : m_table.selectedItems())
        addresses.insert(item->data(0, kAddressRole).toInt());
    for (const int address : addresses)
        m_program.watch.Ignore(address);
    showChanges();
    m_table.setFocus();
}

void WatchPane::clear() {
    m_program.watch.Clear();
    showChanges();
    m_box.setFocus();
}

std::string WatchPane::selectedRows(char separator) const {
    std::string text;
    for (const QTreeWidgetItem* item : m_table.selectedItems()) {
        for (int column = 0; column < m_table.columnCount(); ++column)
            text += (column == 0 ? "" : std::string(1, separator)) + fromQt(item->text(column));
        text += '\n';
    }
    return text;
}

}  // namespace tarnwell

#include "moc_WatchPane.cpp"
