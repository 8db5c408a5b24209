#include "ui/dialogs/FormCompare.h"

#include <QClipboard>
#include <QFileInfo>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QScreen>
#include <QScrollBar>
#include <QVBoxLayout>
#include <array>
#include <utility>

#include "ui/desktop/ArchiveDialog.h"
#include "ui/desktop/ScreenArea.h"
#include "ui/dialogs/FormBackups.h"
#include "ui/looks/Measures.h"
#include "ui/looks/Text.h"

namespace tarnwell {

namespace {

constexpr int kCompareMargin = 120;
constexpr int kColumnGap = 120;
constexpr int kRowsAtLeast = 4;

/// By `Source`.
constexpr std::array kSourceNames{"Memory Buffer",    "Primary EEProm",      "Secondary EEProm",
                                  "Image Archive...", "Settings Archive...", "Backup..."};

/// Of an item that is a file, its row in the list of those of its kind.
constexpr int kRowRole = Qt::UserRole + 1;

constexpr Message kNotSaved{"The list could not be saved.", "E R R O R", BoxStyle::Exclamation};

bool isStep(int key) {
    return key == Qt::Key_Up || key == Qt::Key_Down || key == Qt::Key_PageUp ||
           key == Qt::Key_PageDown || key == Qt::Key_Home || key == Qt::Key_End;
}

bool isSetting(const DifferenceRow& row) {
    return row.named && row.named->cell;
}

}  // namespace

FormCompare::FormCompare(Program& program, User& user,
                         std::function<void(const std::function<void()>&)> run, QWidget* parent)
    : QDialog(parent),
      m_program(program),
      m_compare(program.compare),
      m_user(user),
      m_run(std::move(run)) {
    setObjectName(QStringLiteral("formCompare"));
    setWindowTitle(QStringLiteral("Compare"));
    auto* all = new QWidget;
    auto* layout = new QVBoxLayout(all);
    layout->setContentsMargins(scaled(kCompareMargin), scaled(kCompareMargin),
                               scaled(kCompareMargin), scaled(kCompareMargin));
    layout->setSpacing(scaled(kCompareMargin) / 2);

    auto* sides = new QHBoxLayout;
    addSide(*sides, m_left, "cboLeft", QStringLiteral("Le&ft:"), Side::Left);
    addSide(*sides, m_right, "cboRight", QStringLiteral("&Right:"), Side::Right);
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
    addButtons(*layout);
    auto* window = new QVBoxLayout(this);
    window->setContentsMargins(0, 0, 0, 0);
    auto* area = new ScreenArea(*all, {}, this);
    area->stretch();
    window->addWidget(area);
    connect(&m_map, &DifferenceMap::wanted, this, &FormCompare::showAddress);
    showSides();
    showDifferences();
    placeWindow();
    m_table.setFocus();
}

void FormCompare::addSide(QBoxLayout& layout, QComboBox& box, const char* name,
                          const QString& caption, Side side) {
    auto* label = new QLabel(caption);
    label->setBuddy(&box);
    box.setObjectName(QLatin1String(name));
    box.setAccessibleName(side == Side::Left ? QStringLiteral("Left side")
                                             : QStringLiteral("Right side"));
    box.setPlaceholderText(QStringLiteral("(nothing)"));
    for (const char* source : kSourceNames)
        box.addItem(QLatin1String(source), box.count());
    box.installEventFilter(this);
    layout.addWidget(label);
    layout.addWidget(&box, 1);
    connect(&box, &QComboBox::activated, this,
            [this, side, &box](int index) { choose(side, box, index); });
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
    m_table.installEventFilter(this);
}

// The table would copy its current cell; a closed list would read a device or ask for a file at
// each step through it.
bool FormCompare::eventFilter(QObject* watched, QEvent* event) {
    if (auto* box = qobject_cast<QComboBox*>(watched)) {
        const int key =
            event->type() == QEvent::KeyPress ? static_cast<QKeyEvent*>(event)->key() : 0;
        const bool steps = isStep(key);
        if (steps)
            box->showPopup();
        if (key == Qt::Key_Home || key == Qt::Key_End)
            QCoreApplication::sendEvent(box->view(), event);
        return steps || event->type() == QEvent::Wheel;
    }
    if (watched != &m_table || event->type() != QEvent::KeyPress ||
        !static_cast<QKeyEvent*>(event)->matches(QKeySequence::Copy))
        return QDialog::eventFilter(watched, event);
    copyRows();
    return true;
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
    line->addStretch(1);
    begin();
    lines->setStretchFactor(line, 1);
    add(m_showInEditor, "cmdShowInEditor", "Show in &Editor", [this] { showSelected(false); });
    add(m_showSetting, "cmdShowSetting", "Show &Setting", [this] { showSelected(true); });
    add(m_saveList, "cmdSaveList", "Save &List...", [this] { saveList(); });
    line->addStretch(1);
    add(m_close, "cmdClose", "&Close", [this] { reject(); });
    layout.addLayout(lines);
    if (lines->sizeHint().width() > roomFor(*this).width() - 2 * scaled(kCompareMargin))
        lines->setDirection(QBoxLayout::TopToBottom);
}

void FormCompare::choose(Side side, const QComboBox& box, int index) {
    const auto source = static_cast<Source>(box.itemData(index).toInt());
    const QVariant row = box.itemData(index, kRowRole);
    const ProgramState& state = m_program.state;
    const RecentFiles& recent =
        source == Source::ImageArchive ? state.recentImages : state.recentSettings;
    if (row.isValid())
        m_run([&] { m_compare.ChooseFile(side, source, recent.At(row.toInt())); });
    else if (source == Source::Backup)
        chooseBackup(side);
    else
        m_run([&] { m_compare.Choose(side, source); });
    showSides();
    showDifferences();
}

void FormCompare::chooseBackup(Side side) {
    FormBackups backups(m_program, m_program.backups.Folder(), FormBackups::Purpose::Pick, this);
    if (backups.exec() == static_cast<int>(FormBackups::Choice::Compare))
        m_run([&] { m_compare.ChooseBackup(side, backups.selected()); });
}

void FormCompare::showSides() {
    showSide(m_left, Side::Left);
    showSide(m_right, Side::Right);
}

void FormCompare::showSide(QComboBox& box, Side side) {
    while (box.count() > static_cast<int>(kSourceNames.size()))
        box.removeItem(box.count() - 1);
    const auto source = m_compare.Of(side);
    int current = source ? static_cast<int>(*source) : -1;
    const auto add = [&](const QString& kind, Source of, const RecentFiles& files) {
        if (!files.Paths().empty())
            box.insertSeparator(box.count());
        int row = 0;
        for (const std::string& path : files.Paths()) {
            const QFileInfo file(pathToQt(path));
            if (source == of && path == m_compare.FileOf(side))
                current = box.count();
            box.addItem(kind + file.fileName(), static_cast<int>(of));
            box.setItemData(box.count() - 1, row++, kRowRole);
            box.setItemData(box.count() - 1, file.path(), Qt::ToolTipRole);
        }
    };
    if (source == Source::Backup) {
        const QFileInfo file(pathToQt(m_compare.FileOf(side)));
        box.insertSeparator(box.count());
        current = box.count();
        box.addItem(QStringLiteral("Backup: ") + file.fileName(), static_cast<int>(*source));
        box.setItemData(current, file.path(), Qt::ToolTipRole);
    }
    add(QStringLiteral("Image: "), Source::ImageArchive, m_program.state.recentImages);
    add(QStringLiteral("Settings: "), Source::SettingsArchive, m_program.state.recentSettings);
    box.setCurrentIndex(current);
    box.setToolTip(box.currentData(Qt::ToolTipRole).toString());
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

void FormCompare::copyRows() {
    const auto rows = selected();
    if (!rows.empty())
        QGuiApplication::clipboard()->setText(
            toQt(ListText(rows, m_program.state.numberMode, '\t')));
}

void FormCompare::saveList() {
    FileDialog dialog(this, QStringLiteral("Save List As..."),
                      pathToQt(m_program.state.archiveFolder),
                      QStringLiteral("Comma-Separated Values (*.csv)"));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setDefaultSuffix(QStringLiteral("csv"));
    if (dialog.exec() != QDialog::Accepted)
        return;
    const std::string path = pathFromQt(dialog.selectedFiles().constFirst());
    if (!SaveList(path, m_model.rows(), m_program.state.numberMode))
        m_user.ShowBox(kNotSaved);
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
    m_run([this] { m_compare.Take(selected()); });
    showDifferences();
    m_table.setCurrentIndex(m_model.index(std::min(row, m_model.rowCount() - 1), 0));
    m_table.setFocus();
}

void FormCompare::write() {
    m_run([this] {
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
    m_run([&] { changed = m_compare.ReadAgain(); });
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
