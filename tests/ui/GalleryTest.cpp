// Every page, dialog and menu of the program: what F1 opens, what a screen reader is told and where
// that is seen, in the order of the Tab key (a line of transcript.txt each), and how it looks from
// afar (windows.png). Those of now are transcript.now and windows.now.png, beside the program.
#include <QAccessible>
#include <QPainter>
#include <QWindow>
#include <fstream>

#include "support/Gallery.h"
#include "support/MainWindow.h"

namespace tarnwell {
namespace {

/// Its items in order, with their keys; ~ stands before one that is hidden, / before one that is
/// disabled, with the reason that its tooltip tells, * before one that is marked.
QString written(const QList<QAction*>& menu) {
    QStringList items;
    for (const QAction* item : menu) {
        QString text = item->isSeparator() ? QStringLiteral("-") : item->text();
        if (item->menu() != nullptr) {
            text += " (" + written(item->menu()->actions()) + ")";
            EXPECT_TRUE(item->menu()->toolTipsVisible());
        }
        text += ' ' + QKeySequence::listToString(item->shortcuts());
        text += item->isEnabled() || !item->isVisible() ? "" : ": " + item->toolTip();
        items.append((item->isVisible() ? "" : "~") + QLatin1String(item->isEnabled() ? "" : "/") +
                     (item->isChecked() ? "*" : "") + text.trimmed());
    }
    return items.join(", ");
}

/// . takes the focus, ~ is disabled, * is marked, > is the default button, ! can be pressed, ^ is
/// reached by the key; in brackets the place, the size, the pixels of the font, b if it is bold,
/// and the role's number; then the menu bar, or a menu's items, behind ? if their tooltips are
/// shown.
std::string told(QWidget& window) {
    QString all =
        window.windowTitle() + QString::asprintf(" [%dx%d]", window.width(), window.height());
    for (auto* part = window.nextInFocusChain(); part != &window; part = part->nextInFocusChain()) {
        QAccessibleInterface& told = *QAccessible::queryAccessibleInterface(part);
        const QAccessible::State is = told.state();
        const QPoint at = part->mapTo(&window, QPoint());
        const auto* actions = told.actionInterface();
        const QString description = told.text(QAccessible::Description);
        const auto* button = qobject_cast<QAbstractButton*>(part);
        const QString key =
            button ? button->shortcut().toString() : told.text(QAccessible::Accelerator);
        if (part->isVisibleTo(&window) && (is.focusable || !told.text(QAccessible::Name).isEmpty()))
            all += QStringLiteral(" | ") + (is.focusable ? "." : "") + (is.disabled ? "~" : "") +
                   (is.checked ? "*" : "") + (is.defaultButton ? ">" : "") +
                   (actions && actions->actionNames().contains("Press") ? "!" : "") +
                   told.text(QAccessible::Name) + (key.startsWith("Alt") ? " ^" + key : "") + " (" +
                   told.text(QAccessible::Value) + description +
                   (part->toolTip() == description ? "" : part->toolTip()) +
                   QString::asprintf(") [%d %d %dx%d %d%s %d]", at.x(), at.y(), part->width(),
                                     part->height(), QFontInfo(part->font()).pixelSize(),
                                     part->font().bold() ? "b" : "", told.role());
    }
    for (const auto* bar : window.findChildren<QMenuBar*>()) {
        for (const QAction* menu : bar->actions())
            all += " | " + menu->text();
    }
    if (const auto* menu = qobject_cast<QMenu*>(&window))
        all += (menu->toolTipsVisible() ? " ? " : " ") + written(menu->actions());
    const QRegularExpression varying("\\(\\) |(?<=Version )[\\d.]+|[\\d:]{7,8}( [AP]M)?");
    return all.simplified().remove(varying).toStdString();
}

/// A part a line.
std::string inLines(const std::string& told) {
    return fromQt(toQt(told).replace(" | ", "\n"));
}

/// The keys behind Alt of what is told, without those of submenus.
QStringList accessKeys(const std::string& told) {
    const QRegularExpression key("&(\\w)|\\^Alt\\+(\\w)"), inner("\\([^()]*\\)");
    QString outer = toQt(told);
    while (outer.contains(inner))
        outer.remove(inner);
    QStringList keys;
    for (const auto& match : key.globalMatch(outer))
        keys += (match.captured(1) + match.captured(2)).toUpper();
    return keys;
}

/// The window from afar, so that how the edges of letters are drawn makes little difference.
QImage fromAfar(QWidget& window) {
    const QImage seen = window.grab().toImage();
    return seen
        .scaled(seen.size() / (seen.width() < 100 ? 5 : 8), Qt::IgnoreAspectRatio,
                Qt::SmoothTransformation)
        .convertToFormat(QImage::Format_RGB32);
}

/// Whether the edges of letters are soft on this machine, as they are in the kept picture.
bool hasSoftEdges() {
    QImage letter(20, 20, QImage::Format_Grayscale8);
    letter.fill(Qt::white);
    QPainter(&letter).drawText(letter.rect(), QStringLiteral("O"));
    return std::any_of(letter.constBits(), letter.constBits() + letter.sizeInBytes(),
                       [](uchar grey) { return grey > 60 && grey < 200; });
}

/// How much the pictures differ at most, of 255.
int difference(const QImage& one, const QImage& other) {
    int greatest = 0;
    for (int at = 0; at < one.width() * one.height(); ++at) {
        const QPoint place(at % one.width(), at / one.width());
        const QRgb a = one.pixel(place), b = other.pixel(place);
        greatest = std::max({greatest, qAbs(qRed(a) - qRed(b)), qAbs(qGreen(a) - qGreen(b)),
                             qAbs(qBlue(a) - qBlue(b))});
    }
    return greatest;
}

TEST(Gallery, IsAsItIsKeptAndHasATopicForEachWindow) {
    const QString now = QCoreApplication::applicationDirPath();
    std::ifstream kept(QT_TESTCASE_SOURCEDIR "/ui/transcript.txt");
    std::ofstream transcript(pathFromQt(now + "/transcript.now"));
    const QRegularExpression skipped("image|driver");  // they have what is the machine's
    const QImage pictures(QT_TESTCASE_SOURCEDIR "/ui/windows.png");
    QImage drawn(600, 400, QImage::Format_RGB32);
    drawn.fill(0);
    QPainter painter(&drawn);
    QPoint place;
    Viewer viewer;
    WalkGallery([&](const std::string& name, QWidget& window) {
        const bool isSkipped = QString::fromStdString(name).contains(skipped);
        QTest::keyClick(window.windowHandle(), Qt::Key_F1, Qt::ShiftModifier);  // opens nothing
        QTest::keyClick(window.windowHandle(), Qt::Key_F1);
        const std::string shown = name + " > " + viewer.opened() + (isSkipped ? "" : told(window));
        const std::string entry = fromQt(toQt(shown).replace('\n', ' '));
        transcript << entry << '\n';
        std::string line;
        std::getline(kept, line);
        EXPECT_EQ(inLines(entry), inLines(line));
        const QStringList keys = accessKeys(entry);
        const int shared = name == "menu-help" ? 2 : 1;  // as its items are given
        for (const QString& key : keys)
            EXPECT_LE(keys.count(key), shared) << name << fromQt(key);
        const QImage seen = isSkipped ? QImage() : fromAfar(window);
        if (place.x() + seen.width() > drawn.width())
            place = {0, place.y() + 80};
        painter.drawImage(place, seen);
        // The times of backups are those of now.
        const int most = name == "backups" ? 120 : hasSoftEdges() ? 24 : 60;
        EXPECT_LE(difference(seen, pictures.copy({place, seen.size()})), most) << name;
        place.rx() += seen.width();
    });
    std::string more;
    EXPECT_FALSE(std::getline(kept, more)) << more;
    painter.end();
    drawn.save(now + "/windows.now.png");
}

}  // namespace
}  // namespace tarnwell
