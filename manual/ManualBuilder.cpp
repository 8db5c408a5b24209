// Composes the manual's pages and takes the pictures of the program for them.
// Usage: manual_builder SOURCE-FOLDER TARGET-FOLDER
#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QHash>
#include <QLineEdit>
#include <QMap>
#include <QPixmap>
#include <QRegularExpression>
#include <QSaveFile>
#include <QStyle>
#include <QStyleFactory>
#include <QTemporaryDir>
#include <QTreeView>
#include <algorithm>
#include <cstdio>
#include <stdexcept>

#include "core/HelpTopics.h"
#include "manual/Tables.h"
#include "support/Gallery.h"
#include "ui/looks/Text.h"

namespace tarnwell::manual {

namespace {

struct BuildError : std::runtime_error {
    explicit BuildError(const QString& what) : std::runtime_error(what.toStdString()) {}
};

QString readText(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw BuildError(path + QStringLiteral(": ") + file.errorString());
    return QString::fromUtf8(file.readAll());
}

void writeText(const QString& path, const QString& text) {
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(text.toUtf8()) < 0 || !file.commit())
        throw BuildError(path + QStringLiteral(": ") + file.errorString());
}

QString fileOf(const TopicInfo& info) {
    return toQt(info.name) + QStringLiteral(".html");
}

/// A list of all topics by chapters, with the page `here` marked; on the first page none is.
QString contents(const TopicInfo* here) {
    QString list;
    bool open = false;
    for (const TopicInfo& info : kTopics) {
        if (here == nullptr && info.topic == Topic::Contents)
            continue;
        if (!info.chapter.empty()) {
            list += open ? QStringLiteral("</ol></li>\n") : QString();
            list += QStringLiteral("<li><span class=\"chapter\">%1</span><ol>\n")
                        .arg(toQt(info.chapter));
            open = true;
        }
        list += QStringLiteral("<li><a href=\"%1\"%2>%3</a></li>\n")
                    .arg(fileOf(info),
                         &info == here ? QStringLiteral(" aria-current=\"page\"") : QString(),
                         toQt(Escaped(info.title)));
    }
    return QStringLiteral("<ol>\n") + list + QStringLiteral("</ol></li></ol>");
}

QString turnLink(const TopicInfo& info, const char* relation, const char* caption) {
    return QStringLiteral("<a class=\"%1\" rel=\"%1\" href=\"%2\">%3: %4</a>")
        .arg(QLatin1String(relation), fileOf(info), QLatin1String(caption),
             toQt(Escaped(info.title)));
}

QString neighbours(const TopicInfo& info) {
    QString links;
    if (&info != &kTopics.front())
        links += turnLink(*(&info - 1), "prev", "Back");
    if (&info != &kTopics.back())
        links += turnLink(*(&info + 1), "next", "Next");
    return links;
}

/// Fills in what stands in {{double braces}}: a word and what it is about.
template <typename Replace>
QString filled(const QString& text, Replace replace) {
    static const QRegularExpression kField(
        QStringLiteral("\\{\\{([a-z]+)(?: ([^}|]+))?(?:\\|([^}]*))?\\}\\}"));
    QString result;
    qsizetype done = 0;
    for (auto fields = kField.globalMatch(text); fields.hasNext();) {
        const QRegularExpressionMatch field = fields.next();
        result += text.mid(done, field.capturedStart() - done);
        result += replace(field.captured(1), field.captured(2), field.captured(3));
        done = field.capturedEnd();
    }
    return result + text.mid(done);
}

/// Gives each message of a page a place of its own and puts the alphabetical index of them all
/// where {{index}} stands. A box's title, in brackets, is none.
QString indexed(QString page) {
    const QString field = QStringLiteral("{{index}}");
    if (!page.contains(field))
        return page;
    static const QRegularExpression kMessage(
        QStringLiteral("(?<!\\()<span class=\"msg\">(.*?)</span>"),
        QRegularExpression::DotMatchesEverythingOption);
    static const QRegularExpression kBreaks(QStringLiteral("(?:<br/>)+"));
    QMap<QString, QString> entries;
    QString result;
    qsizetype done = 0;
    for (auto messages = kMessage.globalMatch(page); messages.hasNext();) {
        const QRegularExpressionMatch message = messages.next();
        const QString text = message.captured(1).replace(kBreaks, QStringLiteral(" ")).simplified();
        const QString id = QStringLiteral("m%1").arg(entries.size() + 1);
        result += page.mid(done, message.capturedStart() - done);
        done = message.capturedStart();
        if (entries.contains(text))
            continue;
        result += QStringLiteral("<span id=\"%1\"></span>").arg(id);
        entries.insert(text, QStringLiteral("<li><a href=\"#%1\">%2</a></li>\n").arg(id, text));
    }
    QStringList lines = entries.values();
    std::ranges::sort(lines, {},
                      [&](const QString& line) { return line.section('>', 2).toLower(); });
    result += page.mid(done);
    return result.replace(
        field, QStringLiteral("<ul class=\"index\">\n%1</ul>").arg(lines.join(QString())));
}

/// A file dialog shows an example's folder and time, so that each build makes the same picture.
void steady(const QFileDialog& dialog) {
    auto* folder = dialog.findChild<QComboBox*>(QStringLiteral("lookInCombo"));
    auto* files = dialog.findChild<QTreeView*>(QStringLiteral("treeView"));
    auto* name = dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
    constexpr int kDateColumn = 3;
    if (files != nullptr)
        files->hideColumn(kDateColumn);
    if (folder != nullptr)
        folder->setItemText(folder->currentIndex(), QStringLiteral("/home/owner/Documents"));
    if (name != nullptr && dialog.acceptMode() == QFileDialog::AcceptSave) {
        name->setText(QStringLiteral("Tarnwell-24 Nov 2026-195230"));
        name->selectAll();
    }
}

QPalette darkPalette() {
    const QColor text(0xf0, 0xf0, 0xf0);
    const QColor background(0x2b, 0x2b, 0x2b);
    QPalette palette(text, background.lighter(120), background.lighter(), background.darker(),
                     background.lighter(), text, Qt::white, background.darker(140), background);
    palette.setColor(QPalette::Highlight, QColor(0x1a, 0x6a, 0xc0));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    return palette;
}

class Manual {
  public:
    Manual(QDir source, QDir target) : m_source(std::move(source)), m_target(std::move(target)) {}

