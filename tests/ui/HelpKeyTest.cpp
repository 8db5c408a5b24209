// F1, pressed in every page, dialog and menu of the program.
#include <QDesktopServices>
#include <QTest>
#include <QUrl>
#include <QWindow>
#include <utility>

#include "support/Gallery.h"
#include "support/TestProgram.h"

namespace tarnwell {
namespace {

/// What the desktop was asked to open.
class Viewer final : public QObject {
    Q_OBJECT
  public:
    Viewer() { QDesktopServices::setUrlHandler(QStringLiteral("file"), this, "open"); }
    ~Viewer() override { QDesktopServices::unsetUrlHandler(QStringLiteral("file")); }

    std::string takeOpened() { return std::exchange(m_opened, {}).toStdString(); }

  public Q_SLOTS:
    void open(const QUrl& url) { m_opened += url.fileName().chopped(5); }

  private:
    QString m_opened;
};

TEST(HelpKey, OpensTheTopicOfEveryPageDialogAndMenu) {
    Viewer viewer;
    std::string opened;
    WalkGallery([&](const std::string& name, QWidget& window) {
        QTest::keyClick(window.windowHandle(), Qt::Key_F1);
        opened += name + ">" + viewer.takeOpened() + " ";
        QTest::keyClick(window.windowHandle(), Qt::Key_F1, Qt::ShiftModifier);
        EXPECT_EQ(viewer.takeOpened(), "") << name;
    });
    EXPECT_EQ(opened,
              "value-editor>value-editor chroma>chroma edges>edges global>global iris>iris "
              "picture>picture save-image>archives load-image>archives "
              "port-options>advanced-setup about>about driver-path>port-access "
              "verify-question>messages secondary-question>messages fill-value>whole-device "
              "verify-failed>messages menu-file>menus menu-edit>menus menu-eep>menus "
              "menu-options>menus menu-help>menus compare>compare backups>backups "
              "editor-warning>data-editor "
              "editor-off>data-editor "
              "editor>data-editor menu-cell>value-editor menu-grid>data-editor "
              "menu-pending>pending-writes go-to>finding "
              "find>finding interface-test>interface-test "
              "interface-test-faults>interface-test ");
}

}  // namespace
}  // namespace tarnwell

#include "HelpKeyTest.moc"
