// The main window on a simulated television, with what drives it.
#pragma once

#include <QAbstractItemView>
#include <QClipboard>
#include <QDeadlineTimer>
#include <QLineEdit>
#include <QMenu>
#include <QMimeData>
#include <QRegularExpression>
#include <QTableView>
#include <QTest>
#include <QThread>

#include "support/FakeI2c.h"
#include "support/Player.h"
#include "support/TemporaryFolder.h"
#include "support/TestProgram.h"
#include "ui/looks/Text.h"
#include "ui/window/FormMain.h"

namespace tarnwell {

using ::testing::ElementsAre;

/// Stands where the desktop's opener is looked for.
class Viewer {
  public:
    explicit Viewer(const std::string& end = "exit 0") {
        folder_.Write("xdg-open",
                      "#!/bin/sh\necho \"${1##*/}\" >>" + folder_.Path("opened\n") + end);
        std::filesystem::permissions(folder_.Path("xdg-open"), std::filesystem::perms::owner_all);
        qputenv("PATH", QByteArray::fromStdString(folder_.Path() + ":") + path_);
    }
    ~Viewer() { qputenv("PATH", path_); }
    /// The names of the files since the last call, a line each, once there are some. Meanwhile
    /// nothing happens in the window.
    std::string opened() {
        const QDeadlineTimer patience(kPatience);
        std::string names;
        while ((names = folder_.Read("opened")).empty() && !patience.hasExpired())
            QThread::msleep(1);
        folder_.Write("opened", "");
        return names;
    }

  private:
    const QByteArray path_ = qgetenv("PATH");
    TemporaryFolder folder_;
};

/// What a widget, a menu's item or a table's current row says; ~ stands before what is disabled, *
/// before what is marked.
inline QString said(const QObject& thing) {
    const QString state = QLatin1String(thing.property("enabled").toBool() ? "" : "~") +
                          (thing.property("checked").toBool() ? "*" : "");
    if (const auto* view = qobject_cast<const QAbstractItemView*>(&thing)) {
        QStringList cells;
        for (int column = 0; column < view->model()->columnCount(); ++column)
            cells += view->currentIndex().siblingAtColumn(column).data().toString();
        return state + cells.join('|');
    }
    for (const char* text : {"text", "currentText", "currentIndex", "value"}) {
        if (const QVariant value = thing.property(text); value.isValid())
            return state + value.toString().remove('&');
    }
    return state;
}

/// Plays steps on a window, with a test's expectations of them.
class WindowTest : public ::testing::Test, public Player {
  protected:
    explicit WindowTest(QWidget& window) : Player(window) {}

    /// A step looks at widgets and items by their names, at the property behind a ".", or at what
    /// is put in here, a blank between them; "..." at the end waits for what is told. That has " /
    /// " between them, and "..." for any text.
    std::map<QString, std::function<QString()>> sights{
        {"title", [this] { return front().windowTitle(); }},
        {"focus", [this] { return focus().objectName(); }},
        {"clipboard", [] { return QGuiApplication::clipboard()->text(); }},
    };

