// The three dialogs about the adapter, operated as a user would.
#include <QApplication>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>

#include "support/TestProgram.h"
#include "ui/FormCnP.h"
#include "ui/FormPortOpts.h"
#include "ui/FormTestInt.h"

namespace tarnwell {
namespace {

template <typename T = QRadioButton>
T& child(const QWidget& dialog, const char* name) {
    auto* found = dialog.findChild<T*>(QLatin1String(name));
    if (found == nullptr)
        throw std::runtime_error(name);
    return *found;
}

/// Every text has the room it needs, and everything that takes input has a name.
void expectLegible(QDialog& dialog) {
    dialog.show();
    QCoreApplication::processEvents();
    for (const QWidget* widget : dialog.findChildren<QWidget*>()) {
        const QRect place(widget->mapTo(&dialog, QPoint()), widget->size());
        const QSize needed(widget->minimumSizeHint().width(),
                           widget->hasHeightForWidth() ? widget->heightForWidth(widget->width())
                                                       : widget->minimumSizeHint().height());
        EXPECT_TRUE(dialog.rect().contains(place)) << widget->objectName().toStdString();
        EXPECT_EQ(widget->size().expandedTo(needed), widget->size())
            << widget->objectName().toStdString();
        EXPECT_FALSE(widget->focusPolicy() != Qt::NoFocus && widget->accessibleName().isEmpty())
            << widget->objectName().toStdString();
    }
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
    ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
    EXPECT_EQ(QApplication::focusWidget(), &child(dialog, "DataOut_1"));
    auto& connector = child<PortConnector>(dialog, "PortConnector");
    EXPECT_EQ(connector.accessibleDescription(),
              "SDA out: pin 3, SCL out: pin 2, SDA in: pin 12, SCL in: pin 13");
    const QImage before = connector.grab().toImage();

    t_.user.onBox = [&](const Box&) { EXPECT_FALSE(child(dialog, "ClockOut_1").isChecked()); };
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Down);
    EXPECT_FALSE(child(dialog, "ClockOut_0").isChecked());
    EXPECT_EQ(connector.pinOf(PinPosition::ClockOut), std::nullopt);
    child<QPushButton>(dialog, "AcceptButton").click();
    EXPECT_EQ(t_.user.TakeBoxes().size(), 2);
    EXPECT_TRUE(dialog.isVisible());

    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Down);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
    EXPECT_EQ(connector.pinOf(PinPosition::ClockOut), 4);
    EXPECT_NE(connector.grab().toImage(), before);
    child<QPushButton>(dialog, "AcceptButton").click();
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_EQ(t_.program.state.pinOptions, "11212010");
}

TEST_F(AdapterDialogsTest, PortOptionsCloseOnlyByTheirButtonsAndEscape) {
    for (const char* button : {"CancelButton", "", "DefaultButton"}) {
        t_.program.state.pinOptions = "21012010";
        FormPortOpts dialog(options_, nullptr);
        dialog.show();
        EXPECT_TRUE(child(dialog, "DataOut_2").isChecked() &&
                    child(dialog, "DataIn_2").isChecked());
        child(dialog, "DataIn_0").click();
        dialog.close();
        child<QPushButton>(dialog, "HelpButton").click();
        EXPECT_EQ(t_.user.TakeBoxes().size(), 1);
        ASSERT_TRUE(dialog.isVisible());
        if (*button != '\0')
            child<QPushButton>(dialog, button).click();
        else
            QTest::keyClick(&dialog, Qt::Key_Escape);
        EXPECT_FALSE(dialog.isVisible());
        const bool defaults = std::string(button) == "DefaultButton";
        EXPECT_EQ(t_.program.state.pinOptions, defaults ? "11012010" : "21012010");
        EXPECT_EQ(t_.Status(), defaults ? "Port Configuration Set to Defaults"
                                        : "Port Configuration Not Changed");
    }
}

