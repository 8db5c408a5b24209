#include "ui/dialogs/FormHistory.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QVBoxLayout>
#include <utility>

#include "core/Words.h"
#include "ui/desktop/RowList.h"
#include "ui/looks/Measures.h"
#include "ui/looks/Text.h"

namespace tarnwell {

FormHistory::FormHistory(Program& program, User& user, const TvSet& set,
                         std::function<void(const std::function<void()>&)> run, QWidget* parent)
    : QDialog(parent), m_program(program), m_user(user), m_set(set), m_run(std::move(run)) {
    setObjectName(QStringLiteral("formHistory"));
    setWindowTitle(QStringLiteral("History of ") + toQt(set.name));
    auto* layout = new QVBoxLayout(this);
    addFilter(*layout);
    buildTable();
    layout->addWidget(&m_table, 1);
    m_skipped.setObjectName(QStringLiteral("lblSkipped"));
    layout->addWidget(&m_skipped);
    layout->addWidget(&m_course);
    addButtons(*layout);
    read();
    const QSize size =
        sizeFrom(program.state.historySize).value_or(QSize(scaled(9000), scaled(6000)));
    resize(size.expandedTo(minimumSizeHint()).boundedTo(roomFor(*this)));
    m_table.setFocus();
}

// The table may tell of its own end.
FormHistory::~FormHistory() {
    m_table.disconnect(this);
}

void FormHistory::addFilter(QBoxLayout& layout) {
    auto* label = new QLabel(QStringLiteral("&Show:"));
    label->setBuddy(&m_filter);
    m_filter.setObjectName(QStringLiteral("txtFilter"));
    m_filter.setAccessibleName(QStringLiteral("Show"));
    m_filter.setPlaceholderText(
        QStringLiteral("a setting, a day such as 2026-11-24, or an address"));
    m_settingsOnly.setText(QStringLiteral("Settings &only"));
    m_settingsOnly.setObjectName(QStringLiteral("chkSettingsOnly"));
    m_settingsOnly.setAccessibleName(QStringLiteral("Settings only"));
    connect(&m_filter, &QLineEdit::textChanged, this, &FormHistory::showEvents);
    connect(&m_settingsOnly, &QCheckBox::toggled, this, &FormHistory::showEvents);
    auto* line = new QHBoxLayout;
    line->addWidget(label);
    line->addWidget(&m_filter, 1);
    line->addWidget(&m_settingsOnly);
    layout.addLayout(line);
}

void FormHistory::buildTable() {
    QStringList heads;
    for (const std::string_view head : kHistoryColumns)
        heads += toQt(head);
    m_table.setObjectName(QStringLiteral("tblHistory"));
    m_table.setAccessibleName(QStringLiteral("History"));
    m_table.setHeaderLabels(heads);
    m_table.setUniformRowHeights(true);
    m_table.setAllColumnsShowFocus(true);
    m_table.setSelectionMode(QAbstractItemView::ExtendedSelection);
    copyRowsByKey(m_table, [this](char separator) {
        const auto events = selected();
        return events.empty()
                   ? std::string()
                   : ListText(events, m_program.state.numberMode, separator, m_program.names);
    });
    connect(&m_table, &QTreeWidget::itemExpanded, this,
            [this](QTreeWidgetItem* item) { unfold(*item); });
    connect(&m_table, &QTreeWidget::itemSelectionChanged, this, &FormHistory::enableButtons);
}

void FormHistory::addButtons(QBoxLayout& layout) {
    m_alsoNewer.setText(QStringLiteral("Also &what was changed again since"));
    m_alsoNewer.setObjectName(QStringLiteral("chkAlsoNewer"));
    m_alsoNewer.setAccessibleName(QString(m_alsoNewer.text()).remove('&'));
    layout.addWidget(&m_alsoNewer);
    auto* line = new QHBoxLayout;
    const auto add = [&](QPushButton& button, const char* name, const char* caption, auto action) {
        button.setText(QLatin1String(caption));
        button.setObjectName(QLatin1String(name));
        button.setAccessibleName(button.text().remove('&').remove(QStringLiteral("...")));
        button.setAutoDefault(false);
        connect(&button, &QPushButton::clicked, this, action);
        line->addWidget(&button);
    };
    add(m_takeBack, "cmdTakeBack", "&Take Back...", [this] { takeBack(); });
    add(m_goBack, "cmdGoBack", "&Go Back to Before...", [this] { goBack(); });
    add(m_saveList, "cmdSaveList", "Save &List...", [this] {
        saveRows(*this, m_user, m_program.state.archiveFolder, [this](char separator) {
            return ListText(m_events, m_program.state.numberMode, separator, m_program.names);
        });
    });
    line->addStretch(1);
    add(m_close, "cmdClose", "&Close", [this] { reject(); });
    layout.addLayout(line);
}

void FormHistory::read() {
    m_history = ReadHistory(HistoryPath(m_set));
    const bool isRead = m_history.fault == FileFault::None;
    m_skipped.setText(!isRead ? QStringLiteral("The history cannot be read.")
                              : toQt(Counted(m_history.skipped, "line")) +
                                    QStringLiteral(" cannot be read: cut short, or damaged."));
    m_skipped.setVisible(!isRead || m_history.skipped > 0);
    showEvents();
}

void FormHistory::showEvents() {
    m_events = Filtered(m_history, {fromQt(m_filter.text().trimmed()), m_settingsOnly.isChecked()},
                        m_program.names);
    const QSignalBlocker quiet(m_table);
    m_table.clear();
    QList<QTreeWidgetItem*> rows;
    for (const HistoryEvent& event : m_events) {
        QStringList cells;
        for (const std::string& text : TextsOf(event))
            cells += toQt(text);
        rows += new QTreeWidgetItem(cells);
        if (!event.bytes.empty())
            rows.back()->setChildIndicatorPolicy(QTreeWidgetItem::ShowIndicator);
    }
    m_table.addTopLevelItems(rows);
    for (int column = 0; column < m_table.columnCount(); ++column)
        m_table.resizeColumnToContents(column);
    if (!rows.isEmpty())
        m_table.setCurrentItem(rows.first());
    m_course.show(m_filter.text().isEmpty() ? std::nullopt : CourseOf(m_events, m_program.names),
                  m_program.state.numberMode);
    enableButtons();
}

void FormHistory::unfold(QTreeWidgetItem& item) {
    const int row = m_table.indexOfTopLevelItem(&item);
    if (row < 0 || item.childCount() > 0)
        return;
    const HistoryEvent& event = m_events[static_cast<std::size_t>(row)];
    for (const EventByte& byte : event.bytes) {
        auto* line = new QTreeWidgetItem(
            &item, {toQt(ChangeText(byte, event.device, m_program.state.numberMode, m_program.names,
                                    m_program.names.TitlesOn(event.device)))});
        line->setFirstColumnSpanned(true);
    }
}

/// The events that are selected, or of which a byte is.
std::vector<HistoryEvent> FormHistory::selected() const {
    std::vector<HistoryEvent> events;
    for (int row = 0; row < m_table.topLevelItemCount(); ++row) {
        const QTreeWidgetItem& item = *m_table.topLevelItem(row);
        bool isSelected = item.isSelected();
        for (int child = 0; child < item.childCount(); ++child)
            isSelected = isSelected || item.child(child)->isSelected();
        if (isSelected)
            events.push_back(m_events[static_cast<std::size_t>(row)]);
    }
    return events;
}

void FormHistory::enableButtons() {
    const auto events = selected();
    const auto& chosen = m_program.record.Chosen();
    const bool isOwn = chosen && chosen->folder == m_set.folder;
    const char* const other = "Choose this set first";
    allow(m_takeBack, isOwn && !events.empty(), isOwn ? "Select an event first" : other);
    allow(m_goBack, isOwn && events.size() == 1, isOwn ? "Select one event" : other);
    allow(m_saveList, !m_events.empty(), "No event is shown");
}

/// Of an event of which only bytes are selected these, else those that are shown.
TakenEvents FormHistory::taken() const {
    TakenEvents taken;
    for (int row = 0; row < m_table.topLevelItemCount(); ++row) {
        const QTreeWidgetItem& item = *m_table.topLevelItem(row);
        const HistoryEvent& event = m_events[static_cast<std::size_t>(row)];
        bool isTaken = item.isSelected();
        for (std::size_t index = 0; index < event.bytes.size(); ++index) {
            const auto* line = item.child(static_cast<int>(index));
            if (!item.isSelected() && (line == nullptr || !line->isSelected()))
                continue;
            taken.addresses.insert(event.bytes[index].address);
            isTaken = true;
        }
        if (isTaken)
            taken.numbers.push_back(event.number);
    }
    return taken;
}

void FormHistory::takeBack() {
    const Newer newer = m_alsoNewer.isChecked() ? Newer::AlsoTakenBack : Newer::LeftOut;
    m_run([&] { m_program.setCommands.TakeBack(taken(), newer); });
    read();
    m_table.setFocus();
}

void FormHistory::goBack() {
    const HistoryEvent event = selected().front();
    m_run([&] { m_program.setCommands.GoBack(event); });
    read();
    m_table.setFocus();
}

void FormHistory::done(int result) {
    m_program.state.historySize = textOf(size());
    QDialog::done(result);
}

}  // namespace tarnwell
