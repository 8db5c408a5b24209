#include "ui/dialogs/FormCompare.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QScreen>
#include <QScrollBar>
#include <QVBoxLayout>
#include <utility>

#include "ui/desktop/RowList.h"
#include "ui/desktop/ScreenArea.h"
#include "ui/dialogs/FormBackups.h"
#include "ui/looks/Measures.h"
#include "ui/looks/Text.h"

namespace tarnwell {

namespace {

constexpr int kCompareMargin = 120;
constexpr int kColumnGap = 120;
constexpr int kRowsAtLeast = 4;

bool isSetting(const DifferenceRow& row) {
    return row.named && row.named->cell;
}

}  // namespace

FormCompare::FormCompare(Program& program, User& user,
                         std::function<void(const std::function<void()>&)> run, NameBytes name,
                         QWidget* parent)
    : QDialog(parent),
      m_program(program),
      m_compare(program.compare),
      m_user(user),
      m_command(std::move(run)),
      m_name(std::move(name)),
      m_left(Side::Left, program),
      m_right(Side::Right, program),
      m_watch(program, m_command, m_name) {
    setObjectName(QStringLiteral("formCompare"));
    setWindowTitle(QStringLiteral("Compare"));
    auto* all = new QWidget;
    auto* layout = new QVBoxLayout(all);
    layout->setContentsMargins(scaled(kCompareMargin), scaled(kCompareMargin),
                               scaled(kCompareMargin), scaled(kCompareMargin));
    layout->setSpacing(scaled(kCompareMargin) / 2);

    auto* sides = new QHBoxLayout;
    for (const auto& [side, box] : {std::pair(Side::Left, &m_left), {Side::Right, &m_right}}) {
        box->addTo(*sides);
        connect(box, &SideBox::chosen, this,
                [this, of = side](Source source, std::optional<int> file) {
                    choose(of, source, file);
                });
    }
    layout->addLayout(sides);

    m_summary.setObjectName(QStringLiteral("lblDifferences"));
    m_settingsOnly.setText(QStringLiteral("Settings &only"));
    m_settingsOnly.setObjectName(QStringLiteral("chkSettingsOnly"));
    m_settingsOnly.setAccessibleName(QStringLiteral("Settings only"));
    connect(&m_settingsOnly, &QCheckBox::toggled, this, &FormCompare::showDifferences);
    auto* line = new QHBoxLayout;
    line->addWidget(&m_summary, 1);
    line->addWidget(&m_settingsOnly);
    layout->addLayout(line);

    buildTable();
    m_picture = new QVBoxLayout;
    m_picture->addWidget(&m_map, 1);
    m_picture->addWidget(new DifferenceLegend);
    auto* content = new QHBoxLayout;
    content->addWidget(&m_table);
    content->addLayout(m_picture, 1);
    layout->addLayout(content, 1);
    layout->addWidget(&m_watch);
    addButtons(*layout);
    auto* window = new QVBoxLayout(this);
    window->setContentsMargins(0, 0, 0, 0);
    auto* area = new ScreenArea(*all, {}, this);
    area->stretch();
    window->addWidget(area);
    connect(&m_map, &DifferenceMap::wanted, this, &FormCompare::showAddress);
    connect(&m_watch, &WatchPane::found, this, &FormCompare::showDifferences);
    connect(&m_watch, &WatchPane::renamed, this, &FormCompare::showNames);
    connect(&m_watch, &WatchPane::seen, this, &FormCompare::makeRoom);
    showSides();
    showDifferences();
    m_watch.goOn();
    placeWindow();
    m_table.setFocus();
}

void FormCompare::buildTable() {
    m_table.setObjectName(QStringLiteral("tblDifferences"));
    m_table.setAccessibleName(QStringLiteral("Differences"));
    m_table.setModel(&m_model);
    m_table.setUniformRowHeights(true);
    m_table.setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_table.setAllColumnsShowFocus(true);
    m_table.header()->setSectionsMovable(false);
    m_table.header()->setStretchLastSection(false);
    m_table.setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    connect(m_table.selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &FormCompare::enableButtons);
    connect(m_table.selectionModel(), &QItemSelectionModel::currentChanged, this,
            [this](const QModelIndex& current) {
                if (current.isValid())
                    m_map.setCurrent(m_model.addressOf(current));
            });
    copyRowsByKey(m_table, [this](char separator) {
        const auto rows = selected();
        return rows.empty() ? std::string() : ListText(rows, m_program.state.numberMode, separator);
    });
    nameRowsByKey(m_table, "mnuCompareName", [this] { nameSelected(); });
}

/// Each of the bytes that differ in the selected rows.
void FormCompare::nameSelected() {
    std::set<int> addresses;
    for (const DifferenceRow& row : selected())
        for (const Difference& byte : row.bytes)
            addresses.insert(byte.address);
    m_watch.hold();
    m_name(m_compare.Device(), addresses, *this);
    showNames();
    m_table.setFocus();
}

void FormCompare::showNames() {
    m_compare.Refresh();
    showDifferences();
    m_watch.rename();
}

void FormCompare::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_F6)
        step((event->modifiers() & Qt::ShiftModifier) != 0 ? -1 : 1);
    else if (event->key() == Qt::Key_F5)
        m_readAgain.click();
    else
        QDialog::keyPressEvent(event);
}

