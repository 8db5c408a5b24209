#include "ui/window/FormMain.h"

#include <QGuiApplication>
#include <QIcon>
#include <QLayout>
#include <QShortcut>
#include <QTabBar>
#include <cstdlib>

#include "ui/desktop/ScreenArea.h"
#include "ui/looks/ReadableStyle.h"
#include "ui/looks/Text.h"
#include "ui/window/CellMenu.h"
#include "ui/window/WindowSteps.h"

static void initPictures() {
    Q_INIT_RESOURCE(resources);
}

namespace tarnwell {

namespace {

constexpr int kStatusTop = 3510;

int windowWidth(SizeMode mode) {
    return mode == SizeMode::Small ? 7305 : 9495;
}

}  // namespace

FormMain::FormMain(const Connections& connections)
    : onProgramEnd([] { std::_Exit(EXIT_FAILURE); }),
      m_wire(connections.wire),
      m_platform(connections.platform),
      m_simulated(connections.simulated),
      m_place(*this),
      m_editor(*this),
      m_settings(*this),
      m_program({connections.wire, *this, m_msgTimer, m_user, m_editor, m_settings, m_place,
                 connections.platform, m_desktop, connections.registry, m_desktop,
                 connections.backupFolder}),
      m_helpKey(m_program.state,
                [this](Topic topic) { guard([&] { m_program.helpCommands.ShowTopic(topic); }); }),
      m_fileDrop(*this, [this](const std::string& path) { openArchive(path); }),
      m_navigation(*this, m_program,
                   [this](const std::function<void()>& command) { runButton(command); }),
      m_menu(*new MainMenu(*menuBar(), m_program.state, m_program.history)),
      m_body(*new QWidget(this)),
      m_tabs(*new QTabWidget(&m_body)),
      m_statusArea(*new StatusArea(m_program.statusBar, &m_body)) {
    m_program.state.i2cBusOfRun = connections.i2cBus;
    initPictures();
    m_user.setWindow(this);
    setObjectName(QStringLiteral("formMain"));
    setWindowIcon(QIcon(QStringLiteral(":/pictures/tarnwell.svg")));
    ReadableStyle::use();
    setCentralWidget(new ScreenArea(m_body, *menuBar(), this));
    layout()->setSizeConstraint(QLayout::SetFixedSize);
    setContextMenuPolicy(Qt::NoContextMenu);
    buildPages();
    orderTabs();
    connectSignals();
    connectButtons();
    connectPageKeys();
    showLayout();
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
    m_settings.build(m_program, m_tabs);
    m_editor.build(m_program, m_tabs);
    m_statusArea.move(0, scaled(kStatusTop));
}

void FormMain::orderTabs() {
    const auto& [read, merge, write] = m_settings.buttons();
    setTabOrder(&m_editor.page().grid(), read);
    setTabOrder(read, merge);
    setTabOrder(merge, write);
    setTabOrder(write, &m_editor.writePending());
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
    connect(&m_settings.pages(), &SettingsPages::cellClicked, this, [this](int cell) {
        if (!m_user.isBusy())
            m_program.valueEditor.CellClicked(cell);
    });
    connect(&m_settings.pages(), &SettingsPages::characterTyped, this,
            [this](int cell, char typed) {
                if (!m_user.isBusy())
                    m_program.valueEditor.CharacterTyped(cell, typed);
            });
    connect(&m_settings.pages(), &SettingsPages::menuWanted, this,
            [this](int cell, const QPoint& place) {
                popUpCellMenu(*this, m_program, cell, place,
                              {[this, cell] { m_settings.pages().click(cell); },
                               [this](const std::function<void()>& command) { run(command); }});
            });
    connect(&m_editor.pendingFrame(), &PendingFrame::takeBackWanted, this,
            [this](int row) { runButton([this, row] { m_program.pending.TakeBack(row); }); });
    connect(&m_editor.pendingFrame(), &PendingFrame::byteWanted, this,
            [this](int row) { m_navigation.showByte(m_program.pending.Address(row)); });
    connect(&m_editor.page(), &EditorPageWidget::toggled, this, &FormMain::toggleEditor);
    connect(&m_statusArea, &StatusArea::captionDoubleClicked, this,
            [this] { run([this] { m_program.helpCommands.StartExtraProgram(); }); });
    connect(
        qApp, &QGuiApplication::screenRemoved, this, [this] { m_place.bringBack(); },
        Qt::QueuedConnection);
}

void FormMain::connectButtons() {
    const auto starts = [this](const CommandButton& button, std::function<void()> command) {
        connect(&button, &QPushButton::clicked, this,
                [this, command = std::move(command)] { runButton(command); });
    };
    const auto& [read, merge, write] = m_settings.buttons();
    starts(*read, [this] { m_program.settings.ReadSettingsFromEep(); });
    starts(*merge, [this] { m_program.settings.MergeSettingsWithBuffer(); });
    starts(*write, [this] { m_program.settings.WriteSettingsToEep(); });
    starts(m_editor.writePending(), [this] { m_program.pending.WritePending(); });
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
    WindowSteps steps(m_user, m_program, *this, m_statusArea, m_editor, m_settings);
    run([&] { m_program.StartUp(steps); });
    // A window that is resized while it is shown loses the place that includes its frame.
    ensurePolished();
    layout()->activate();
    adjustSize();
}

void FormMain::openArchive(const std::string& path) {
    runButton([&] { m_program.OpenArchive(path); });
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
        case Shown::Steps:
            return m_menu.sync();
        case Shown::Menus:
            showBus();
            return m_menu.sync();
        case Shown::Layout:
            return showLayout();
        case Shown::EditorSwitch:
            return m_editor.showSwitch();
        case Shown::EditorCaption:
            return m_editor.showCaption();
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
                                   .arg(m_caption, QString::number(progress->percent),
                                        QString::number(progress->secondsLeft)));
}

void FormMain::showBus() {
    const auto bus = m_program.I2cBusInUse();
    const QString name =
        bus ? toQt(bus->ShortNode()) + QLatin1Char(' ') + toQt(bus->name) : QString();
    m_caption = QStringLiteral(" Tarnwell 2");
    if (bus)
        m_caption += QStringLiteral(" - ") + name;
    else if (m_simulated)
        m_caption += QStringLiteral(" - Simulated Television");
    m_statusArea.setBus(name);
    showProgress();
}

void FormMain::showLayout() {
    const SizeMode mode = m_program.state.sizeMode;
    m_editor.setLayoutMode(mode);
    m_statusArea.setLayoutMode(mode);
    m_body.setFixedSize(scaled(windowWidth(mode)), scaled(kStatusTop + StatusArea::kHeight));
}

}  // namespace tarnwell
