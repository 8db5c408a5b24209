// The three dialogs about the adapter, operated as a user would.
#include <QApplication>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalSpy>
#include <QTest>

#include "support/TestProgram.h"
#include "ui/FormCnP.h"
#include "ui/FormPortOpts.h"
#include "ui/FormTestInt.h"
#include "ui/Text.h"

namespace tarnwell {
namespace {

using testing::ElementsAre;

template <typename T>
T& child(const QWidget& dialog, const char* name) {
    auto* found = dialog.findChild<T*>(QLatin1String(name));
    EXPECT_NE(found, nullptr) << name;
    return *found;
}

bool isChecked(const QWidget& dialog, const char* name) {
    return child<QRadioButton>(dialog, name).isChecked();
}

/// Every text has the room it needs, and everything that takes input has a name.
void expectLegible(QDialog& dialog) {
    dialog.show();
    QCoreApplication::processEvents();
    for (QWidget* widget : dialog.findChildren<QWidget*>()) {
        const std::string what = fromQt(widget->objectName());
        EXPECT_TRUE(dialog.rect().contains(QRect(widget->mapTo(&dialog, QPoint()), widget->size())))
            << what;
        if (widget->focusPolicy() != Qt::NoFocus) {
            EXPECT_FALSE(widget->accessibleName().isEmpty()) << what;
        }
        const auto* label = qobject_cast<QLabel*>(widget);
        if (label != nullptr && label->wordWrap()) {
            EXPECT_GE(widget->height(), widget->heightForWidth(widget->width())) << what;
        } else {
            EXPECT_GE(widget->width(), widget->minimumSizeHint().width()) << what;
            EXPECT_GE(widget->height(), widget->minimumSizeHint().height()) << what;
        }
    }
}

class AdapterDialogsTest : public testing::Test {
  protected:
    QString Status() const { return QString::fromStdString(t_.Status()); }

    TestProgram t_{Simulation{.television = Television::Absent}};
    PortOptions options_{t_.program.state, t_.program.statusBar, t_.user, t_.program.i2c};
    InterfaceTest test_{t_.program.i2c, t_.television, t_.program.statusBar, t_.user};
};

TEST_F(AdapterDialogsTest, PortOptionsShowTheProgramStateAndRefuseAConflict) {
    FormPortOpts dialog(options_, nullptr);
    dialog.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
    for (const char* name : {"DataOut_1", "DataOutPol_1", "ClockOut_0", "ClockOutPol_1", "DataIn_2",
                             "DataInPol_0", "ClockIn_1", "ClockInPol_0"})
        EXPECT_TRUE(isChecked(dialog, name)) << name;
    const auto& connector = child<PortConnector>(dialog, "PortConnector");
    EXPECT_EQ(connector.accessibleDescription(),
              "SDA out: pin 3, SCL out: pin 2, SDA in: pin 12, SCL in: pin 13");

    t_.user.onBox = [&](const Box&) { EXPECT_FALSE(isChecked(dialog, "ClockOut_1")); };
    child<QRadioButton>(dialog, "ClockOut_0").setFocus();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Down);
    EXPECT_EQ(t_.user.TakeBoxes().size(), 1);
    EXPECT_FALSE(isChecked(dialog, "ClockOut_0"));
    EXPECT_EQ(connector.pinOf(PinPosition::ClockOut), std::nullopt);
    t_.user.onBox = nullptr;
    child<QPushButton>(dialog, "AcceptButton").click();
    EXPECT_EQ(t_.user.TakeBoxes().size(), 1);
    EXPECT_TRUE(dialog.isVisible());

    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Down);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
    EXPECT_EQ(connector.pinOf(PinPosition::ClockOut), 4);
    child<QPushButton>(dialog, "AcceptButton").click();
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_EQ(t_.program.state.pinOptions, "11212010");
    EXPECT_EQ(t_.user.boxes.size(), 0);
}

