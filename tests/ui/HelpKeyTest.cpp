// F1, pressed in every page, dialog and menu of the program.
#include <QDesktopServices>
#include <QTest>
#include <QTextBrowser>
#include <QWindow>

#include "support/Gallery.h"
#include "support/TestProgram.h"

namespace tarnwell {
namespace {

TEST(HelpKey, OpensTheTopicOfEveryPageDialogAndMenu) {
    std::string opened;
    WalkGallery([&](const std::string& name, QWidget& window) {
        QTextBrowser viewer, other;
        QDesktopServices::setUrlHandler("file", &viewer, "setSource");
        QTest::keyClick(window.windowHandle(), Qt::Key_F1);
        QDesktopServices::setUrlHandler("file", &other, "setSource");
        opened += name + ">" + viewer.source().fileName().chopped(5).toStdString() + " ";
        QTest::keyClick(window.windowHandle(), Qt::Key_F1, Qt::ShiftModifier);
        EXPECT_TRUE(other.source().isEmpty()) << name;
    });
    QDesktopServices::unsetUrlHandler("file");
    EXPECT_EQ(opened,
              "value-editor>value-editor chroma>chroma edges>edges global>global iris>iris "
              "picture>picture save-image>archives load-image>archives "
              "port-options>advanced-setup i2c-bus>i2c-buses i2c-bus-mainboard>i2c-buses "
              "about>about driver-path>port-access "
              "verify-question>messages secondary-question>messages fill-value>whole-device "
              "verify-failed>messages menu-file>menus menu-edit>menus menu-eep>menus "
              "menu-options>menus menu-port>menus menu-help>menus compare>compare "
              "differences-question>messages "
              "backups>backups "
              "editor-warning>data-editor "
              "editor-off>data-editor "
              "editor>data-editor menu-cell>value-editor menu-grid>data-editor "
              "menu-pending>pending-writes go-to>finding "
              "find>finding interface-test>interface-test "
              "interface-test-faults>interface-test ");
}

}  // namespace
}  // namespace tarnwell