    void takePictures() {
        m_target.mkpath(QStringLiteral("pictures"));
        QString unwritten;
        WalkGallery([&](const std::string& name, QWidget& window) {
            if (const auto* dialog = qobject_cast<QFileDialog*>(&window))
                steady(*dialog);
            // no exception may leave an event of Qt's
            if (!take(window, toQt(name)))
                unwritten = toQt(name);
            if (name == "compare" || name == "i2c-bus") {
                window.setPalette(darkPalette());
                if (!take(window, toQt(name) + QStringLiteral("-dark")))
                    unwritten = toQt(name);
                window.setPalette({});
            }
        });
        if (!unwritten.isEmpty())
            throw BuildError(QStringLiteral("the picture %1 cannot be written").arg(unwritten));
    }

    bool take(QWidget& window, const QString& name) {
        const QPixmap picture = window.grab();
        m_pictures.insert(name, picture.deviceIndependentSize().toSize());
        return picture.save(m_target.filePath(QStringLiteral("pictures/%1.png").arg(name)));
    }

    void writePages() const {
        const QString pageTemplate = readText(m_source.filePath(QStringLiteral("template.html")));
        for (const TopicInfo& info : kTopics)
            writeText(m_target.filePath(fileOf(info)), page(pageTemplate, info));
        writeText(m_target.filePath(QStringLiteral("style.css")),
                  readText(m_source.filePath(QStringLiteral("style.css"))));
    }

