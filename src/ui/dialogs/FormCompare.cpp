#include "ui/dialogs/FormCompare.h"

#include <QClipboard>
#include <QFileDialog>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QScreen>
#include <QScrollBar>
#include <QVBoxLayout>
#include <array>
#include <utility>

#include "ui/dialogs/FormBackups.h"
#include "ui/looks/Measures.h"
#include "ui/looks/Text.h"

namespace tarnwell {

namespace {

constexpr int kMargin = 120;
constexpr int kColumnGap = 120;
constexpr int kRowsAtLeast = 4;

/// By `Source`.
constexpr std::array kSourceNames{"Memory Buffer",    "Primary EEProm",      "Secondary EEProm",
                                  "Image Archive...", "Settings Archive...", "Backup..."};

constexpr Message kNotSaved{"The list could not be saved.", "E R R O R", BoxStyle::Exclamation};

bool isStep(int key) {
    return key == Qt::Key_Up || key == Qt::Key_Down || key == Qt::Key_PageUp ||
           key == Qt::Key_PageDown || key == Qt::Key_Home || key == Qt::Key_End;
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
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(scaled(kMargin), scaled(kMargin), scaled(kMargin), scaled(kMargin));
    layout->setSpacing(scaled(kMargin) / 2);

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
    auto* picture = new QVBoxLayout;
    picture->addWidget(&m_map, 1);
    picture->addWidget(new DifferenceLegend);
    auto* content = new QHBoxLayout;
    content->addWidget(&m_table);
    content->addLayout(picture, 1);
    layout->addLayout(content, 1);
    addButtons(*layout);
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
        box.addItem(QLatin1String(source));
    box.installEventFilter(this);
    layout.addWidget(label);
    layout.addWidget(&box, 1);
    connect(&box, &QComboBox::activated, this, [this, side](int source) { choose(side, source); });
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
        const bool steps =
            event->type() == QEvent::KeyPress && isStep(static_cast<QKeyEvent*>(event)->key());
        if (steps)
            box->showPopup();
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
    else
        QDialog::keyPressEvent(event);
}

void FormCompare::addButtons(QBoxLayout& layout) {
    auto* line = new QHBoxLayout;
    const auto add = [&](QPushButton& button, const char* name, const char* caption, auto action) {
        button.setText(QLatin1String(caption));
        button.setObjectName(QLatin1String(name));
        button.setAccessibleName(button.text().remove('&'));
        button.setAutoDefault(false);
        connect(&button, &QPushButton::clicked, this, action);
        line->addWidget(&button);
    };
    add(m_take, "cmdTake", "&Take", [this] { take(); });
    add(m_showInEditor, "cmdShowInEditor", "Show in &Editor", [this] { showSelected(false); });
    add(m_showSetting, "cmdShowSetting", "Show &Setting", [this] { showSelected(true); });
    add(m_saveList, "cmdSaveList", "Save &List...", [this] { saveList(); });
    line->addStretch(1);
    add(m_close, "cmdClose", "&Close", [this] { reject(); });
    layout.addLayout(line);
}

void FormCompare::choose(Side side, int source) {
    if (static_cast<Source>(source) == Source::Backup)
        chooseBackup(side);
    else
        m_run([&] { m_compare.Choose(side, static_cast<Source>(source)); });
    showSides();
    showDifferences();
}

void FormCompare::chooseBackup(Side side) {
    FormBackups backups(m_program, FormBackups::Purpose::Pick, this);
    if (backups.exec() == static_cast<int>(FormBackups::Choice::Compare))
        m_run([&] { m_compare.ChooseBackup(side, backups.selected()); });
}

void FormCompare::showSides() {
    const auto show = [this](QComboBox& box, Side side) {
        const auto source = m_compare.Of(side);
        box.setCurrentIndex(source ? static_cast<int>(*source) : -1);
    };
    show(m_left, Side::Left);
    show(m_right, Side::Right);
}

void FormCompare::showDifferences() {
    const NumberMode mode = m_program.state.numberMode;
    std::vector<DifferenceRow> rows = m_compare.Rows();
    if (m_settingsOnly.isChecked())
        std::erase_if(rows, [](const DifferenceRow& row) { return !row.cell; });
    m_model.show(std::move(rows), mode);
    fitTable();
    const std::string summary = m_compare.Summary();
    m_summary.setText(!summary.empty() ? toQt(summary)
                      : HoldsImage(m_program.state, m_program.buffer)
                          ? QStringLiteral("Choose both sides")
                          : QStringLiteral("Choose both sides; the memory buffer holds no image"));
    if (summary.empty())
        m_map.clear();
    else
        m_map.show(m_compare.Image(Side::Left), m_compare.Image(Side::Right), m_compare.Device(),
                   mode);
    enableButtons();
}

/// As wide as its columns; the picture has the rest.
void FormCompare::fitTable() {
    int width = m_table.verticalScrollBar()->sizeHint().width() + 2 * m_table.frameWidth();
    for (int column = 0; column < m_model.columnCount(); ++column) {
        m_table.resizeColumnToContents(column);
        m_table.setColumnWidth(column, m_table.columnWidth(column) + scaled(kColumnGap));
        width += m_table.columnWidth(column);
    }
    m_table.setFixedWidth(std::min(width, screen()->availableSize().width() / 2));
}

void FormCompare::showProgress() {
    if (const auto& progress = m_program.statusBar.RunningProgress())
        m_summary.setText(QStringLiteral("Reading the EEProm: %1%, %2 s left")
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
    const int frame = scaled(kMargin) * 4;
    const int height =
        std::min(std::max(sizeHint().height(), others + rows * row), room.height() - frame);
    resize(std::min(sizeHint().width(), room.width() - frame), height);
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
    const auto rows = selected();
    const bool one = m_table.currentIndex().isValid() && !rows.empty();
    m_take.setEnabled(m_compare.CanTake() && !rows.empty());
    m_showInEditor.setEnabled(one);
    m_showSetting.setEnabled(one && m_model.rowOf(m_table.currentIndex()).cell.has_value() &&
                             m_program.state.targetDevice == TargetDevice::Primary);
    m_saveList.setEnabled(m_model.rowCount() > 0);
}

void FormCompare::copyRows() {
    const auto rows = selected();
    if (!rows.empty())
        QGuiApplication::clipboard()->setText(
            toQt(ListText(rows, m_program.state.numberMode, '\t')));
}

void FormCompare::saveList() {
    QFileDialog dialog(this, QStringLiteral("Save List As..."),
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
        m_destination->cell = m_model.rowOf(current).cell;
    accept();
}

void FormCompare::take() {
    const int row = m_table.currentIndex().row();
    m_run([this] { m_compare.Take(selected()); });
    showDifferences();
    m_table.setCurrentIndex(m_model.index(std::min(row, m_model.rowCount() - 1), 0));
    m_table.setFocus();
}

}  // namespace tarnwell
