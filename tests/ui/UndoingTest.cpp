// Undo in the main window, by the keyboard alone and by the mouse alone, and in the edit box.
#include <QMenu>
#include <QMenuBar>
#include <QScrollBar>

#include "ui/MainWindow.h"

namespace tarnwell {
namespace {

class UndoingTest : public FormMainTest {
  protected:
    void SetUp() override {
        FormMainTest::SetUp();
        std::fill_n(television.Memory(Chip::Primary).begin() + 2363, 3, std::uint8_t{7});
    }
    /// What one way to use the program does.
    struct Hands {
        std::function<void(const char* cell)> raise;
        std::function<void()> undo;
        std::function<void()> redo;
        std::function<void()> write;
    };
    void changeUndoAndWrite(const Hands& hands) {
        choose("mnuEEPRead");
        for (const char* cell : {"lblSetting_0", "lblSetting_1", "lblSetting_2"})
            hands.raise(cell);
        hands.undo();
        hands.undo();
        hands.write();
        EXPECT_EQ(bytes(), "8 7 7 ");
        const auto& undo = child<QAction>("mnuEditUndo");
        EXPECT_EQ(undo.text(), "&Undo 480i CR02 7 to 8");
        EXPECT_EQ(child<QAction>("mnuEditRedo").toolTip(), "Redo 480i CB02 7 to 8");
        hands.undo();
        EXPECT_EQ(bytes(), "8 7 7 ");
        hands.write();
        EXPECT_EQ(bytes(), "7 7 7 ");
        for (int step = 0; step < 3; ++step)
            hands.redo();
        hands.write();
        EXPECT_EQ(bytes(), "8 8 8 ");
        for (int step = 0; step < 4; ++step)
            hands.undo();
        EXPECT_FALSE(undo.isEnabled());
        EXPECT_EQ(undo.text() + ": " + undo.toolTip(), "&Undo: Nothing to undo");
        EXPECT_TRUE(child<QMenu>("mnuEdit").toolTipsVisible());
    }
    std::string bytes() {
        std::string all;
        for (std::size_t address = 2363; address < 2366; ++address)
            all += std::to_string(television.Memory(Chip::Primary)[address]) + " ";
        return all;
    }
    void tabTo(const char* name) {
        for (int time = 0; time < 60 && focus()->objectName() != QLatin1String(name); ++time)
            key(Qt::Key_Tab);
        EXPECT_EQ(focus()->objectName(), QLatin1String(name));
    }
    static void click(QWidget& widget, const QRect& place) {
        QTest::mouseClick(&widget, Qt::LeftButton, {}, place.center());
    }
    void chooseByMouse(const char* item) {
        auto& menu = child<QMenu>("mnuEdit");
        click(*window.menuBar(), window.menuBar()->actionGeometry(menu.menuAction()));
        click(menu, menu.actionGeometry(&child<QAction>(item)));
    }
};

TEST_F(UndoingTest, ByTheKeyboardAlone) {
    const auto raise = [this](const char* cell) {
        tabTo(cell);
        script.then([](QWidget& editor) {
            QTest::keyClick(editor.focusWidget(), Qt::Key_Up);
            QTest::keyClick(editor.focusWidget(), Qt::Key_Return);
        });
        key(Qt::Key_Return);
    };
    const auto write = [this] {
        tabTo("cmdSaveSettings");
        script.then([](QWidget& box) {
            QTest::keyClick(static_cast<QMessageBox&>(box).button(QMessageBox::Yes), Qt::Key_Space);
        });
        key(Qt::Key_Space);
    };
    bool other = false;
    const auto redo = [&] {
        other = !other;
        other ? key(Qt::Key_Y, Qt::ControlModifier)
              : key(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    };
    changeUndoAndWrite({raise, [this] { key(Qt::Key_Z, Qt::ControlModifier); }, redo, write});
}

TEST_F(UndoingTest, ByTheMouseAlone) {
    const auto raise = [this](const char* cell) {
        script.then([](QWidget& editor) {
            auto& arrows = Child<QScrollBar>(editor, "VScroll1");
            click(arrows, QRect(0, 0, arrows.width(), arrows.width()));
            auto& ok = Child<QPushButton>(editor, "cmdAccept");
            click(ok, ok.rect());
        });
        click(child(cell), child(cell).rect());
    };
    const auto write = [this] {
        script.press(QMessageBox::Yes);
        click(child("cmdSaveSettings"), child("cmdSaveSettings").rect());
    };
    changeUndoAndWrite({raise, [this] { chooseByMouse("mnuEditUndo"); },
                        [this] { chooseByMouse("mnuEditRedo"); }, write});
}

TEST_F(UndoingTest, InTheEditBoxItIsOfTheTextThenOfTheEntryThenOfTheProgram) {
    openEditor();
    clickByte(0, 3);
    type("12");
    key(Qt::Key_Tab);
    EXPECT_EQ(box().text(), "3");
    type("34");
    key(Qt::Key_Backspace);
    EXPECT_EQ(box().text(), "3");
    const auto undo = [this] { key(Qt::Key_Z, Qt::ControlModifier); };
    undo();
    EXPECT_EQ(box().text(), "34");
    undo();
    EXPECT_EQ(box().text(), "3");
    EXPECT_TRUE(box().isVisible() && program.grid.EditText() == "3");
    undo();
    EXPECT_FALSE(box().isVisible());
    EXPECT_EQ(program.grid.Text({0, 3}), "12");
    undo();
    EXPECT_EQ(program.grid.Text({0, 3}), "2");
    EXPECT_EQ(program.pending.Count(), 0);
}

}  // namespace
}  // namespace tarnwell
