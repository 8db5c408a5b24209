// An I2C bus of the kernel instead of the parallel port: chosen, used and left.
#include <QTreeWidget>
#include <random>

#include "support/MainWindow.h"

namespace tarnwell {
namespace {

class I2cBusTest : public FormMainTest {
  protected:
    I2cBusTest() {
        buses.Name(0, "SMBus I801 adapter at efa0");
        std::mt19937 random{7};
        std::ranges::generate(Primary().memory, [&] { return std::uint8_t(random()); });
    }
    FakeEeprom& Primary() { return buses.devices.at(0x50); }
    std::string shown() {
        std::string marks;
        for (const char* item : {"mnuPortSel_0", "mnuPortSel_1", "mnuPortI2C"})
            marks += child<QAction>(item).isChecked() ? 'x' : '-';
        for (const char* item : {"mnuPortOpts", "mnuPortTest"})
            marks += child<QAction>(item).isEnabled() ==
                             child<QAction>(item).toolTip().contains("parallel port only")
                         ? '?'
                     : child<QAction>(item).isEnabled() ? 'e'
                                                        : 'd';
        return fromQt(window.windowTitle() + '|' + child("statusPanel_4").toolTip()) + '|' + marks;
    }
};

TEST_F(I2cBusTest, IsChosenByKeyboardUsedAndLeftForAParallelPort) {
    script.then([&](QWidget& dialog) {
        const auto& table = Child<QTreeWidget>(dialog, "tblBuses");
        auto& use = Child<QPushButton>(dialog, "cmdUse");
        const auto& look = Child<QPushButton>(dialog, "cmdLook");
        const auto& answers = Child<QLabel>(dialog, "lblAnswers");
        const auto press = [](Qt::Key pressed, Qt::KeyboardModifiers with = Qt::NoModifier) {
            QTest::keyClick(QApplication::focusWidget(), pressed, with);
        };
        dialog.activateWindow();
        ASSERT_TRUE(QTest::qWaitFor([&] { return table.hasFocus(); }, kPatience));
        EXPECT_TRUE(!use.isEnabled() && !look.isEnabled());
        for (const int late : {3, 4}) {
            buses.Name(late, "Late");
            EXPECT_TRUE(
                QTest::qWaitFor([&] { return table.topLevelItemCount() == late; }, kPatience));
            EXPECT_EQ(use.isEnabled(), late == 4);
            press(Qt::Key_Space);
        }
        EXPECT_TRUE(use.isEnabled() && !look.isEnabled());
        EXPECT_EQ(table.currentItem(), table.topLevelItem(0));
        press(Qt::Key_End);
        EXPECT_EQ(buses.transfers, 0U);
        press(Qt::Key_L, Qt::AltModifier);
        const auto says = [&](const char* text) { return answers.text().contains(text); };
        EXPECT_TRUE(QTest::qWaitFor(
            [&] { return says("0x50 (primary EEPROM): a device answers."); }, kPatience));
        buses.opening = EACCES;
        press(Qt::Key_Return);
        EXPECT_TRUE(dialog.isVisible() && says("group i2c"));
        buses.opening = 0;
        QTest::mouseClick(&use, Qt::LeftButton);
    });
    choose("mnuPortI2C");
    EXPECT_EQ(status(), "Programming Port Changed to i2c-7");
    EXPECT_EQ(program.state.i2cBus, "Test adapter|/dev/i2c-7");
    EXPECT_EQ(shown(), " Tarnwell 2 - i2c-7 Test adapter| I2C bus i2c-7 Test adapter |--xdd");
    std::filesystem::rename(buses.folder.Path("sys/bus/i2c/devices/i2c-7"),
                            buses.folder.Path("sys/bus/i2c/devices/i2c-9"));
    choose("mnuEEPRead");
    EXPECT_EQ(status(), "Primary EEProm Data Read Into Memory");
    EXPECT_TRUE(
        std::ranges::equal(std::span(program.buffer).first(kEepromBytes), Primary().memory));
    EXPECT_EQ(shown(), " Tarnwell 2 - i2c-9 Test adapter| I2C bus i2c-9 Test adapter |--xdd");
    script.then([](QWidget& dialog) {
        EXPECT_EQ(Child<QTreeWidget>(dialog, "tblBuses").currentItem()->text(1), "/dev/i2c-9");
        static_cast<QDialog&>(dialog).reject();
    });
    choose("mnuPortI2C");
    program.state.i2cBusOfRun = program.state.i2cBus;
    choose("mnuPortSel_1");
    EXPECT_EQ(shown(), " Tarnwell 2 - Simulated Television||-x-ee");
    EXPECT_EQ(program.state.i2cBus, "");
}

TEST_F(I2cBusTest, AsksAboutADeviceThatMayBeAnotherAndReadsItOnlyAfterAYes) {
    program.ChooseI2cBus({"Test adapter", "/dev/i2c-7"});
    std::ranges::fill(Primary().memory, 0xFF);
    script.then([](QWidget& question) { QTest::keyClick(&question, Qt::Key_Return); });
    choose("mnuEEPRead");
    EXPECT_EQ(status(), "I2C Operation Aborted");
    script.press(QMessageBox::Yes);
    script.press(QMessageBox::No);  // every byte reads as FF
    choose("mnuEEPRead");
    EXPECT_EQ(status(), "EEProm Read Cancelled");
    EXPECT_THAT(script.takeTitles(), ::testing::Each("W A R N I N G"));
}

TEST_F(I2cBusTest, OfTheCommandLineIsForTheRunAndAMissingOneIsTold) {
    program.state.i2cBus = "Gone|/dev/i2c-7";
    script.then([](QWidget& box) {
        EXPECT_TRUE(dynamic_cast<QMessageBox&>(box).text().contains("bus Gone is not there"));
        static_cast<QDialog&>(box).reject();
    });
    window.tellMissingI2cBus();
    program.state.i2cBusOfRun = "Test adapter|/dev/i2c-7";
    window.tellMissingI2cBus();
    choose("mnuSelMode_0");
    EXPECT_TRUE(window.windowTitle().endsWith("i2c-7 Test adapter"));
    program.state.i2cBusOfRun = "";
    window.tellMissingI2cBus();
    window.close();
    EXPECT_EQ(registry.keys[R"(SOFTWARE\Halvdorn\Tarnwell\ProgPort)"]["I2CBus"], "Gone|/dev/i2c-7");
}

}  // namespace
}  // namespace tarnwell
