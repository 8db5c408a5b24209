#include "ui/window/FormMain.h"

#include <QGuiApplication>
#include <QIcon>
#include <QLayout>
#include <QShortcut>
#include <QTabBar>
#include <QVBoxLayout>
#include <cstdlib>

#include "core/Words.h"
#include "ui/looks/ReadableStyle.h"
#include "ui/looks/Text.h"
#include "ui/window/CellMenu.h"

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
      m_place(*this),
      m_editor(*this),
      m_settings(*this),
      m_program({connections.wire, *this, m_msgTimer, m_user, m_editor, m_settings, m_place,
                 connections.platform, m_desktop, connections.registry, m_desktop,
                 connections.backupFolder, connections.namesPath}),
      m_helpKey(m_program.state,
                [this](Topic topic) { guard([&] { m_program.helpCommands.ShowTopic(topic); }); }),
      m_fileDrop(*this, [this](const std::string& path) { openArchive(path); }),
      m_navigation(*this, m_program,
                   [this](const std::function<void()>& command) { runButton(command); }),
      m_menu(*new MainMenu(*menuBar(), m_program.state, m_program.history)),
      m_body(*new MainBody(this)),
      m_tabs(*new QTabWidget(&m_body)),
      m_statusArea(*new StatusArea(m_program.statusBar, &m_body)),
      m_strip(*new HintStrip(this)),
      m_area(*new ScreenArea(m_body, {menuBar(), &m_strip}, this)) {
    m_program.state.busOfRun = connections.bus;
    m_program.state.simulated = connections.simulated;
    initPictures();
    m_user.setWindow(this);
    setObjectName(QStringLiteral("formMain"));
    setWindowIcon(QIcon(QStringLiteral(":/pictures/tarnwell.svg")));
    ReadableStyle::use();
    auto* column = new QWidget(this);
    auto* rows = new QVBoxLayout(column);
    rows->setContentsMargins({});
    rows->setSpacing(0);
    rows->addWidget(&m_strip);
    rows->addWidget(&m_area);
    setCentralWidget(column);
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
    m_tabs.setUsesScrollButtons(false);
    m_tabs.setElideMode(Qt::ElideNone);
    m_tabs.tabBar()->setFixedHeight(scaled(kTabRow));
    m_settings.build(m_program, m_tabs);
    m_editor.build(m_program, m_tabs);
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
    m_user.gate().setStopButton(m_statusArea.stop());
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
            [this](int row) { run([this, row] { m_program.editorPage.TakeBackPending(row); }); });
    connect(&m_editor.pendingFrame(), &PendingFrame::byteWanted, this, [this](int row) {
        if (row < m_program.pending.Count())
            m_navigation.showByte(m_program.pending.Address(row));
    });
    connect(&m_body, &MainBody::resized, this, &FormMain::layOut);
    const GridView& grid = m_editor.page().grid();
    connect(&grid, &GridView::fillWanted, this,
            [this] { run([this] { m_program.cellEditor.FillSelection(); }); });
    connect(&grid, &GridView::saveWanted, this,
            [this] { runButton([this] { m_program.selection.Save(); }); });
    connect(&grid, &GridView::nameWanted, this, [this] { runMenu(MenuCommand::NameByte, 0); });
    connect(&m_editor.page(), &EditorPageWidget::toggled, this, &FormMain::toggleEditor);
    connect(&m_strip, &HintStrip::i2cWanted, this, [this] { runMenu(MenuCommand::I2cBus, 0); });
    connect(&m_strip, &HintStrip::portWanted, this, [this] {
        m_menu.portMenu().popup(
            m_strip.usePort().mapToGlobal(m_strip.usePort().rect().bottomLeft()));
    });
    connect(&m_strip, &HintStrip::setWanted, this,
            [this] { runButton([this] { m_program.UseLikeness(); }); });
    connect(&m_strip, &HintStrip::readWanted, this,
            [this] { runMenu(MenuCommand::ReadEntireEep, 0); });
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
    connect(&m_editor.writePending(), &QPushButton::clicked, this,
            [this] { run([this] { m_program.editorPage.WritePending(); }); });
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
    run([&] { m_program.StartUp(*this); });
    // A window that is resized while it is shown loses the place that includes its frame.
    ensurePolished();
    layout()->activate();
    adjustSize();
}