TEST_F(AdapterDialogsTest, PortOptionsCloseOnlyByTheirButtonsAndEscape) {
    {
        FormPortOpts dialog(options_, nullptr);
        dialog.show();
        EXPECT_FALSE(dialog.close());
        EXPECT_TRUE(dialog.isVisible());
        EXPECT_FALSE(dialog.windowFlags().testFlag(Qt::WindowCloseButtonHint));
        child<QPushButton>(dialog, "HelpButton").click();
        EXPECT_EQ(t_.user.TakeBoxes().size(), 1);
        child<QRadioButton>(dialog, "DataIn_0").click();
        QTest::keyClick(&dialog, Qt::Key_Escape);
        EXPECT_FALSE(dialog.isVisible());
        EXPECT_EQ(Status(), "Port Configuration Not Changed");
    }
    t_.program.state.pinOptions = "21012010";
    FormPortOpts dialog(options_, nullptr);
    dialog.show();
    EXPECT_TRUE(isChecked(dialog, "DataOut_2"));
    EXPECT_TRUE(isChecked(dialog, "DataIn_2"));
    child<QPushButton>(dialog, "DefaultButton").click();
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_EQ(t_.program.state.pinOptions, "11012010");
    EXPECT_EQ(Status(), "Port Configuration Set to Defaults");
}

TEST_F(AdapterDialogsTest, CaptionsAndToolTipsAreTheGivenOnes) {
    FormPortOpts options(options_, nullptr);
    ASSERT_TRUE(test_.PreCheck());
    FormTestInt test(test_, nullptr);
    const FormCnP path("/x", nullptr);
    struct Case {
        const QWidget& dialog;
        const char* name;
        const char* property;
        const char* text;
        const char* toolTip;
    };
    const std::array cases{
        Case{options, "frameClockOut", "title", "Clock (SCL)",
             " Clock line output port pin selection "},
        Case{options, "frameDataInPol", "title", "Data (SDA)",
             " Data line input polarity selection "},
        Case{options, "ClockIn_4", "text", "!b7 (p11)", ""},
        Case{options, "ClockOutPol_1", "text", "Inverted", " Interface inverts clock out "},
        Case{options, "AcceptButton", "text", "Accept", " Click to save current settings "},
        Case{options, "CancelButton", "text", "Cancel", " Click to abort any changes "},
        Case{options, "DefaultButton", "text", "Defaults",
             " Click to save settings for 'Plimby I2C Interface' "},
        Case{options, "HelpButton", "text", "Help", " Click if you have no clue! "},
        Case{test, "frameClockOut", "title", "Clock (SCL)",
             " Manual clock output bitstate selection "},
        Case{test, "frameDataOut", "title", "Data (SDA)",
             " Manual data output bitstate selection "},
        Case{test, "DataOut_1", "text", "Logic 1", ""},
        Case{test, "AutoTestcheck", "text", "AutoTest", " Starts & ends interface autotest "},
        Case{test, "Label2", "text", "Status:", ""},
        Case{path, "lblInstr", "text",
             "Cut-and-Paste the driver path above to the\n"
             "'LoadDrv' Window, 'Full pathname of driver' text box.",
             ""},
        Case{path, "lblTail", "text", "Close this window to return to Tarnwell", ""},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(child<QWidget>(c.dialog, c.name).property(c.property), QString(c.text)) << c.name;
        EXPECT_EQ(child<QWidget>(c.dialog, c.name).toolTip(), c.toolTip) << c.name;
    }
    EXPECT_EQ(options.windowTitle(), "Advanced Port Setup");
    EXPECT_EQ(test.windowTitle(), "I2C Interface Test");
    EXPECT_EQ(path.windowTitle(), "Cut-N-Paste Window");
}

