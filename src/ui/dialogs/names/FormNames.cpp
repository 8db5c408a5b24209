#include "ui/dialogs/names/FormNames.h"

#include <QBoxLayout>
#include <QGridLayout>
#include <QHeaderView>
#include <QShortcut>
#include <algorithm>
#include <utility>

#include "core/Words.h"
#include "program/NamedValueEdit.h"
#include "ui/dialogs/FormEdit.h"
#include "ui/looks/Measures.h"
#include "ui/looks/Text.h"

namespace tarnwell {

namespace {

constexpr std::string_view kNamesFilter = "Names (*.json)|*.json|All Files (*.*)|*.*";
constexpr int kNameButtonsInRow = 4;

}  // namespace

FormNames::FormNames(Program& program, std::function<void(const std::function<void()>&)> run,
                     QWidget* parent)
    : QDialog(parent), m_program(program), m_run(std::move(run)), m_model(program, nullptr) {
    setObjectName(QStringLiteral("formNames"));
    setWindowTitle(QStringLiteral("Names"));
    auto* layout = new QVBoxLayout(this);
    auto* line = new QHBoxLayout;
    auto* label = new QLabel(QStringLiteral("Sho&w:"));
    label->setBuddy(&m_filter);
    m_filter.setObjectName(QStringLiteral("txtFilter"));
    m_filter.setAccessibleName(QStringLiteral("Show"));
    m_filter.setPlaceholderText(QStringLiteral("parts of a name, a place or a text"));
    line->addWidget(label);
    line->addWidget(&m_filter, 1);
    layout->addLayout(line);
    m_table.setObjectName(QStringLiteral("tblNames"));
    m_table.setAccessibleName(QStringLiteral("Names"));
    m_table.setModel(&m_model);
    m_table.setRootIsDecorated(false);
    m_table.setUniformRowHeights(true);
    m_table.setAllColumnsShowFocus(true);
    m_table.setTabKeyNavigation(false);
    m_table.setSelectionMode(QAbstractItemView::ExtendedSelection);
    layout->addWidget(&m_table, 1);
    m_faults.setObjectName(QStringLiteral("lblFaults"));
    m_faults.setWordWrap(true);
    layout->addWidget(&m_faults);
    addButtons(*layout);
    connect(&m_filter, &QLineEdit::textChanged, this, &FormNames::showNames);
    connect(m_table.selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &FormNames::enableButtons);
    connect(&m_table, &QTreeView::doubleClicked, m_edit, &QPushButton::click);
    auto* gone = new QShortcut(Qt::Key_Delete, &m_table);
    gone->setContext(Qt::WidgetShortcut);
    connect(gone, &QShortcut::activated, m_remove, &QPushButton::click);
    showNames();
    resize(QSize(scaled(10500), scaled(5400)).boundedTo(roomFor(*this)));
    m_table.setFocus();
}

// The table may tell of its own end.
FormNames::~FormNames() {
    m_table.selectionModel()->disconnect(this);
}

QPushButton* FormNames::addButton(const char* name, const char* text,
                                  std::function<void()> pressed) {
    auto* button = new QPushButton(QLatin1String(text), this);
    button->setObjectName(QLatin1String(name));
    button->setAccessibleName(button->text().remove('&').remove(QStringLiteral("...")));
    button->setAutoDefault(false);
    connect(button, &QPushButton::clicked, this, std::move(pressed));
    return button;
}

void FormNames::addButtons(QBoxLayout& layout) {
    m_edit = addButton("cmdEditName", "&Edit...", [this] { edit(); });
    m_value = addButton("cmdChangeValue", "Change &Value...", [this] { changeValue(); });
    m_remove = addButton("cmdRemoveName", "&Remove", [this] { remove(); });
    m_show = addButton("cmdShowInEditor", "Show in Edi&tor", [this] { showInEditor(); });
    m_edit->setDefault(true);
    const QList<QPushButton*> all{m_edit,
                                  m_value,
                                  m_remove,
                                  m_show,
                                  addButton("cmdOpenNames", "&Open...", [this] { openFile(); }),
                                  addButton("cmdReadNames", "Read &In...", [this] { readFile(); }),
                                  addButton("cmdSaveNames", "&Save As...", [this] { save(); }),
                                  addButton("cmdClose", "Close", [this] { reject(); })};
    auto* buttons = new QGridLayout;
    for (int index = 0; index < all.size(); ++index)
        buttons->addWidget(all[index], index / kNameButtonsInRow, index % kNameButtonsInRow);
    layout.addLayout(buttons);
}

void FormNames::showNames() {
    const NameList before = selected();
    m_model.show(m_filter.text());
    for (int column = 0; column < m_model.columnCount(); ++column)
        m_table.resizeColumnToContents(column);
    const NameList& names = m_model.names();
    const auto found = before.empty() ? names.end()
                                      : std::ranges::find(names, before.front()->name,
                                                          [](const Named& n) { return n->name; });
    if (!names.empty())
        m_table.setCurrentIndex(
            m_model.index(found == names.end() ? 0 : static_cast<int>(found - names.begin()), 0));
    const std::size_t faults = m_program.names.Faults().size();
    m_faults.setText(
        toQt(Counted(faults, "fault") + " in the files of names; what is right there counts."));
    m_faults.setToolTip(faults == 0 ? QString() : toQt(m_program.names.Faults().front()));
    m_faults.setVisible(faults > 0);
    enableButtons();
}

NameList FormNames::selected() const {
    NameList selected;
    for (const QModelIndex& row : m_table.selectionModel()->selectedRows())
        selected.push_back(m_model.names()[static_cast<std::size_t>(row.row())]);
    return selected;
}

void FormNames::enableButtons() {
    const NameList names = selected();
    const bool one = names.size() == 1;
    allow(*m_edit, one, "Select one name first");
    allow(*m_remove, !names.empty(), "Select names first");
    const ProgramState& state = m_program.state;
    const bool isTarget = one && names.front()->device == state.targetDevice;
    allow(*m_show, isTarget, one ? "It is on the other EEPROM" : "Select one name first");
    const bool hasValue = one && m_program.ShownValue(*names.front());
    allow(*m_value, hasValue && state.editor == EditorSwitch::On,
          !one        ? "Select one name first"
          : !isTarget ? "It is on the other EEPROM"
          : !hasValue ? "The memory buffer holds no image"
                      : "The data editor is off");
}

void FormNames::edit() {
    const Named former = selected().front();
    FormName dialog(m_program, *former, former, this);
    if (dialog.exec() == QDialog::Accepted)
        m_run([&] { m_program.nameCommands.Put(dialog.named(), former, dialog.layer()); });
    showNames();
    m_table.setFocus();
}

void FormNames::changeValue() {
    const Named named = selected().front();
    NamedValueEdit value(m_program, named);
    FormEdit dialog(value, m_program.state, *m_value, this);
    if (dialog.exec() == QDialog::Accepted)
        m_run([&] { m_program.nameCommands.EnterValue(*named, value.Value()); });
    m_model.refresh();
    enableButtons();
    m_table.setFocus();
}

void FormNames::remove() {
    m_run([&] { m_program.nameCommands.Remove(selected()); });
    showNames();
    m_table.setFocus();
}

void FormNames::showInEditor() {
    m_destination = {selected().front()->address, std::nullopt};
    accept();
}

std::optional<std::string> FormNames::askFile(FileRequest::Kind kind, std::string_view title) {
    std::optional<std::string> path;
    m_run([&] {
        path = m_program.context.user.AskFile(
            {kind, title, "", m_program.state.archiveFolder, kNamesFilter});
    });
    return path;
}

void FormNames::openFile() {
    if (const auto path = askFile(FileRequest::Kind::Open, "Open Names"))
        m_run([&] { m_program.nameCommands.Open(*path); });
    showNames();
}

void FormNames::readFile() {
    if (const auto path = askFile(FileRequest::Kind::Open, "Read Names In"))
        m_run([&] { m_program.nameCommands.ReadInto(NameLayer::User, *path); });
    showNames();
}

void FormNames::save() {
    if (const auto path = askFile(FileRequest::Kind::Save, "Save Names As..."))
        m_run([&] { m_program.nameCommands.SaveAs(*path); });
}

}  // namespace tarnwell
