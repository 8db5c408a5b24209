// What boxes and file dialogs offer, and the dialogs about the adapter, operated as a user would:
// those of the parallel port, and that of an I2C bus of the kernel instead.
#include <QFileDialog>
#include <QMessageBox>
#include <QTreeWidget>
#include <random>

#include "support/MainWindow.h"
#include "ui/dialogs/FormCnP.h"
#include "ui/widgets/PortConnector.h"

namespace tarnwell {
namespace {

class QtUserTest : public WindowTest {
  protected:
    QtUserTest() : WindowTest(parent) {
        user.setWindow(&parent);
        user.setUpFileDialog();
    }

    QWidget parent;
    QtUser user;
};

TEST_F(QtUserTest, EachBoxHasItsIconItsButtonsAndItsDefaultButton) {
    using enum BoxStyle;
    sights["box"] = [this] {
        const auto& box = dynamic_cast<QMessageBox&>(front());
        QString all = box.text() + box.windowTitle() + ' ' +
                      Child<QLabel>(box, "qt_msgboxex_icon_label").accessibleName() + ':';
        for (QAbstractButton* button : box.buttons())
            all += ' ' + button->text().remove('&') + (button == box.defaultButton() ? "*" : "");
        return all;
    };
    for (const auto& [style, buttons, byReturn, byEscape] :
         {std::tuple(Critical, "Error: OK*", Answer::Ok, Answer::Ok),
          {Exclamation, "Warning: OK*", Answer::Ok, Answer::Ok},
          {Information, "Information: OK*", Answer::Ok, Answer::Ok},
          {YesNoQuestion, "Question: Yes* No", Answer::Yes, Answer::No},
          {YesNoExclamation, "Warning: Yes* No", Answer::Yes, Answer::No},
          {YesNoExclamation, "Warning: Yes No*", Answer::No, Answer::No},
          {OkCancelExclamation, "Warning: OK Cancel*", Answer::Cancel, Answer::Cancel}}) {
        Box box(Message("First\r\n<b>", "W A R N I N G", Critical));
        box.style = style;
        if (QString(buttons).endsWith("No*"))
            box.defaultButton = DefaultButton::No;
        std::vector<Answer> answers;
        const auto show = [&] { answers.push_back(user.ShowBox(box)); };
        play({{show, "qt_msgbox_label.textFormat box",
               QString("PlainText / First\n<b>W A R N I N G ") + buttons},
              {"Return"},
              {show},
              {"Esc"}});
        EXPECT_THAT(answers, ElementsAre(byReturn, byEscape)) << buttons;
    }
}

TEST_F(QtUserTest, FileDialogsOpenWhereTheyAreToldAndTakeWhatTheirKindAllows) {
    using enum FileRequest::Kind;
    const TemporaryFolder folder;
    folder.Write("old.mot", "");
    folder.Write("plain", "");
    struct Row {
        FileRequest::Kind kind;
        const char* picked;
        const char* result;
        QFileDialog::FileMode mode;
    };
    const char* filter = "Motorola";
    for (const Row& row : {Row{Save, "new", "new.mot", QFileDialog::AnyFile},
                           {Save, "a.txt", "a.txt", QFileDialog::AnyFile},
                           {Open, "old.mot", "old.mot", QFileDialog::ExistingFile},
                           {OpenAnyName, "new", "new.mot", QFileDialog::AnyFile},
                           {OpenAnyName, "plain", "plain", QFileDialog::AnyFile}}) {
        const std::string proposed = row.kind == Save ? "11.17.2026" : "";
        const auto ask = [&] {
            EXPECT_EQ(user.AskFile({row.kind, "Title", proposed, folder.Path()}),
                      folder.Path(row.result));
        };
        const auto pick = [&] {
            auto& dialog = dynamic_cast<QFileDialog&>(front());
            EXPECT_EQ(pathFromQt(dialog.directory().path()) + "/", folder.Path());
            EXPECT_EQ(fromQt(dialog.nameFilters().join(QLatin1Char('|'))),
                      "Motorola S-Record Archive (*.mot) (*.mot)|All Files (*.*) (*)");
            EXPECT_TRUE(dialog.selectedNameFilter().startsWith(std::exchange(filter, "All")));
            dialog.selectNameFilter(dialog.nameFilters().last());
            EXPECT_EQ(dialog.acceptMode() == QFileDialog::AcceptSave, row.kind == Save);
            EXPECT_EQ(dialog.fileMode(), row.mode);
            EXPECT_FALSE(dialog.testOption(QFileDialog::DontConfirmOverwrite));
            Child<QLineEdit>(dialog, "fileNameEdit").setText(QLatin1String(row.picked));
        };
        play({{ask, "fileNameEdit", row.kind == Save ? "11.17.2026.mot" : ""},
              {"", "title", "Title"},
              {pick},
              {"on:fileNameEdit Return"}});
    }
    const auto cancelled = [&] {
        EXPECT_EQ(user.AskFile({Open, "Title", "", folder.Path()}), std::nullopt);
    };
    play({{cancelled}, {"Esc"}});
    const auto image = [&] {
        EXPECT_EQ(user.AskFile({Save, "Title", "a", folder.Path(), kImageFilter}),
                  folder.Path("b.hex"));
    };
    const auto hex = [&] {
        auto& dialog = dynamic_cast<QFileDialog&>(front());
        dialog.selectNameFilter("Intel HEX (*.hex) (*.hex)");
        Q_EMIT dialog.filterSelected(dialog.selectedNameFilter());
        Child<QLineEdit>(dialog, "fileNameEdit").setText("b");
    };
    play({{image}, {hex}, {"on:fileNameEdit Return"}});
}

class AdapterDialogsTest : public FormMainTest {
  protected:
    AdapterDialogsTest() : FormMainTest(Television::Absent) {}
};

TEST_F(AdapterDialogsTest, PortOptionsFollowEachKeyAndRefuseAConflict) {
    QImage before;
    const auto connector = [this]() -> PortConnector& {
        return Child<PortConnector>(window, "PortConnector");
    };
    sights["pin"] = [&] {
        return QString::number(connector().pinOf(PinPosition::ClockOut).value_or(0));
    };
    play({{"mnuPortOpts", "focus", "DataOut_1"},
          {[&] { before = connector().grab().toImage(); }},
          {"Tab Down", "title ClockOut_1", "E R R O R - Port Conflict / b1 (p3)"},
          {"OK", "pin", "0"},
          {"AcceptButton", "title", "E R R O R - Port Conflict"},
          {"OK", "pin", "0"},
          {"on:ClockOut_1 Down Space", "pin", "4"},
          {[&] { EXPECT_NE(connector().grab().toImage(), before); }},
          {"AcceptButton", "title", " Tarnwell 2..."}});
    EXPECT_EQ(program.state.pinOptions, "11212010");
}

TEST_F(AdapterDialogsTest, PortOptionsCloseOnlyByTheirButtonsAndEscape) {
    sights["options"] = [this] { return toQt(program.state.pinOptions) + ' ' + status(); };
    const char* kept = "21012010 Port Configuration Not Changed";
    for (const auto& [button, left] :
         {std::pair("CancelButton", kept),
          {"Esc", kept},
          {"DefaultButton", "11012010 Port Configuration Set to Defaults"}}) {
        program.state.pinOptions = "21012010";
        play({{"mnuPortOpts"},
              {[this] { front().close(); }},
              {"DataIn_0 HelpButton", "title", "..."},
              {"OK", "title", "Advanced Port Setup"},
              {button, "options", left}});
    }
}

TEST_F(AdapterDialogsTest, TestDialogDrivesTheLinesAndShowsWhatComesBack) {
    sights["lamps"] = [this] {
        QStringList reds;
        for (const char* lamp : {"Shape2_0", "Shape2_1", "Swatch_1", "Swatch_2"}) {
            const QImage image = child(lamp).grab().toImage();
            reds += QString::number(image.pixelColor(image.rect().center()).red());
        }
        return reds.join(' ');
    };
    const auto join = [this] { television.Inject({.kind = FaultKind::LinesJoined}); };
    play({{"mnuPortTest", "lamps", "255 255 255 95"},
          {"ClockOut_0", "lamps", "95 255 255 95"},
          {join},
          {"ClockOut_0", "lamps", "95 95 255 95"},
          {"AutoTestcheck", "DataOut_0", "~Logic 0"},
          {"", "Label3...", "Err: SCL"},
          {"", "lblDiagnosis", "...joined..."},
          {"AutoTestcheck", "DataOut_0 ClockOut_0", "Logic 0 / *Logic 0"},
          {"Esc"}});
}

TEST_F(AdapterDialogsTest, HoweverTheTestEndsLinesAndPortAreLeftAtRest) {
    const std::variant<QString, std::function<void()>> endings[] = {"Esc",
                                                                    [this] { front().close(); }};
    for (const auto& end : endings) {
        play({{"mnuPortTest", "Label3", ""},
              {"DataOut_0 AutoTestcheck", "Timer1.active Timer1.interval Timer1.timerType",
               "true / 500 / PreciseTimer"},
              {[this] { EXPECT_FALSE(television.Sda()); }},
              {end}});
        EXPECT_TRUE(television.Scl() && television.Sda());
        EXPECT_EQ(television.DlPortReadPortUchar(0x378), 0xFF) << "still claimed";
    }
}

TEST_F(AdapterDialogsTest, ThePathIsAlwaysSelected) {
    const QString path = "/lib/modules/6.1.0-28-amd64/kernel/drivers/char/ppdev.ko";
    play({{[&] { FormCnP(fromQt(path), &window).exec(); }, "txtCnP.selectedText", path},
          {[&] { Child<QLineEdit>(window, "txtCnP").deselect(); }},
          {"txtCnP", "txtCnP.selectedText", path},
          {"Esc"}});
}

class I2cBusTest : public FormMainTest {
  protected:
    I2cBusTest() {
        buses.Name(0, "SMBus I801 adapter at efa0");
        std::mt19937 random{7};
        std::ranges::generate(Primary().memory, [&] { return std::uint8_t(random()); });
    }
    FakeEeprom& Primary() { return buses.devices.at(0x50); }
};

TEST_F(I2cBusTest, IsChosenByKeyboardUsedAndLeftForAParallelPort) {
    sights["buses"] = [this] {
        return QString::number(Child<QTreeWidget>(window, "tblBuses").topLevelItemCount());
    };
    const auto plugIn = [this](int bus) { return [=, this] { buses.Name(bus, "Late"); }; };
    const auto refuse = [this](int error) { return [=, this] { buses.opening = error; }; };
    const auto plugInElsewhere = [this] {
        std::filesystem::rename(buses.folder.Path("sys/bus/i2c/devices/i2c-7"),
                                buses.folder.Path("sys/bus/i2c/devices/i2c-9"));
    };
    play(
        {{"mnuPortI2C", "cmdUse cmdLook", "~Use / ~Look"},
         {plugIn(3), "buses...", "3"},
         {"", "cmdUse", "~Use"},
         {"Space", "cmdUse", "Use"},
         {plugIn(4), "buses...", "4"},
         {"", "cmdUse", "Use"},
         {"", "cmdLook tblBuses", "~Look / SMBus I801 adapter at efa0|/dev/i2c-0"},
         {"End", "cmdLook", "Look"},
         {[this] { EXPECT_EQ(buses.transfers, 0U); }},
         {"Alt+L", "lblAnswers", "...0x50 (primary EEPROM): a device answers..."},
         {refuse(EACCES)},
         {"Return", "lblAnswers", "...group i2c..."},
         {refuse(0)},
         {"cmdUse", "state title statusPanel_4.toolTip mnuPortOpts mnuPortTest mnuPortTest.toolTip",
          "Programming Port Changed to i2c-7|...|EEPsel_0 SelMode_0 PortI2C  /  Tarnwell 2 - i2c-7 "
          "Test adapter /  I2C bus i2c-7 Test adapter  / ~Advanced Setup / ~I2C Interface Test / "
          "For a parallel port only: choose one under Parallel Port first"},
         {plugInElsewhere},
         {"mnuEEPRead", "status title",
          "Primary EEProm Data Read Into Memory /  Tarnwell 2 - Primary EEPROM - i2c-9 Test "
          "adapter"},
         {"mnuPortI2C", "tblBuses", "Test adapter|/dev/i2c-9"},
         {"Esc"}});
    EXPECT_EQ(TextOf(program.state.bus), "Test adapter|/dev/i2c-7");
    EXPECT_TRUE(
        std::ranges::equal(std::span(program.buffer).first(kEepromBytes), Primary().memory));
    program.state.busOfRun = program.state.bus;
    play({{"mnuPortSel_1", "title state statusPanel_4.toolTip mnuPortOpts mnuPortTest.toolTip",
           " Tarnwell 2 - Primary EEPROM - Simulated Television / ...|EEPsel_0 SelMode_0 PortSel_1 "
           " /  / Advanced "
           "Setup / I2C Interface Test"}});
    EXPECT_EQ(program.state.bus, ChosenBus());
}

TEST_F(I2cBusTest, OfTheCommandLineIsForTheRunAndAMissingOneIsTold) {
    const auto tell = [this](const char* bus) {
        return [=, this] {
            program.state.busOfRun = ChosenBusFrom(bus);
            window.tellMissingI2cBus();
        };
    };
    program.state.bus = ChosenBusFrom("Gone|/dev/i2c-7");
    play({{[this] { window.tellMissingI2cBus(); }, "title qt_msgbox_label",
           "W A R N I N G / ...bus Gone is not there..."},
          {"OK"},
          {tell("Test adapter|/dev/i2c-7"), "title", "..."},
          {"mnuSelMode_0", "title", "...i2c-7 Test adapter"},
          {tell(""), "title", "..."}});
    window.close();
    EXPECT_EQ(registry.keys[R"(SOFTWARE\Halvdorn\Tarnwell\ProgPort)"]["I2CBus"], "Gone|/dev/i2c-7");
}

}  // namespace
}  // namespace tarnwell
