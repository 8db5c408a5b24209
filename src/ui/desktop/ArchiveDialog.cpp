#include "ui/desktop/ArchiveDialog.h"

#include <QDir>
#include <QLineEdit>
#include <QListView>
#include <QScreen>
#include <QStandardPaths>

#include "core/files/UserFolders.h"
#include "ui/looks/Measures.h"
#include "ui/looks/Text.h"

namespace tarnwell {

namespace {

/// Leaves room for the window manager's frame.
constexpr double kShareOfScreen = 0.9;

/// Qt takes the pattern from the last brackets and is told to show what stands before them.
QStringList archiveFilters() {
    QStringList filters;
    const QStringList parts = toQt(kArchiveFilter).split(QLatin1Char('|'));
    for (qsizetype index = 0; index + 1 < parts.size(); index += 2) {
        const QString pattern =
            parts[index + 1] == QLatin1String("*.*") ? QStringLiteral("*") : parts[index + 1];
        filters.append(QStringLiteral("%1 (%2)").arg(parts[index], pattern));
    }
    return filters;
}

QString startFolder(const std::string& folder) {
    QString wanted = pathToQt(folder);
    if (!wanted.isEmpty() && QDir(wanted).exists())
        return wanted;
    const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    return QDir(documents).exists() ? documents : pathToQt(HomeFolder());
}

/// A dotted date would pass for an extension, so the dialog would not add its own.
QString proposedName(const FileRequest& request) {
    QString name = pathToQt(request.fileName);
    if (request.kind == FileRequest::Kind::Save && name.contains(QLatin1Char('.')))
        name += toQt(kArchiveExtension);
    return name;
}

}  // namespace

ArchiveDialog::ArchiveDialog(QWidget* parent) : QFileDialog(parent) {
    setOption(HideNameFilterDetails);
    setNameFilters(archiveFilters());
    resize(scaledRect(0, 0, 8700, 5600).size());
}

std::optional<std::string> ArchiveDialog::ask(const FileRequest& request) {
    const bool save = request.kind == FileRequest::Kind::Save;
    setWindowTitle(toQt(request.title));
    setAcceptMode(save ? AcceptSave : AcceptOpen);
    setFileMode(request.kind == FileRequest::Kind::Open ? ExistingFile : AnyFile);
    setDefaultSuffix(toQt(kArchiveExtension));
    setDirectory(startFolder(request.folder));
    propose(request);
    resize(size().boundedTo(screen()->availableGeometry().size() * kShareOfScreen));
    if (exec() != Accepted || selectedFiles().isEmpty())
        return std::nullopt;
    return pathFromQt(selectedFiles().constFirst());
}

/// The empty name would leave what was picked before.
void ArchiveDialog::propose(const FileRequest& request) {
    if (auto* files = findChild<QListView*>(QStringLiteral("listView")))
        files->selectionModel()->clear();
    if (auto* name = findChild<QLineEdit*>(QStringLiteral("fileNameEdit")))
        name->clear();
    selectFile(proposedName(request));
}

/// Qt gives the extension to every name without a dot, also to that of a file which is there.
void ArchiveDialog::accept() {
    if (acceptMode() == AcceptOpen) {
        setDefaultSuffix({});
        const QStringList named = selectedFiles();
        if (named.size() != 1 || !QFileInfo::exists(named.constFirst()))
            setDefaultSuffix(toQt(kArchiveExtension));
    }
    QFileDialog::accept();
}

}  // namespace tarnwell
