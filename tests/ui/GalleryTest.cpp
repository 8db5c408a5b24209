// Every page, dialog and menu of the program: F1 pressed in it, what a screen reader is told and
// where that is seen, in the order of the Tab key (a line of transcript.txt each), and how it looks
// from afar (windows.png). Those of now are transcript.now and windows.now.png.
#include <QAccessible>
#include <QDesktopServices>
#include <QPainter>
#include <QTest>
#include <QTextBrowser>
#include <QWindow>
#include <fstream>

#include "support/Gallery.h"
#include "support/Pictures.h"
#include "support/TestProgram.h"
#include "ui/looks/Text.h"

namespace tarnwell {
namespace {

/// . takes the focus, ~ is disabled, * is marked, > is the default button, ! can be pressed; in
/// brackets the place, the size and the pixels of the font, b if it is bold.
std::string told(QWidget& window) {
    QString all =
        window.windowTitle() + QString::asprintf(" [%dx%d]", window.width(), window.height());
    for (auto* part = window.nextInFocusChain(); part != &window; part = part->nextInFocusChain()) {
        QAccessibleInterface& told = *QAccessible::queryAccessibleInterface(part);
        const QAccessible::State is = told.state();
        const QPoint at = part->mapTo(&window, QPoint());
        const auto* actions = told.actionInterface();
        const QString description = told.text(QAccessible::Description);
        if (part->isVisibleTo(&window) && !told.text(QAccessible::Name).isEmpty())
            all += QStringLiteral(" | ") + (is.focusable ? "." : "") + (is.disabled ? "~" : "") +
                   (is.checked ? "*" : "") + (is.defaultButton ? ">" : "") +
                   (actions && actions->actionNames().contains("Press") ? "!" : "") +
                   told.text(QAccessible::Name) + " (" + told.text(QAccessible::Value) +
                   description + (part->toolTip() == description ? "" : part->toolTip()) +
                   QString::asprintf(") [%d %d %dx%d %d%s]", at.x(), at.y(), part->width(),
                                     part->height(), QFontInfo(part->font()).pixelSize(),
                                     part->font().bold() ? "b" : "");
    }
    const QRegularExpression varying("\\(\\) |(?<=Version )[\\d.]+");
    return all.simplified().remove(varying).toStdString();
}

/// A part a line.
std::string inLines(const std::string& told) {
    return fromQt(toQt(told).replace(" | ", "\n"));
}

TEST(Gallery, IsAsItIsKeptAndHasATopicForEachWindow) {
    std::string opened, line;
    std::ifstream kept(QT_TESTCASE_SOURCEDIR "/ui/transcript.txt");
    std::ofstream now("transcript.now");
    const QRegularExpression skipped("image|driver");
    const QImage pictures(QT_TESTCASE_SOURCEDIR "/ui/windows.png");
    QImage drawn(600, 320, QImage::Format_RGB32);
    drawn.fill(0);
    QPainter painter(&drawn);
    QPoint place;
    WalkGallery([&](const std::string& name, QWidget& window) {
        QTextBrowser viewer, other;
        QDesktopServices::setUrlHandler("file", &viewer, "setSource");
        QTest::keyClick(window.windowHandle(), Qt::Key_F1);
        QDesktopServices::setUrlHandler("file", &other, "setSource");
        opened += name + ">" + viewer.source().fileName().chopped(5).toStdString() + " ";
        QTest::keyClick(window.windowHandle(), Qt::Key_F1, Qt::ShiftModifier);
        EXPECT_TRUE(other.source().isEmpty()) << name;
        QDesktopServices::unsetUrlHandler("file");
        if (QString::fromStdString(name).contains(skipped))
            return;
        now << name << ": " << told(window) << '\n';
        std::getline(kept, line);
        EXPECT_EQ(inLines(name + ": " + told(window)), inLines(line));
        const QImage seen = fromAfar(window);
        if (place.x() + seen.width() > drawn.width())
            place = {0, place.y() + 80};
        painter.drawImage(place, seen);
        // The times of backups are those of now.
        const int most = name == "backups" ? 120 : hasSoftEdges() ? 24 : 60;
        EXPECT_LE(difference(seen, pictures.copy({place, seen.size()})), most) << name;
        place.rx() += seen.width();
    });
    painter.end();
    drawn.save("windows.now.png");
    EXPECT_EQ(opened,
              "value-editor>value-editor chroma>chroma edges>edges global>global iris>iris "
              "picture>picture save-image>archives load-image>archives "
              "port-options>advanced-setup i2c-bus>i2c-buses i2c-bus-mainboard>i2c-buses "
              "about>about driver-path>port-access verify-question>messages "
              "secondary-question>messages fill-value>whole-device verify-failed>messages "
              "menu-file>menus menu-edit>menus menu-eep>menus menu-options>menus menu-port>menus "
              "menu-help>menus compare>compare differences-question>messages backups>backups "
              "editor-warning>data-editor editor-off>data-editor editor>data-editor "
              "menu-cell>value-editor menu-grid>data-editor menu-pending>pending-writes "
              "go-to>finding find>finding interface-test>interface-test "
              "interface-test-faults>interface-test ");
}

}  // namespace
}  // namespace tarnwell
