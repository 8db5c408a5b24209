// What boxes and file dialogs offer, and what comes back from them.
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

#include "support/ModalWindows.h"
#include "support/TestProgram.h"
#include "ui/desktop/QtUser.h"
#include "ui/looks/Text.h"

namespace tarnwell {
namespace {

class QtUserTest : public testing::Test {
  protected:
    QtUserTest() {
        user.setWindow(&parent);
        user.setUpFileDialog();
    }

    QWidget parent;
    QtUser user;
    ModalWindows script{
        [](const std::string& title) { ADD_FAILURE() << "unexpected window: " << title; }};
};

TEST_F(QtUserTest, EachBoxHasItsIconItsButtonsAndItsDefaultButton) {
    using enum BoxStyle;
    for (const auto& [style, buttons, answer] :
         {std::tuple(Critical, "Error: OK*", Answer::Ok),
          {Exclamation, "Warning: OK*", Answer::Ok},
          {Information, "Information: OK*", Answer::Ok},
          {YesNoQuestion, "Question: Yes* No", Answer::Yes},
          {YesNoExclamation, "Warning: Yes* No", Answer::Yes},
          {OkCancelExclamation, "Warning: OK Cancel*", Answer::Cancel}}) {
        Box box(Message("First\r\n<b>", "W A R N I N G", Critical));
        box.style = style;
        std::string shown;
        script.then([&](QWidget& window) {
            auto& messageBox = dynamic_cast<QMessageBox&>(window);
            EXPECT_EQ(messageBox.text() + messageBox.windowTitle(), "First\n<b>W A R N I N G");
            EXPECT_EQ(messageBox.textFormat(), Qt::PlainText);
            shown = fromQt(Child<QLabel>(window, "qt_msgboxex_icon_label").accessibleName()) + ":";
            for (QAbstractButton* button : messageBox.buttons())
                shown += " " + fromQt(button->text().remove(QLatin1Char('&'))) +
                         (button == messageBox.defaultButton() ? "*" : "");
            QTest::keyClick(&window, Qt::Key_Return);
        });
        EXPECT_EQ(user.ShowBox(box), answer) << buttons;
        EXPECT_EQ(shown, buttons);
        script.then([](QWidget& window) { QTest::keyClick(&window, Qt::Key_Escape); });
        const bool asksYesNo = style == YesNoQuestion || style == YesNoExclamation;
        EXPECT_EQ(user.ShowBox(box), asksYesNo ? Answer::No : answer) << buttons;
    }
}

TEST_F(QtUserTest, FileDialogsOpenWhereTheyAreToldAndTakeWhatTheirKindAllows) {
    using enum FileRequest::Kind;
    const TemporaryFolder folder;
    folder.Write("old.mot", "");
    struct Row {
        FileRequest::Kind kind;
        const char* picked;
        const char* result;
        QFileDialog::FileMode mode;
    };
    for (const Row& row : {Row{Save, "new", "new.mot", QFileDialog::AnyFile},
                           {Save, "a.txt", "a.txt", QFileDialog::AnyFile},
                           {Open, "old.mot", "old.mot", QFileDialog::ExistingFile},
                           {OpenAnyName, "new", "new.mot", QFileDialog::AnyFile}}) {
        script.then([&](QWidget& window) {
            auto& dialog = dynamic_cast<QFileDialog&>(window);
            EXPECT_EQ(dialog.windowTitle(), "Title");
            EXPECT_EQ(pathFromQt(dialog.directory().path()) + "/", folder.Path());
            EXPECT_EQ(fromQt(dialog.nameFilters().join(QLatin1Char('|'))),
                      "Motorola S-Record Archive (*.mot) (*.mot)|All Files (*.*) (*)");
            EXPECT_EQ(dialog.acceptMode() == QFileDialog::AcceptSave, row.kind == Save);
            EXPECT_EQ(dialog.fileMode(), row.mode);
            EXPECT_FALSE(dialog.testOption(QFileDialog::DontConfirmOverwrite));
            auto& name = Child<QLineEdit>(dialog, "fileNameEdit");
            EXPECT_EQ(fromQt(name.text()), row.kind == Save ? "11.17.2026.mot" : "");
            name.setText(QLatin1String(row.picked));
            static_cast<QDialog&>(dialog).accept();
        });
        const std::string proposed = row.kind == Save ? "11.17.2026" : "";
        EXPECT_EQ(user.AskFile({row.kind, "Title", proposed, folder.Path()}),
                  folder.Path(row.result));
    }
}

}  // namespace
}  // namespace tarnwell
