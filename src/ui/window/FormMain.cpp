#include "ui/window/FormMain.h"

#include <QGuiApplication>
#include <QIcon>
#include <QLayout>
#include <QShortcut>
#include <QTabBar>
#include <cstdlib>

#include "core/Pages.h"
#include "ui/desktop/ScreenArea.h"
#include "ui/dialogs/FormEdit.h"
#include "ui/dialogs/FormWarning.h"
#include "ui/looks/ReadableStyle.h"
#include "ui/looks/Text.h"

static void initPictures() {
    Q_INIT_RESOURCE(resources);
}

namespace tarnwell {

namespace {

/// Height of the tabs above a page, in twips.
constexpr int kTabRow = 330;
constexpr int kStatusTop = 3510;

int windowWidth(SizeMode mode) {
    return mode == SizeMode::Small ? 7305 : 9495;
}

}  // namespace

FormMain::FormMain(const Connections& connections)
    : onProgramEnd([] { std::_Exit(EXIT_FAILURE); }),
      m_port(connections.wire.port),
      m_platform(connections.platform),
      m_caption(connections.simulated ? QStringLiteral(" Tarnwell 2 - Simulated Television")
                                      : QStringLiteral(" Tarnwell 2")),
      m_program({connections.wire, *this, m_msgTimer, m_user, *this, *this, *this,
                 connections.platform, m_desktop, connections.registry, m_desktop,
                 connections.backupFolder}),
      m_helpKey(m_program.state,
                [this](Topic topic) { guard([&] { m_program.helpCommands.ShowTopic(topic); }); }),
      m_menu(*new MainMenu(*menuBar(), m_program.state)),
      m_body(*new QWidget(this)),
      m_tabs(*new QTabWidget(&m_body)),
      m_settingsPages(*new SettingsPages(m_tabs)),
      m_editorPage(
          *new EditorPageWidget(m_program.grid, m_program.cellEditor, m_program.state, kTabRow)),
      m_pendingFrame(*new PendingFrame(m_program.pending, &m_body)),
      m_statusArea(*new StatusArea(m_program.statusBar, &m_body)),
      m_readSettings(addButton("cmdReadSettings", "Read Settings from EEP",
                               " Read settings values from the EEP ",
                               scaledRect(75, 3120, 2240, 300))),
      m_mergeSettings(addButton("cmdCopySettingsToBuffer", "Merge Settings with Buffer",
                                " Merge the settings values with the Tarnwell buffer ",
                                scaledRect(2520, 3120, 2175, 300))),
      m_writeSettings(addButton("cmdSaveSettings", "Write Settings to EEP",
                                " Write settings values to the EEP ",
                                scaledRect(4920, 3120, 2240, 300))),
      m_writePending(addButton("cmdWriteData", "Write Pending to EEP",
                               " Write pending Data Editor changes to the EEP ",
                               scaledRect(7320, 3120, 1935, 300))) {
    initPictures();
    m_user.setWindow(this);
    setObjectName(QStringLiteral("formMain"));
    setWindowTitle(m_caption);
    setWindowIcon(QIcon(QStringLiteral(":/pictures/tarnwell.svg")));
    ReadableStyle::use();
    setCentralWidget(new ScreenArea(m_body, *menuBar(), this));
    layout()->setSizeConstraint(QLayout::SetFixedSize);
    setContextMenuPolicy(Qt::NoContextMenu);
    buildPages();
    buildButtons();
    connectSignals();
    SetLayout();
    adjustSize();
}

void FormMain::buildPages() {
    m_tabs.setObjectName(QStringLiteral("SSTab1"));
    m_tabs.setAccessibleName(QStringLiteral("Pages"));
    m_tabs.setFocusProxy(nullptr);  // the tabs themselves take the focus
    m_tabs.setFocusPolicy(Qt::NoFocus);
    m_tabs.setGeometry(scaledRect(75, 0, 7065, 3075));
    m_tabs.setUsesScrollButtons(false);
    m_tabs.setElideMode(Qt::ElideNone);
    m_tabs.tabBar()->setFixedHeight(scaled(kTabRow));
    m_tabs.addTab(&m_editorPage, toQt(Info(Page::Editor).caption));
    m_pendingFrame.setGeometry(scaledRect(7320, 60, 1935, 3015));
    m_statusArea.move(0, scaled(kStatusTop));
    for (int cell = 0; cell < kCellCount; ++cell)
        SettingCellChanged(cell);
}

QPushButton& FormMain::addButton(const char* name, const char* caption, const char* toolTip,
                                 const QRect& place) {
    auto* button = new QPushButton(QLatin1String(caption), &m_body);
    button->setObjectName(QLatin1String(name));
    button->setAccessibleName(QLatin1String(caption));
    button->setToolTip(QLatin1String(toolTip));
    button->setGeometry(place);
    fitCaption(*button);
    return *button;
}

void FormMain::buildButtons() {
    for (QPushButton* button : {&m_readSettings, &m_mergeSettings, &m_writeSettings})
        button->setEnabled(false);
    setTabOrder(&m_editorPage.grid(), &m_readSettings);
    setTabOrder(&m_readSettings, &m_mergeSettings);
    setTabOrder(&m_mergeSettings, &m_writeSettings);
    setTabOrder(&m_writeSettings, &m_writePending);
}

void FormMain::connectSignals() {
    connect(&m_msgTimer.timer(), &QTimer::timeout, this,
            [this] { m_program.statusBar.MsgTimerFired(); });
    connect(&m_user.gate(), &InputGate::painting, this, &FormMain::showProgress);
    connect(&m_menu, &MainMenu::bufferMenuOpening, this,
            [this] { run([this] { m_program.editorPage.SettleGridEdits(); }); });
    connect(&m_menu, &MainMenu::otherMenuOpening, this,
            [this] { run([this] { m_program.cellEditor.SettleEntry(); }); });
    connect(&m_menu, &MainMenu::chosen, this, &FormMain::runMenu);
    connect(&m_tabs, &QTabWidget::currentChanged, this,
            [this](int index) { turnToPage(static_cast<Page>(index)); });
    connect(&m_settingsPages, &SettingsPages::cellClicked, this, [this](int cell) {
        if (!m_user.isBusy())
            m_program.valueEditor.CellClicked(cell);
    });
    connect(&m_editorPage, &EditorPageWidget::toggled, this, [this] {
        if (!m_user.isBusy())
            m_program.editorPage.ToggleEditor();
        m_editorPage.showSwitch(m_program.state.editor);
    });
    connect(&m_statusArea, &StatusArea::captionDoubleClicked, this,
            [this] { run([this] { m_program.helpCommands.StartExtraProgram(); }); });
    connect(&m_readSettings, &QPushButton::clicked, this,
            [this] { runButton([this] { m_program.settings.ReadSettingsFromEep(); }); });
    connect(&m_mergeSettings, &QPushButton::clicked, this,
            [this] { runButton([this] { m_program.settings.MergeSettingsWithBuffer(); }); });
    connect(&m_writeSettings, &QPushButton::clicked, this,
            [this] { runButton([this] { m_program.settings.WriteSettingsToEep(); }); });
    connect(&m_writePending, &QPushButton::clicked, this,
            [this] { runButton([this] { m_program.pending.WritePending(); }); });
    connect(
        qApp, &QGuiApplication::screenRemoved, this, [this] { m_place.bringBack(*this); },
        Qt::QueuedConnection);
    connectPageKeys();
}

void FormMain::connectPageKeys() {
    const int pages = m_tabs.count();
    const auto turn = [this, pages](const QList<QKeySequence>& keys, int step) {
        auto* shortcut = new QShortcut(this);
        shortcut->setKeys(keys);
        connect(shortcut, &QShortcut::activated, this, [this, pages, step] {
            m_tabs.setCurrentIndex((m_tabs.currentIndex() + step) % pages);
        });
    };
    turn({Qt::CTRL | Qt::Key_Tab, Qt::CTRL | Qt::Key_PageDown}, 1);
    // Shift turns Tab into Backtab on some platforms.
    turn({Qt::CTRL | Qt::SHIFT | Qt::Key_Backtab, Qt::CTRL | Qt::SHIFT | Qt::Key_Tab,
          Qt::CTRL | Qt::Key_PageUp},
         pages - 1);
}

void FormMain::startUp() {
    run([this] { m_program.StartUp(*this); });
    // A window that is resized while it is shown loses the place that includes its frame.
    ensurePolished();
    layout()->activate();
    adjustSize();
}

void FormMain::openImage(const std::string& path) {
    run([&] { m_program.imageArchive.LoadImageFile(path); });
}

void FormMain::Changed(Shown what) {
    switch (what) {
        case Shown::ModePanel:
            return showPanel(Panel::Mode);
        case Shown::StatusPanel:
            return showPanel(Panel::Status);
        case Shown::CrcPanel:
            return showPanel(Panel::Crc);
        case Shown::EepPanel:
            return showPanel(Panel::Eep);
        case Shown::Menus:
            return m_menu.sync();
        case Shown::Layout:
            return SetLayout();
        case Shown::EditorSwitch:
            return m_editorPage.showSwitch(m_program.state.editor);
        case Shown::EditorCaption:
            m_tabs.setTabText(static_cast<int>(Page::Editor),
                              toQt(m_program.state.GridChanged ? kChangedEditorCaption
                                                               : Info(Page::Editor).caption));
            return;
    }
}

// The percentage runs on too fast for titles and screen readers: they follow when it is painted.
void FormMain::showPanel(Panel panel) {
    m_statusArea.refresh(panel);
    if (panel != Panel::Eep)
        m_statusArea.name(panel);
    else if (!m_program.statusBar.RunningProgress())
        showProgress();
}

void FormMain::showProgress() {
    const std::optional<Progress>& progress = m_program.statusBar.RunningProgress();
    m_statusArea.name(Panel::Eep);
    setWindowTitle(!progress ? m_caption
                             : QStringLiteral("%1 - %2%, %3 s left")
                                   .arg(m_caption)
                                   .arg(progress->percent)
                                   .arg(progress->secondsLeft));
}

void FormMain::SetLayout() {
    const SizeMode mode = m_program.state.sizeMode;
    m_pendingFrame.setVisible(mode == SizeMode::Big);
    m_writePending.setVisible(mode == SizeMode::Big);
    m_statusArea.setLayoutMode(mode);
    m_body.setFixedSize(scaled(windowWidth(mode)), scaled(kStatusTop + StatusArea::kHeight));
}

void FormMain::ColourControls() {
    m_editorPage.colourHeadings();
    m_pendingFrame.colourRows();
    m_statusArea.colourStrip();
}

void FormMain::ReleaseBus() {
    const BusClaim claim(m_program.i2c);
    m_program.i2c.ReleaseBus();
}

void FormMain::SetupGrid() {
    m_editorPage.grid().setUp();
    m_program.grid.SetupGrid();
}

void FormMain::EnableSettingsButtons() {
    for (QPushButton* button : {&m_readSettings, &m_mergeSettings, &m_writeSettings})
        button->setEnabled(true);
}

void FormMain::GridRefilled() {
    m_editorPage.refill();
}

void FormMain::GridCellChanged(GridCell cell) {
    m_editorPage.grid().refresh(cell);
}

void FormMain::CurrentCellMoved() {
    m_editorPage.grid().showCurrentCell();
}

void FormMain::EditBoxOpened(EditSelection selection) {
    m_editorPage.grid().openEditBox(selection);
}

void FormMain::EditBoxTextChanged() {
    m_editorPage.grid().refreshEditBox();
}

void FormMain::EditBoxClosed() {
    m_editorPage.grid().closeEditBox();
}

void FormMain::PendingWritesChanged() {
    m_pendingFrame.refresh();
}

void FormMain::FocusGrid() {
    m_editorPage.grid().setFocus(Qt::OtherFocusReason);
}

bool FormMain::ShowWarningAgain() {
    FormWarning warning(this);
    warning.exec();
    return !warning.dontShowAgain();
}

void FormMain::SettingCellChanged(int cell) {
    m_settingsPages.refresh(m_program.cells, cell);
}

void FormMain::ShowFormEdit() {
    FormEdit(m_program.valueEditor, m_program.state, this).exec();
}

}  // namespace tarnwell
