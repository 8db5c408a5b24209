#include "ui/dialogs/FormSets.h"

#include <QDateTime>
#include <QFormLayout>
#include <QGridLayout>
#include <QLocale>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "core/Words.h"
#include "sets/HistoryFile.h"
#include "sets/Recognition.h"
#include "ui/looks/Measures.h"
#include "ui/looks/Text.h"

namespace tarnwell {

namespace {

constexpr int kNotesLines = 3;
constexpr int kButtonsInRow = 5;

/// In the user's own form.
QString readWhenText(const std::string& time) {
    const auto read = QDateTime::fromString(toQt(time), Qt::ISODate);
    return read.isValid() ? QLocale().toString(read, QLocale::ShortFormat) : toQt(time);
}

QString differingText(const Program& program, const TvSet& set) {
    const auto ready = ReadyImage(set, program.state.targetDevice);
    if (!ready || !HoldsImage(program.state, program.buffer))
        return {};
    const std::size_t bytes = BytesDiffering(*ready, program.buffer);
    return bytes == 0 ? QStringLiteral("no differences")
                      : toQt(Counted(bytes, "byte", "differs", "differ"));
}

}  // namespace

FormSets::FormSets(Program& program, std::function<void(const std::function<void()>&)> run,
                   QWidget* parent)
    : QDialog(parent),
      m_program(program),
      m_run(std::move(run)),
      m_table("tblSets", QStringLiteral("Television sets"),
              {QStringLiteral("Name"), QStringLiteral("Model"), QStringLiteral("Last read"),
               QStringLiteral("Last written"), QStringLiteral("Against the buffer")}) {
    setObjectName(QStringLiteral("formSets"));
    setWindowTitle(QStringLiteral("Television Set"));
    auto* layout = new QVBoxLayout(this);
    auto* intro = new QLabel(QStringLiteral("&Sets that a record is kept of:"));
    intro->setBuddy(&m_table);
    layout->addWidget(intro);
    layout->addWidget(&m_table, 1);
    m_damaged.setObjectName(QStringLiteral("lblDamaged"));
    m_damaged.setTextFormat(Qt::PlainText);
    m_damaged.setWordWrap(true);
    layout->addWidget(&m_damaged);
    addTexts();
    addButtons();
    fill(program.record.Chosen() ? program.record.Chosen()->folder : std::string());
    connect(&m_table, &QTreeWidget::itemSelectionChanged, this, &FormSets::showSelection);
    connect(&m_table, &QTreeWidget::itemDoubleClicked, m_rowButtons.first(), &QPushButton::click);
    const int width = std::max(scaled(7200), m_table.fitColumns() + scaled(600));
    resize(QSize(width, scaled(5400)).boundedTo(roomFor(*this)));
    m_table.setFocus();
}

// The table may tell of its own end.
FormSets::~FormSets() {
    m_table.disconnect(this);
}

void FormSets::addTexts() {
    auto* texts = new QFormLayout;
    const auto add = [&](QWidget& field, const char* name, const QString& label) {
        field.setObjectName(QLatin1String(name));
        texts->addRow(label, &field);
    };
    add(m_model, "txtModel", QStringLiteral("&Model:"));
    add(m_notes, "txtNotes", QStringLiteral("N&otes:"));
    m_notes.setTabChangesFocus(true);
    m_notes.setFixedHeight((kNotesLines + 1) * m_notes.fontMetrics().lineSpacing());
    static_cast<QVBoxLayout*>(layout())->addLayout(texts);
}

QPushButton* FormSets::addButton(const char* name, const QString& text,
                                 std::function<void()> pressed) {
    auto* button = new QPushButton(text, this);
    button->setObjectName(QLatin1String(name));
    button->setAccessibleName(QString(text).remove(QLatin1Char('&')).remove(QStringLiteral("...")));
    button->setAutoDefault(false);
    connect(button, &QPushButton::clicked, this, std::move(pressed));
    return button;
}

void FormSets::addButtons() {
    const auto ends = [this](Choice choice) {
        return [this, choice] { done(static_cast<int>(choice)); };
    };
    m_rowButtons = {
        addButton("cmdUse", QStringLiteral("&Use"), ends(Choice::Use)),
        addButton("cmdRename", QStringLiteral("&Rename..."), [this] { rename(); }),
        addButton("cmdHistory", QStringLiteral("&History..."), ends(Choice::History)),
        addButton("cmdBackups", QStringLiteral("&Backups..."), ends(Choice::Backups)),
        addButton("cmdShowFolder", QStringLiteral("Show &Folder"), ends(Choice::ShowFolder)),
        addButton("cmdRemove", QStringLiteral("Remo&ve..."), [this] { remove(); })};
    m_rowButtons.first()->setDefault(true);
    QList<QPushButton*> all = m_rowButtons;
    all.insert(1, addButton("cmdUseNone", QStringLiteral("Use Non&e"), ends(Choice::UseNone)));
    allow(*all[1], m_program.record.Chosen().has_value(), "No set is chosen");
    all.insert(2, addButton("cmdNewSet", QStringLiteral("&New..."), [this] { make(); }));
    all.append(addButton("cmdClose", QStringLiteral("Close"), [this] { reject(); }));
    auto* buttons = new QGridLayout;
    for (int index = 0; index < all.size(); ++index)
        buttons->addWidget(all[index], index / kButtonsInRow, index % kButtonsInRow);
    static_cast<QVBoxLayout*>(layout())->addLayout(buttons);
}

/// The set of the folder is selected then, or the first one.
void FormSets::fill(const std::string& folder) {
    m_sets = m_program.sets.All();
    const QSignalBlocker quiet(m_table);
    m_table.clear();
    for (const TvSet& set : m_sets.sets)
        addRow(set);
    const auto found = std::ranges::find(m_sets.sets, folder, &TvSet::folder);
    const auto row = found == m_sets.sets.end() ? 0 : found - m_sets.sets.begin();
    if (!m_sets.sets.empty())
        m_table.setCurrentItem(m_table.topLevelItem(static_cast<int>(row)));
    QString damaged;
    for (const std::string& path : m_sets.damaged)
        damaged += (damaged.isEmpty() ? "" : "\n") + pathToQt(path) +
                   QStringLiteral(" is damaged, or of a newer program: it is left as it is.");
    m_damaged.setText(damaged);
    m_damaged.setVisible(!damaged.isEmpty());
    m_shown.reset();
    showSelection();
}

void FormSets::addRow(const TvSet& set) {
    const auto written = LastWrite(HistoryPath(set));
    auto* row = new QTreeWidgetItem(
        &m_table,
        {toQt(set.name), toQt(set.model),
         readWhenText(set.lastRead[static_cast<std::size_t>(m_program.state.targetDevice)]),
         written ? readWhenText(written->time) : QString(), differingText(m_program, set)});
    if (m_program.record.Chosen() && m_program.record.Chosen()->folder == set.folder) {
        QFont font = row->font(0);
        font.setBold(true);
        row->setFont(0, font);
        row->setToolTip(0, QStringLiteral("Its record is kept"));
    }
}

const TvSet* FormSets::selected() const {
    const int row = m_table.selectedRow();
    return row < 0 ? nullptr : &m_sets.sets[static_cast<std::size_t>(row)];
}

void FormSets::showSelection() {
    saveTexts();
    const TvSet* const set = selected();
    m_shown = set == nullptr ? std::nullopt : std::optional(*set);
    m_model.setText(set == nullptr ? QString() : toQt(set->model));
    m_notes.setPlainText(set == nullptr ? QString() : toQt(set->notes));
    m_model.setEnabled(set != nullptr);
    m_notes.setEnabled(set != nullptr);
    for (QPushButton* button : m_rowButtons)
        allow(*button, set != nullptr, "Select a set first");
}

void FormSets::saveTexts() {
    if (!m_shown ||
        (toQt(m_shown->model) == m_model.text() && toQt(m_shown->notes) == m_notes.toPlainText()))
        return;
    m_shown->model = fromQt(m_model.text());
    m_shown->notes = fromQt(m_notes.toPlainText());
    const auto row = std::ranges::find(m_sets.sets, m_shown->folder, &TvSet::folder);
    *row = *m_shown;
    m_table.topLevelItem(static_cast<int>(row - m_sets.sets.begin()))->setText(1, m_model.text());
    m_run([this] { m_program.setCommands.SaveTexts(*m_shown); });
}

void FormSets::make() {
    saveTexts();
    std::optional<TvSet> made;
    m_run([&] { made = m_program.setCommands.Make(); });
    if (made)
        fill(made->folder);
    m_table.setFocus();
}

void FormSets::rename() {
    saveTexts();
    TvSet set = *selected();
    m_run([&] { m_program.setCommands.Rename(set); });
    fill(set.folder);
}

void FormSets::remove() {
    bool isGone = false;
    m_run([&] { isGone = m_program.setCommands.Remove(*selected()); });
    if (isGone)
        fill({});
}

void FormSets::done(int result) {
    saveTexts();
    QDialog::done(result);
}

}  // namespace tarnwell