  private:
    QString seen(const QString& at) {
        if (const auto found = sights.find(at); found != sights.end())
            return found->second();
        const QString name = at.section('.', 0, 0);
        const QObject* thing = front().findChild<QWidget*>(name);
        if (const auto* item = m_window.findChild<QAction*>(name))
            thing = item;
        if (thing == nullptr)
            thing = &Child<QObject>(m_window, name);
        return name == at ? said(*thing)
                          : thing->property(at.section('.', 1).toLatin1()).toString();
    }
    void look(const Act& act) override {
        const auto all = [&] {
            QStringList texts;
            for (const QString& at : QString(act.at).remove("...").split(' '))
                texts += seen(at);
            return fromQt(texts.join(" / "));
        };
        const auto pattern = QRegularExpression::anchoredPattern(
            QRegularExpression::escape(act.told).replace(R"(\.\.\.)", ".*"));
        const QRegularExpression told(pattern, QRegularExpression::DotMatchesEverythingOption);
        const auto isTold = [&] { return told.match(toQt(all())).hasMatch(); };
        EXPECT_TRUE(!act.at.endsWith("...") || QTest::qWaitFor(isTold, kPatience));
        EXPECT_TRUE(isTold()) << fromQt(act.at) << ": " << all() << " instead of "
                              << fromQt(act.told);
    }
};

class FormMainTest : public WindowTest {
  protected:
    explicit FormMainTest(Television connected = Television::Connected)
        : WindowTest(window), television({.writeCycle = BusTime(20'000), .television = connected}) {
        verbs["at"] = [this](const QString& address) {
            const GridCell cell = GridCell::At(address.toInt());
            clickByte(cell.row, cell.column);
        };
        verbs["page"] = [this](const QString& page) { tabs().setCurrentIndex(page.toInt()); };
        verbs["twice"] = [this](const QString& name) {
            QTest::mouseDClick(&child(fromQt(name)), Qt::LeftButton);
        };
        sights["address"] = [this] { return QString::number(current().Address()); };
        sights["status"] = [this] { return status(); };
        sights["state"] = [this] {
            QString marks =
                status() + '|' + text("statusPanel_1") + ' ' + text("statusPanel_4") + '|';
            for (const QAction* item : window.findChildren<QAction*>(QRegularExpression("mnu")))
                marks += item->isChecked() ? item->objectName().mid(3) + ' ' : "";
            return marks;
        };
    }

    SimulatedTelevision television;
    FakeI2c buses;
    LinuxI2c kernel{buses};
    MemoryRegistry registry;
    LinuxPlatform platform;
    TemporaryFolder folder;
    FormMain window{{{.port = television, .clock = television, .kernel = kernel},
                     registry,
                     platform,
                     true,
                     folder.Path("backups"),
                     folder.Path("names.json")}};
    Program& program = window.program();
    std::array<std::uint8_t, kEepromSize>& eeprom = television.Memory(Chip::Primary);

    void SetUp() override {
        for (std::size_t address = 0; address < kEepromSize; ++address)
            eeprom[address] = static_cast<std::uint8_t>(address % 251);
        window.startUp();
        window.show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window, kPatience));
    }

    template <typename T = QWidget>
    T& child(const std::string& name) {
        return Child<T>(window, toQt(name));
    }
    void choose(const char* action) { child<QAction>(action).trigger(); }
    QString text(const char* label) { return child<QLabel>(label).text(); }
    QString status() { return text("statusPanel_2"); }
    QTabWidget& tabs() { return child<QTabWidget>("SSTab1"); }
    QTableView& grid() { return child<QTableView>("DataGrid"); }
    QLineEdit& box() { return child<QLineEdit>("txtEditBox"); }

    void openEditor() {
        const auto lookAtIt = [this] {
            EXPECT_FALSE(front().windowFlags() & Qt::WindowCloseButtonHint);
        };
        play({{"mnuEEPRead page:5", "title", "W A R N I N G"},
              {lookAtIt},
              {"checkShowWarning cmdAccept EditorEnabled", "SSTab1", "5"}});
        EXPECT_EQ(program.state.editorWarning, "NoWarn");
    }
    QPoint centre(int row, int column) {
        return grid().visualRect(grid().model()->index(row, column)).center();
    }
    void clickByte(int row, int column) {
        QTest::mouseClick(grid().viewport(), Qt::LeftButton, {}, centre(row, column));
    }
    GridCell current() { return program.grid.Current(); }

    /// Drops it from where it would rather be moved away: whether it was taken as a copy.
    static bool drop(QWidget& on, const QMimeData& data) {
        constexpr auto actions = Qt::CopyAction | Qt::MoveAction;
        QDragEnterEvent enter({}, actions, &data, Qt::LeftButton, {});
        QCoreApplication::sendEvent(&on, &enter);
        QDropEvent event({}, actions, &data, Qt::LeftButton, {});
        event.setDropAction(Qt::MoveAction);
        QCoreApplication::sendEvent(&on, &event);
        QCoreApplication::processEvents();
        return event.isAccepted() && event.dropAction() == Qt::CopyAction;
    }
};

}  // namespace tarnwell