TEST_F(AdapterDialogsTest, TestDialogDrivesTheLinesAndShowsWhatComesBack) {
    ASSERT_TRUE(test_.PreCheck());
    FormTestInt dialog(test_, nullptr);
    dialog.show();
    const auto expectLamps = [&](int scl, int sda) {
        for (const auto& [lamp, level] : {std::pair{"Shape2_0", scl}, {"Shape2_1", sda}}) {
            const QImage image = child<QWidget>(dialog, lamp).grab().toImage();
            EXPECT_EQ(image.pixelColor(image.rect().center()), QColor(level ? 255 : 95, 0, 0));
        }
    };
    expectLamps(1, 1);
    EXPECT_FALSE(child(dialog, "ClockOut_0").isChecked() ||
                 child(dialog, "ClockOut_1").isChecked());
    child(dialog, "ClockOut_0").click();
    expectLamps(0, 1);
    t_.television.Inject({.kind = FaultKind::LinesJoined});
    child(dialog, "ClockOut_0").click();
    expectLamps(0, 0);

    const auto& result = child<QLabel>(dialog, "Label3");
    child<QCheckBox>(dialog, "AutoTestcheck").click();
    EXPECT_FALSE(child(dialog, "DataOut_0").isEnabled());
    EXPECT_EQ(child<QTimer>(dialog, "Timer1").interval(), 500);
    EXPECT_TRUE(QTest::qWaitFor([&] { return result.text() == "Err: SCL"; }));
    EXPECT_TRUE(child<QLabel>(dialog, "lblDiagnosis").text().contains("joined"));
    child<QCheckBox>(dialog, "AutoTestcheck").click();
    EXPECT_TRUE(child(dialog, "DataOut_0").isEnabled() && child(dialog, "ClockOut_0").isChecked());
    EXPECT_EQ(result.text(), "Err: SCL");
}

TEST_F(AdapterDialogsTest, HoweverTheTestEndsLinesPortAndTimerAreLeftAtRest) {
    enum class Ending { CloseBox, Escape, Deleted };
    for (const Ending ending : {Ending::CloseBox, Ending::Escape, Ending::Deleted}) {
        ASSERT_TRUE(test_.PreCheck());
        auto dialog = std::make_unique<FormTestInt>(test_, nullptr);
        dialog->show();
        EXPECT_EQ(child<QLabel>(*dialog, "Label3").text(), "");
        child(*dialog, "DataOut_0").click();
        child<QCheckBox>(*dialog, "AutoTestcheck").click();
        const QPointer<QTimer> timer(&child<QTimer>(*dialog, "Timer1"));
        ASSERT_TRUE(timer->isActive() && !t_.television.Sda());
        if (ending == Ending::CloseBox)
            dialog->close();
        else if (ending == Ending::Escape)
            QTest::keyClick(dialog.get(), Qt::Key_Escape);
        else
            dialog.reset();
        EXPECT_FALSE(timer != nullptr && timer->isActive());
        EXPECT_TRUE(t_.television.Scl() && t_.television.Sda());
        EXPECT_EQ(t_.television.DlPortReadPortUchar(0x378), 0xFF) << "still claimed";
    }
}

TEST_F(AdapterDialogsTest, NoTextIsCutOffInAnyFontSizeAndThePathIsSelected) {
    const QFont font = QApplication::font();
    for (const double factor : {0.8, 1.0, 2.0}) {
        QFont sized = font;
        sized.setPointSizeF(font.pointSizeF() * factor);
        QApplication::setFont(sized);
        FormPortOpts options(options_, nullptr);
        expectLegible(options);
        ASSERT_TRUE(test_.PreCheck());
        FormTestInt test(test_, nullptr);
        t_.television.Inject({.kind = FaultKind::SclStuckLow});
        t_.television.Inject({.kind = FaultKind::SdaStuckHigh});
        for (const char* name : {"DataOut_0", "DataOut_1", "ClockOut_0", "DataOut_0"})
            child(test, name).click();
        expectLegible(test);
        t_.television.ClearFaults();
        FormCnP path("/lib/modules/6.1.0-28-amd64/kernel/drivers/char/ppdev.ko", nullptr);
        expectLegible(path);
        auto& text = child<QLineEdit>(path, "txtCnP");
        EXPECT_EQ(text.selectedText(), text.text());
        text.deselect();
        QTest::mouseClick(&text, Qt::LeftButton, {}, text.rect().center());
        EXPECT_EQ(text.selectedText(), text.text());
    }
    QApplication::setFont(font);
}

}  // namespace
}  // namespace tarnwell