/// In two lines where the screen has no room for one.
void FormCompare::addButtons(QBoxLayout& layout) {
    auto* lines = new QBoxLayout(QBoxLayout::LeftToRight);
    QBoxLayout* line = nullptr;
    const auto begin = [&] { lines->addLayout(line = new QHBoxLayout); };
    const auto add = [&](QPushButton& button, const char* name, const char* caption, auto action) {
        button.setText(QLatin1String(caption));
        button.setObjectName(QLatin1String(name));
        button.setAccessibleName(button.text().remove('&'));
        button.setAutoDefault(false);
        connect(&button, &QPushButton::clicked, this, action);
        line->addWidget(&button);
    };
    begin();
    add(m_take, "cmdTake", "&Take", [this] { take(); });
    add(m_write, "cmdWriteSelected", "&Write to EEPROM...", [this] { write(); });
    add(m_readAgain, "cmdReadAgain", "Read &Again", [this] { readAgain(); });
    line->addWidget(&m_watch.box());
    line->addStretch(1);
    begin();
    lines->setStretchFactor(line, 1);
    add(m_showInEditor, "cmdShowInEditor", "Show in &Editor", [this] { showSelected(false); });
    add(m_showSetting, "cmdShowSetting", "Show &Setting", [this] { showSelected(true); });
    add(m_saveList, "cmdSaveList", "Save &List...", [this] {
        saveRows(*this, m_user, m_program.state.archiveFolder, [this](char separator) {
            return ListText(m_model.rows(), m_program.state.numberMode, separator);
        });
    });
    line->addStretch(1);
    add(m_close, "cmdClose", "&Close", [this] { reject(); });
    layout.addLayout(lines);
    if (lines->sizeHint().width() > roomFor(*this).width() - 2 * scaled(kCompareMargin))
        lines->setDirection(QBoxLayout::TopToBottom);
}

/// Nothing is watched while a command works on a device.
void FormCompare::run(const std::function<void()>& command) {
    m_watch.hold();
    m_command(command);
    m_watch.goOn();
}

void FormCompare::choose(Side side, Source source, std::optional<int> file) {
    const ProgramState& state = m_program.state;
    const RecentFiles& recent =
        source == Source::ImageArchive ? state.recentImages : state.recentSettings;
    if (file)
        run([&] { m_compare.ChooseFile(side, source, recent.At(*file)); });
    else if (source == Source::Backup)
        chooseBackup(side);
    else
        run([&] { m_compare.Choose(side, source); });
    showSides();
    showDifferences();
}