TEST_F(AdapterDialogsTest, TestDialogDrivesTheLinesAndShowsWhatComesBack) {
    ASSERT_TRUE(test_.PreCheck());
    FormTestInt dialog(test_, nullptr);
    dialog.show();
    const auto colour = [&](const char* lamp) {
        const QImage image = child<QWidget>(dialog, lamp).grab().toImage();
        return image.pixelColor(image.rect().center());
    };
    const QColor high(255, 0, 0);
    const QColor low(95, 0, 0);
    EXPECT_EQ(colour("Shape2_0"), high);
    EXPECT_EQ(colour("Shape2_1"), high);
    EXPECT_FALSE(isChecked(dialog, "ClockOut_0") || isChecked(dialog, "ClockOut_1"));

    child<QRadioButton>(dialog, "ClockOut_0").click();
    EXPECT_FALSE(t_.television.Scl());
    EXPECT_EQ(colour("Shape2_0"), low);
    EXPECT_EQ(colour("Shape2_1"), high);

    t_.television.Inject({.kind = FaultKind::LinesJoined});
    child<QRadioButton>(dialog, "ClockOut_0").click();
    EXPECT_EQ(colour("Shape2_1"), low);
    child<QCheckBox>(dialog, "AutoTestcheck").click();
    EXPECT_FALSE(child<QRadioButton>(dialog, "DataOut_0").isEnabled());
    auto& timer = child<QTimer>(dialog, "Timer1");
    EXPECT_EQ(timer.interval(), 500);
    ASSERT_TRUE(QSignalSpy(&timer, &QTimer::timeout).wait(2000));
    EXPECT_EQ(child<QLabel>(dialog, "Label3").text(), "Err: SCL");
    EXPECT_EQ(colour("Shape2_0"), low);
    EXPECT_TRUE(child<QLabel>(dialog, "lblDiagnosis").text().contains("joined"));

    child<QCheckBox>(dialog, "AutoTestcheck").click();
    EXPECT_FALSE(timer.isActive());
    EXPECT_TRUE(child<QRadioButton>(dialog, "DataOut_0").isEnabled());
    EXPECT_TRUE(isChecked(dialog, "ClockOut_0"));
    EXPECT_EQ(child<QLabel>(dialog, "Label3").text(), "Err: SCL");
}

TEST_F(AdapterDialogsTest, HoweverTheTestEndsLinesPortAndTimerAreLeftAtRest) {
    const std::array<std::function<void(FormTestInt&)>, 3> endings{
        [](FormTestInt& dialog) { dialog.close(); },
        [](FormTestInt& dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); },
        [](FormTestInt&) { /* the window it belongs to goes away */ },
    };
    for (const auto& end : endings) {
        ASSERT_TRUE(test_.PreCheck());
        auto dialog = std::make_unique<FormTestInt>(test_, nullptr);
        dialog->show();
        child<QRadioButton>(*dialog, "DataOut_0").click();
        child<QCheckBox>(*dialog, "AutoTestcheck").click();
        const QPointer<QTimer> timer(&child<QTimer>(*dialog, "Timer1"));
        ASSERT_TRUE(timer->isActive() && !t_.television.Sda());
        end(*dialog);
        if (dialog->isVisible())
            dialog.reset();
        EXPECT_TRUE(timer.isNull() || !timer->isActive());
        EXPECT_TRUE(t_.television.Scl() && t_.television.Sda());
        EXPECT_EQ(t_.television.DlPortReadPortUchar(0x378), 0xFF) << "still claimed";
    }
}

TEST_F(AdapterDialogsTest, DriverPathIsSelectedAtFirstAndAfterEachClick) {
    const std::string path = "/lib/modules/6.1.0/kernel/drivers/char/ppdev.ko";
    FormCnP dialog(path, nullptr);
    dialog.show();
    auto& text = child<QLineEdit>(dialog, "txtCnP");
    EXPECT_EQ(text.selectedText().toStdString(), path);
    text.deselect();
    QTest::mouseClick(&text, Qt::LeftButton, {}, text.rect().center());
    EXPECT_EQ(text.selectedText().toStdString(), path);
    QTest::keyClick(&dialog, Qt::Key_Escape);
    EXPECT_FALSE(dialog.isVisible());
}

TEST_F(AdapterDialogsTest, NoTextIsCutOffInAnyFontSize) {
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
            child<QRadioButton>(test, name).click();
        expectLegible(test);
        t_.television.ClearFaults();
        FormCnP path("/lib/modules/6.1.0-28-amd64/kernel/drivers/char/ppdev.ko", nullptr);
        expectLegible(path);
    }
    QApplication::setFont(font);
}

}  // namespace
}  // namespace tarnwell
