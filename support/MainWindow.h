// The main window on a simulated television, with what drives it.
#pragma once

#include <QApplication>
#include <QCheckBox>
#include <QLineEdit>
#include <QMimeData>
#include <QPushButton>
#include <QTableView>
#include <QTest>

#include "support/FakeI2c.h"
#include "support/ModalWindows.h"
#include "support/TemporaryFolder.h"
#include "support/TestProgram.h"
#include "ui/looks/Text.h"
#include "ui/window/FormMain.h"

namespace tarnwell {

using ::testing::ElementsAre;

class FormMainTest : public ::testing::Test {
  protected:
    SimulatedTelevision television{Simulation{.writeCycle = BusTime(20'000)}};
    FakeI2c buses;
    LinuxI2c kernel{buses};
    MemoryRegistry registry;
    LinuxPlatform platform;
    TemporaryFolder folder;
    FormMain window{{{.port = television, .clock = television, .kernel = kernel},
                     registry,
                     platform,
                     true,
                     folder.Path("backups")}};
    ModalWindows script{
        [](const std::string& title) { ADD_FAILURE() << "unexpected window: " << title; }};
    Program& program = window.program();

    void SetUp() override {
        for (std::size_t address = 0; address < kEepromSize; ++address)
            television.Memory(Chip::Primary)[address] = static_cast<std::uint8_t>(address % 251);
        window.startUp();
        window.show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window, kPatience));
    }

    void TearDown() override { EXPECT_TRUE(script.isDone()) << "a window did not come up"; }

    template <typename T = QWidget>
    T& child(const std::string& name) {
        return Child<T>(window, toQt(name));
    }
    void choose(const char* action) { child<QAction>(action).trigger(); }
    QString text(const char* label) { return child<QLabel>(label).text(); }
    QString status() { return text("statusPanel_2"); }

    void openEditor() {
        choose("mnuEEPRead");
        script.then([](QWidget& warning) {
            EXPECT_FALSE(warning.windowFlags() & Qt::WindowCloseButtonHint);
            warning.findChild<QCheckBox*>(QStringLiteral("checkShowWarning"))->click();
            warning.findChild<QPushButton*>(QStringLiteral("cmdAccept"))->click();
        });
        child<QTabWidget>("SSTab1").setCurrentIndex(5);
        child<QCheckBox>("EditorEnabled").click();
        EXPECT_THAT(script.takeTitles(), ElementsAre("W A R N I N G"));
        EXPECT_EQ(program.state.editorWarning, "NoWarn");
        EXPECT_EQ(child("StatusStrip").parentWidget()->width(), scaled(9495));
    }
    QLineEdit& box() { return child<QLineEdit>("txtEditBox"); }
    void clickByte(int row, int column) {
        auto& grid = child<QTableView>("DataGrid");
        QTest::mouseClick(grid.viewport(), Qt::LeftButton, {},
                          grid.visualRect(grid.model()->index(row, column)).center());
    }
    QWidget* focus() {
        window.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window, kPatience));
        return QApplication::focusWidget();
    }
    void key(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QTest::keyClick(focus(), static_cast<Qt::Key>(key), modifiers);
    }
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
    void type(const char* keys) { QTest::keyClicks(focus(), QLatin1String(keys)); }
    GridCell current() { return program.grid.Current(); }
};

}  // namespace tarnwell
