// The three dialogs about the adapter, operated as a user would.
#include <QApplication>
#include <QRadioButton>
#include <QTest>

#include "support/ModalWindows.h"
#include "support/TestProgram.h"
#include "ui/dialogs/FormCnP.h"
#include "ui/dialogs/FormPortOpts.h"
#include "ui/dialogs/FormTestInt.h"

namespace tarnwell {
namespace {

template <typename T = QRadioButton>
T& child(const QWidget& dialog, const char* name) {
    return Child<T>(dialog, QLatin1String(name));
}

void click(const QWidget& dialog, std::initializer_list<const char*> buttons) {
    for (const char* name : buttons)
        child<QAbstractButton>(dialog, name).click();
}

class AdapterDialogsTest : public testing::Test {
  protected:
    TestProgram t_{Simulation{.television = Television::Absent}};
    PortOptions options_{t_.program.state, t_.program.statusBar, t_.user, t_.program.i2c};
    InterfaceTest test_{t_.program.i2c, t_.television, t_.program.statusBar, t_.user};
};

TEST_F(AdapterDialogsTest, PortOptionsFollowEachKeyAndRefuseAConflict) {
    FormPortOpts dialog(options_, nullptr);
    dialog.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog, kPatience));
    EXPECT_EQ(QApplication::focusWidget(), &child(dialog, "DataOut_1"));
    const auto type = [](Qt::Key key) { QTest::keyClick(QApplication::focusWidget(), key); };
    auto& connector = child<PortConnector>(dialog, "PortConnector");
    const QImage before = connector.grab().toImage();
    t_.user.onBox = [&](const Box&) { EXPECT_FALSE(child(dialog, "ClockOut_1").isChecked()); };
    type(Qt::Key_Tab);
    type(Qt::Key_Down);
    EXPECT_EQ(connector.pinOf(PinPosition::ClockOut), std::nullopt);
    click(dialog, {"AcceptButton"});
    EXPECT_TRUE(t_.user.TakeBoxes().size() == 2 && dialog.isVisible());
    type(Qt::Key_Down);
    type(Qt::Key_Space);
    EXPECT_EQ(connector.pinOf(PinPosition::ClockOut), 4);
    EXPECT_NE(connector.grab().toImage(), before);
    click(dialog, {"AcceptButton"});
    EXPECT_TRUE(t_.program.state.pinOptions == "11212010" && !dialog.isVisible());
}

TEST_F(AdapterDialogsTest, PortOptionsCloseOnlyByTheirButtonsAndEscape) {
    const std::string kept = "21012010Port Configuration Not Changed";
    for (const std::string button : {"CancelButton", "Escape", "DefaultButton"}) {
        t_.program.state.pinOptions = "21012010";
        FormPortOpts dialog(options_, nullptr);
        dialog.show();
        dialog.close();
        click(dialog, {"DataIn_0", "HelpButton"});
        EXPECT_EQ(t_.user.TakeBoxes().size(), 1);
        ASSERT_TRUE(dialog.isVisible());
        if (button == "Escape")
            QTest::keyClick(&dialog, Qt::Key_Escape);
        else
            click(dialog, {button.c_str()});
        EXPECT_FALSE(dialog.isVisible());
        EXPECT_EQ(t_.program.state.pinOptions + t_.Status(),
                  button != "DefaultButton" ? kept : "11012010Port Configuration Set to Defaults");
    }
}

TEST_F(AdapterDialogsTest, TestDialogDrivesTheLinesAndShowsWhatComesBack) {
    ASSERT_TRUE(test_.PreCheck());
    FormTestInt dialog(test_, nullptr);
    dialog.show();
    const auto red = [&](const char* lamp) {
        const QImage image = child<QWidget>(dialog, lamp).grab().toImage();
        return image.pixelColor(image.rect().center()).red();
    };
    const auto lamps = [&] { return std::pair(red("Shape2_0"), red("Shape2_1")); };
    EXPECT_EQ(lamps(), std::pair(255, 255));
    EXPECT_EQ(lamps(), std::pair(red("Swatch_1"), red("Swatch_1")));
    click(dialog, {"ClockOut_0"});
    EXPECT_EQ(lamps(), std::pair(red("Swatch_2"), 255));
    t_.television.Inject({.kind = FaultKind::LinesJoined});
    click(dialog, {"ClockOut_0"});
    EXPECT_EQ(lamps(), std::pair(95, 95));
    click(dialog, {"AutoTestcheck"});
    EXPECT_FALSE(child(dialog, "DataOut_0").isEnabled());
    const auto& result = child<QLabel>(dialog, "Label3");
    EXPECT_TRUE(QTest::qWaitFor([&] { return result.text() == "Err: SCL"; }, kPatience));
    EXPECT_TRUE(child<QLabel>(dialog, "lblDiagnosis").text().contains("joined"));
    click(dialog, {"AutoTestcheck"});
    EXPECT_TRUE(child(dialog, "DataOut_0").isEnabled() && child(dialog, "ClockOut_0").isChecked());
}

TEST_F(AdapterDialogsTest, HoweverTheTestEndsLinesPortAndTimerAreLeftAtRest) {
    const std::function<void(std::unique_ptr<FormTestInt>&)> endings[] = {
        [](auto& dialog) { dialog->close(); },
        [](auto& dialog) { QTest::keyClick(dialog.get(), Qt::Key_Escape); },
        [](auto& dialog) { dialog.reset(); },
    };
    for (const auto& end : endings) {
        ASSERT_TRUE(test_.PreCheck());
        auto dialog = std::make_unique<FormTestInt>(test_, nullptr);
        dialog->show();
        EXPECT_EQ(child<QLabel>(*dialog, "Label3").text(), "");
        click(*dialog, {"DataOut_0", "AutoTestcheck"});
        const QPointer<QTimer> timer(&child<QTimer>(*dialog, "Timer1"));
        ASSERT_TRUE(timer->isActive() && timer->interval() == 500 && !t_.television.Sda());
        EXPECT_EQ(timer->timerType(), Qt::PreciseTimer);
        end(dialog);
        EXPECT_FALSE(timer != nullptr && timer->isActive());
        EXPECT_TRUE(t_.television.Scl() && t_.television.Sda());
        EXPECT_EQ(t_.television.DlPortReadPortUchar(0x378), 0xFF) << "still claimed";
    }
}

TEST_F(AdapterDialogsTest, ThePathIsAlwaysSelected) {
    FormCnP path("/lib/modules/6.1.0-28-amd64/kernel/drivers/char/ppdev.ko", nullptr);
    path.show();
    auto& text = child<QLineEdit>(path, "txtCnP");
    EXPECT_EQ(text.selectedText(), text.text());
    text.deselect();
    QTest::mouseClick(&text, Qt::LeftButton, {}, text.rect().center());
    EXPECT_EQ(text.selectedText(), text.text());
}

}  // namespace
}  // namespace tarnwell