void FormCompare::chooseBackup(Side side) {
    FormBackups backups(m_program, m_program.backups.Folder(), FormBackups::Purpose::Pick, this);
    if (backups.exec() == static_cast<int>(FormBackups::Choice::Compare))
        run([&] { m_compare.ChooseBackup(side, backups.selected()); });
}

void FormCompare::showSides() {
    m_left.showSide();
    m_right.showSide();
}

void FormCompare::showDifferences() {
    const NumberMode mode = m_program.state.numberMode;
    std::vector<DifferenceRow> rows = m_compare.Rows();
    if (m_settingsOnly.isChecked())
        std::erase_if(rows, [](const DifferenceRow& row) { return !row.named; });
    if (rows != m_model.rows() || rows.empty()) {  // what stays as it was stays selected
        m_model.show(std::move(rows), mode);
        fitTable();
    }
    showSummary();
    if (m_compare.Summary().empty())
        m_map.clear();
    else
        m_map.show(m_compare.Image(Side::Left), m_compare.Image(Side::Right), m_program.names,
                   m_compare.Device(), mode);
    enableButtons();
}

void FormCompare::showSummary(const QString& outcome) {
    const std::string summary = m_compare.Summary();
    const QString text =
        !summary.empty() ? toQt(summary)
        : HoldsImage(m_program.state, m_program.buffer)
            ? QStringLiteral("Choose both sides")
            : QStringLiteral("Choose both sides; the memory buffer holds no image");
    m_summary.setText(outcome.isEmpty() ? text : text + QStringLiteral(".  ") + outcome);
}

/// As wide as its columns, if the screen has the room beside the picture, which has the rest.
void FormCompare::fitTable() {
    int width = m_table.verticalScrollBar()->sizeHint().width() + 2 * m_table.frameWidth();
    for (int column = 0; column < m_model.columnCount(); ++column) {
        m_table.resizeColumnToContents(column);
        m_table.setColumnWidth(column, m_table.columnWidth(column) + scaled(kColumnGap));
        width += m_table.columnWidth(column);
    }
    const int others = m_picture->minimumSize().width() + 3 * scaled(kCompareMargin);
    m_table.setFixedWidth(std::min(width, roomFor(*this).width() - others));
}

void FormCompare::showProgress() {
    if (const auto& progress = m_program.statusBar.RunningProgress())
        m_summary.setText(QStringLiteral("%1 %2%, %3 s left; Escape twice stops it")
                              .arg(toQt(m_program.statusBar.Text(Panel::Status)))
                              .arg(progress->percent)
                              .arg(progress->secondsLeft));
}

void FormCompare::placeWindow() {
    const QStringList kept = toQt(m_program.state.comparePlace).split(' ');
    const QRect room = screen()->availableGeometry();
    if (kept.size() == 4) {
        const QSize size(kept[2].toInt(), kept[3].toInt());
        resize(size.expandedTo(minimumSizeHint()).boundedTo(room.size()));
        const QPoint place(kept[0].toInt(), kept[1].toInt());
        return move(broughtBack({place, frameGeometry().size()}, {room}));
    }
    const int row = std::max(m_table.sizeHintForRow(0), fontMetrics().lineSpacing());
    const int rows = std::max(kRowsAtLeast, m_model.rowCount() + 1);
    const int others = sizeHint().height() - m_table.sizeHint().height();
    const QSize wanted(sizeHint().width(), std::max(sizeHint().height(), others + rows * row));
    resize(wanted.boundedTo(roomFor(*this)));
}

/// For the watch, as far as the screen has it.
void FormCompare::makeRoom() {
    const int change = m_watch.isHidden() ? -m_watch.height() : m_watch.sizeHint().height();
    resize(width(), std::min(height() + change, roomFor(*this).height()));
}

void FormCompare::done(int result) {
    m_program.state.comparePlace =
        fromQt(QStringLiteral("%1 %2 %3 %4").arg(x()).arg(y()).arg(width()).arg(height()));
    QDialog::done(result);
}