  private:
    QString page(const QString& pageTemplate, const TopicInfo& info) const {
        const QString path = m_source.filePath(QStringLiteral("pages/") + fileOf(info));
        const QString body = indexed(readText(path));
        return filled(pageTemplate, [&](const QString& field, const QString&, const QString&) {
            if (field == QLatin1String("title"))
                return toQt(Escaped(info.title));
            if (field == QLatin1String("contents"))
                return contents(&info);
            if (field == QLatin1String("neighbours"))
                return neighbours(info);
            return filled(
                body, [&](const QString& word, const QString& about, const QString& text) {
                    const QString html = fieldOf(word, about, text);
                    if (html.isEmpty())
                        throw BuildError(
                            QStringLiteral("%1: there is no %2 %3").arg(path, word, about));
                    return html;
                });
        });
    }

    QString fieldOf(const QString& word, const QString& about, const QString& text) const {
        if (word == QLatin1String("picture"))
            return figure(about, text);
        if (word == QLatin1String("settings"))
            return toQt(SettingsTable(about.toStdString()));
        if (word == QLatin1String("groups"))
            return toQt(GroupsTable());
        if (word == QLatin1String("wiring"))
            return toQt(WiringTable());
        if (word == QLatin1String("connector"))
            return toQt(ConnectorDrawing());
        if (word == QLatin1String("pins"))
            return toQt(PinsTable());
        if (word == QLatin1String("topics"))
            return contents(nullptr);
        if (word == QLatin1String("version"))
            return QStringLiteral("%1.%2.%3")
                .arg(TARNWELL_VERSION_MAJOR)
                .arg(TARNWELL_VERSION_MINOR)
                .arg(TARNWELL_VERSION_REVISION);
        return {};
    }

    QString figure(const QString& name, const QString& caption) const {
        const auto size = m_pictures.constFind(name);
        if (size == m_pictures.constEnd() || caption.isEmpty())
            return {};
        return QStringLiteral(
                   "<figure><img src=\"pictures/%1.png\" width=\"%2\" height=\"%3\" alt=\"%4\"/>"
                   "<figcaption>%4</figcaption></figure>")
            .arg(name)
            .arg(size->width())
            .arg(size->height())
            .arg(caption);
    }

    QDir m_source;
    QDir m_target;
    QHash<QString, QSize> m_pictures;
};

/// The same look on every machine, on a screen on which every window has its full size, and none of
/// the owner's files in the pictures.
void fixSurroundings(const QDir& home, const QByteArray& screen) {
    home.mkpath(QStringLiteral("Documents"));
    for (const char* variable : {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME"})
        qputenv(variable, QFile::encodeName(home.path()));
    qputenv("LC_ALL", "C.UTF-8");
    qputenv("QT_QPA_PLATFORM", "offscreen:configfile=" + screen);
    qputenv("QT_SCALE_FACTOR", "2");
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
}

/// The offscreen platform warns of what it cannot do, again and again.
void showGraveMessagesOnly(QtMsgType type, const QMessageLogContext& /*place*/,
                           const QString& text) {
    if (type == QtCriticalMsg || type == QtFatalMsg)
        std::fprintf(stderr, "manual_builder: %s\n", qUtf8Printable(text));
}

void fixLook() {
    QStyle* const fusion = QStyleFactory::create(QStringLiteral("Fusion"));
    QApplication::setStyle(fusion);
    QApplication::setPalette(fusion->standardPalette());
    QApplication::setFont(QFont(QStringLiteral("DejaVu Sans"), 9));
}

}  // namespace

}  // namespace tarnwell::manual

int main(int argc, char** argv) {
    using namespace tarnwell::manual;
    if (argc != 3) {
        std::fputs("Usage: manual_builder SOURCE-FOLDER TARGET-FOLDER\n", stderr);
        return 2;
    }
    qInstallMessageHandler(showGraveMessagesOnly);
    const QTemporaryDir folder;
    fixSurroundings(QDir(folder.filePath(QStringLiteral("owner"))),
                    QByteArray(argv[1]) + "/screen.json");
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("tarnwell"));
    fixLook();
    try {
        Manual manual(QDir(QFile::decodeName(argv[1])), QDir(QFile::decodeName(argv[2])));
        manual.takePictures();
        manual.writePages();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "manual_builder: %s\n", error.what());
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
