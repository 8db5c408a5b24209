#include "ui/desktop/ArchiveDialog.h"

#include <QAbstractItemView>
#include <QCompleter>
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
QStringList filtersOf(std::string_view filter) {
    QStringList filters;
    const QStringList parts = toQt(filter).split(QLatin1Char('|'));
    for (qsizetype index = 0; index + 1 < parts.size(); index += 2) {
        const QString pattern =
            parts[index + 1] == QLatin1String("*.*") ? QStringLiteral("*") : parts[index + 1];
        filters.append(QStringLiteral("%1 (%2)").arg(parts[index], pattern));
    }
    return filters;
}

/// Of the files that a filter shows; an archive's where it shows all.
QString suffixOf(const QString& filter) {
    const QString suffix = filter.section(QLatin1Char('*'), -1).chopped(1);
    return suffix.size() > 1 ? suffix : toQt(kArchiveExtension);
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

void FileDialog::done(int result) {
    QFileDialog::done(result);
    if (auto* name = findChild<QLineEdit*>(QStringLiteral("fileNameEdit")))
        name->completer()->popup()->hide();
}

ArchiveDialog::ArchiveDialog(QWidget* parent) : FileDialog(parent) {
    setOption(HideNameFilterDetails);
    setNameFilters(filtersOf(kArchiveFilter));
    connect(this, &QFileDialog::filterSelected, this,
            [this](const QString& filter) { setDefaultSuffix(suffixOf(filter)); });
    resize(scaledRect(0, 0, 8700, 5600).size());
}

std::optional<std::string> ArchiveDialog::ask(const FileRequest& request) {
    const bool save = request.kind == FileRequest::Kind::Save;
    setWindowTitle(toQt(request.title));
    setAcceptMode(save ? AcceptSave : AcceptOpen);
    setFileMode(request.kind == FileRequest::Kind::Open ? ExistingFile : AnyFile);
    offer(filtersOf(request.filter));
    setDefaultSuffix(suffixOf(selectedNameFilter()));
    setDirectory(startFolder(request.folder));
    propose(request);
    resize(size().boundedTo(screen()->availableGeometry().size() * kShareOfScreen));
    if (exec() != Accepted || selectedFiles().isEmpty())
        return std::nullopt;
    return pathFromQt(selectedFiles().constFirst());
}

/// What was selected stays so where it is offered again.
void ArchiveDialog::offer(const QStringList& filters) {
    const QString selected = selectedNameFilter();
    if (filters == nameFilters())
        return;
    setNameFilters(filters);
    for (const QString& filter : filters) {
        if (filter.startsWith(selected))
            selectNameFilter(filter);
    }
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
            setDefaultSuffix(suffixOf(selectedNameFilter()));
    }
    FileDialog::accept();
}

}  // namespace tarnwell