void FormCompare::step(int direction) {
    const int rows = m_model.rowCount();
    if (rows == 0)
        return;
    QModelIndex current = m_table.currentIndex();
    if (current.parent().isValid())
        current = current.parent();
    const bool isOnRow = m_table.selectionModel()->hasSelection();
    const int next = isOnRow         ? (current.row() + direction + rows) % rows
                     : direction > 0 ? 0
                                     : rows - 1;
    m_table.selectionModel()->setCurrentIndex(
        m_model.index(next, 0), QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
}

void FormCompare::showAddress(int address) {
    const QModelIndex index = m_model.indexOf(address);
    if (!index.isValid())
        return;
    m_table.expand(index.parent());
    m_table.setCurrentIndex(index);
}

std::vector<DifferenceRow> FormCompare::selected() const {
    return m_model.selected(m_table.selectionModel()->selectedRows());
}

void FormCompare::enableButtons() {
    constexpr const char* kSelect = "Select a row first";
    constexpr const char* kNoRows = "No row is shown";
    const bool isSelected = !selected().empty();
    const bool isShown = m_model.rowCount() > 0;
    const bool one = m_table.currentIndex().isValid() && isSelected;
    const bool setting = one && isSetting(m_model.rowOf(m_table.currentIndex()));
    const bool target = m_program.state.targetDevice == TargetDevice::Primary;
    allow(m_take, m_compare.CanTake() && isSelected,
          m_compare.CanTake() ? kSelect : "Choose the memory buffer on one side only");
    allow(m_write, m_compare.CanWrite() && isShown,
          m_compare.CanWrite()       ? kNoRows
          : m_compare.HasOneDevice() ? "The secondary EEPROM has no named settings"
                                     : "Choose an EEPROM on one side only");
    if (m_write.isEnabled())
        m_write.setToolTip(isSelected ? QStringLiteral("Writes the selected rows")
                                      : QStringLiteral("Writes all rows that are shown"));
    allow(m_readAgain, m_compare.HasDevice(), "Choose an EEPROM on a side");
    if (m_readAgain.isEnabled())
        m_readAgain.setToolTip(QStringLiteral("F5"));
    allow(m_showInEditor, one, kSelect);
    allow(m_showSetting, setting && target,
          !one      ? kSelect
          : setting ? "Select the primary EEPROM first"
                    : "The row is no setting");
    allow(m_saveList, isShown, kNoRows);
}

void FormCompare::showSelected(bool asSetting) {
    const QModelIndex current = m_table.currentIndex();
    m_destination = {m_model.addressOf(current), std::nullopt};
    if (asSetting)
        m_destination->cell = m_model.rowOf(current).named->cell;
    accept();
}

void FormCompare::take() {
    const int row = m_table.currentIndex().row();
    run([this] { m_compare.Take(selected()); });
    showDifferences();
    m_table.setCurrentIndex(m_model.index(std::min(row, m_model.rowCount() - 1), 0));
    m_table.setFocus();
}

void FormCompare::write() {
    run([this] {
        const auto rows = selected();
        m_compare.Write(rows.empty() ? m_model.rows() : rows);
    });
    showSides();
    showDifferences();
    showSummary(toQt(m_program.statusBar.Text(Panel::Status)));
    m_table.setFocus();
}

void FormCompare::readAgain() {
    std::vector<DifferenceRow> changed;
    run([&] { changed = m_compare.ReadAgain(); });
    showDifferences();
    showSummary(toQt(m_program.statusBar.Text(Panel::Status)));
    QItemSelection selection;
    for (int row = 0; row < m_model.rowCount(); ++row) {
        const QModelIndex index = m_model.index(row, 0);
        if (std::ranges::any_of(changed, [&](const DifferenceRow& other) {
                return Meet(m_model.rowOf(index), other);
            }))
            selection.select(index, index);
    }
    if (selection.isEmpty())
        return;
    m_table.selectionModel()->setCurrentIndex(selection.constFirst().topLeft(),
                                              QItemSelectionModel::NoUpdate);
    m_table.selectionModel()->select(
        selection, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    m_table.scrollTo(m_table.currentIndex());
}

}  // namespace tarnwell
