// F1, pressed in every page, dialog and menu of the program.
#include <QDesktopServices>
#include <QTest>
#include <QUrl>
#include <QWindow>
#include <map>
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
    void open(const QUrl& url) { m_opened += url.fileName(); }

  private:
    QString m_opened;
};

TEST(HelpKey, OpensTheTopicOfEveryPageDialogAndMenu) {
    const std::map<std::string, std::string> otherTopics{
        {"editor", "data-editor"},
        {"editor-off", "data-editor"},
        {"editor-warning", "data-editor"},
        {"port-options", "advanced-setup"},
        {"driver-path", "port-access"},
        {"fill-value", "whole-device"},
        {"save-image", "archives"},
        {"load-image", "archives"},
        {"verify-question", "messages"},
        {"secondary-question", "messages"},
        {"verify-failed", "messages"},
        {"menu-file", "menus"},
        {"menu-eep", "menus"},
        {"menu-options", "menus"},
        {"menu-help", "menus"},
    };
    Viewer viewer;
    int windows = 0;
    WalkGallery([&](const std::string& name, QWidget& window) {
        const auto other = otherTopics.find(name);
        const std::string& topic = other == otherTopics.end() ? name : other->second;
        QTest::keyClick(window.windowHandle(), Qt::Key_F1);
        EXPECT_EQ(viewer.takeOpened(), topic + ".html") << name;
        QTest::keyClick(window.windowHandle(), Qt::Key_F1, Qt::ShiftModifier);
        EXPECT_EQ(viewer.takeOpened(), "") << name;
        ++windows;
    });
    EXPECT_GT(windows, 20);
}

}  // namespace
}  // namespace tarnwell

#include "HelpKeyTest.moc"