void FormMain::ColourControls() {
    m_editor.colour();
    m_statusArea.colourStrip();
}

void FormMain::ReleaseBus() {
    if (m_program.state.BusInUse().kernel)
        return;
    const BusClaim claim(m_program.i2c);
    m_program.i2c.ReleaseBus();
}

void FormMain::SetupGrid() {
    m_editor.page().grid().setUp();
    m_program.grid.SetupGrid();
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
            showBus();  // its caption names what is in the buffer
            return showPanel(Panel::Crc);
        case Shown::EepPanel:
            return showPanel(Panel::Eep);
        case Shown::Steps:
            return m_menu.sync();
        case Shown::Menus:
        case Shown::Set:
            showBus();
            return m_menu.sync();
        case Shown::Layout:
            return showLayout();
        case Shown::EditorSwitch:
            return m_editor.showSwitch();
        case Shown::Names:
            return m_editor.GridRefilled();
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
    const auto add = [this](const QString& part) {
        m_caption += part.isEmpty() ? part : QStringLiteral(" - ") + part;
    };
    m_caption = QStringLiteral(" Tarnwell 2");
    add(m_program.record.Chosen() ? toQt(m_program.record.Chosen()->name) : QString());
    add(toQt(m_program.origin.ShortText(m_program.buffer)));
    add(bus                         ? name
        : m_program.state.simulated ? QStringLiteral("Simulated Television")
                                    : toQt(BusName(m_program.state)));
    keepSize();
    const bool hadStrip = !m_strip.isHidden();
    m_strip.show(m_program.HintNow(), toQt(m_program.LikenessNow()));
    if (hadStrip == m_strip.isHidden())
        fitWindow();
    m_statusArea.setTips(name, toQt(m_program.origin.Text(m_program.buffer)));
    showProgress();
}

void FormMain::showLayout() {
    keepSize();
    m_editor.setLayoutMode(m_program.state.sizeMode);
    fitWindow();
    layOut();
}

/// A window whose size was fixed keeps its limits otherwise.
void FormMain::fitWindow() {
    const SizeMode mode = m_program.state.sizeMode;
    const QSize least(scaled(windowWidth(mode)), scaled(kStatusTop + StatusArea::kHeight));
    if (mode == SizeMode::Small) {
        if (isMaximized())
            showNormal();
        m_body.fix(least);
        m_area.fix();
        return layout()->setSizeConstraint(QLayout::SetFixedSize);
    }
    m_body.stretch(least, sizeFrom(m_program.state.editorSize).value_or(least));
    m_area.stretch();
    layout()->setSizeConstraint(QLayout::SetMinimumSize);
    setMaximumSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX);
    if (isMaximized())
        return;
    centralWidget()->updateGeometry();  // its part of the size is not asked for anew otherwise
    layout()->activate();
    resize(sizeHint().boundedTo(roomFor(*this)).expandedTo(minimumSize()));
}

/// What stands beside and below the grid keeps its size.
void FormMain::layOut() {
    const QSize growth = m_body.growth();
    QRect tabs = scaledRect(75, 0, 7065, 3075);
    tabs.setSize(tabs.size() + growth);
    m_tabs.setGeometry(tabs);
    m_settings.layOut(growth.height());
    m_editor.layOut(growth);
    m_statusArea.move(0, scaled(kStatusTop) + growth.height());
    m_statusArea.layOut(m_program.state.sizeMode, growth.width());
}

/// Before it is lost: a size that is on its way to the screen is none of the user's.
void FormMain::keepSize() {
    if (m_area.widgetResizable() && !isMaximized())
        m_program.state.editorSize =
            m_body.growth().isNull() ? std::string() : textOf(m_body.size());
}

}  // namespace tarnwell
