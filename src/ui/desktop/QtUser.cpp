#include "ui/desktop/QtUser.h"

#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QInputDialog>
#include <QLabel>
#include <QMessageBox>
#include <QScreen>
#include <QStandardPaths>

#include "core/UserFolders.h"
#include "ui/looks/Measures.h"
#include "ui/looks/Text.h"

namespace tarnwell {

namespace {

/// Leaves room for the window manager's frame.
constexpr double kShareOfScreen = 0.9;

struct StyleParts {
    QMessageBox::Icon icon;
    const char* iconName;
    QMessageBox::StandardButtons buttons;
    QMessageBox::StandardButton defaultButton;
};

StyleParts partsOf(BoxStyle style) {
    constexpr auto yesNo = QMessageBox::Yes | QMessageBox::No;
    switch (style) {
        case BoxStyle::Critical:
            return {QMessageBox::Critical, "Error", QMessageBox::Ok, QMessageBox::Ok};
        case BoxStyle::Exclamation:
            return {QMessageBox::Warning, "Warning", QMessageBox::Ok, QMessageBox::Ok};
        case BoxStyle::Information:
            return {QMessageBox::Information, "Information", QMessageBox::Ok, QMessageBox::Ok};
        case BoxStyle::YesNoQuestion:
            return {QMessageBox::Question, "Question", yesNo, QMessageBox::Yes};
        case BoxStyle::YesNoExclamation:
            return {QMessageBox::Warning, "Warning", yesNo, QMessageBox::Yes};
        case BoxStyle::OkCancelExclamation:
            break;
    }
    return {QMessageBox::Warning, "Warning", QMessageBox::Ok | QMessageBox::Cancel,
            QMessageBox::Cancel};
}

Answer answerOf(int button) {
    switch (button) {
        case QMessageBox::Yes:
            return Answer::Yes;
        case QMessageBox::No:
            return Answer::No;
        case QMessageBox::Ok:
            return Answer::Ok;
        default:
            return Answer::Cancel;
    }
}

/// Qt takes the pattern from the last brackets and is told to show what stands before them.
QStringList nameFilters() {
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

QWidget* QtUser::parent() const {
    QWidget* dialog = QApplication::activeModalWidget();
    return dialog != nullptr ? dialog : m_window;
}

bool QtUser::isBusy() const {
    return m_gate.isShut() || QApplication::activeModalWidget() != nullptr;
}

Answer QtUser::ShowBox(const Box& box) {
    m_gate.open();
    const StyleParts parts = partsOf(box.style);
    QMessageBox messageBox(parts.icon, toQt(box.title), linesToQt(box.text), parts.buttons,
                           parent());
    messageBox.setTextFormat(Qt::PlainText);
    messageBox.setDefaultButton(box.defaultButton == DefaultButton::No ? QMessageBox::No
                                                                       : parts.defaultButton);
    if (auto* icon = messageBox.findChild<QLabel*>(QStringLiteral("qt_msgboxex_icon_label")))
        icon->setAccessibleName(QLatin1String(parts.iconName));
    if (!box.details.empty())
        messageBox.setDetailedText(linesToQt(box.details));
    return answerOf(messageBox.exec());
}

std::optional<std::string> QtUser::AskText(const TextRequest& request) {
    m_gate.open();
    bool accepted = false;
    const QString answer =
        QInputDialog::getText(parent(), toQt(request.title), toQt(request.prompt),
                              QLineEdit::Normal, toQt(request.answer), &accepted);
    if (!accepted)
        return std::nullopt;
    return fromQt(answer);
}

std::optional<std::string> QtUser::AskFile(const FileRequest& request) {
    m_gate.open();
    const bool save = request.kind == FileRequest::Kind::Save;
    QFileDialog dialog(parent(), toQt(request.title));
    dialog.setAcceptMode(save ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    dialog.setFileMode(request.kind == FileRequest::Kind::Open ? QFileDialog::ExistingFile
                                                               : QFileDialog::AnyFile);
    dialog.setOption(QFileDialog::HideNameFilterDetails);
    dialog.setNameFilters(nameFilters());
    dialog.setDefaultSuffix(toQt(kArchiveExtension.substr(1)));
    dialog.setDirectory(startFolder(request.folder));
    dialog.selectFile(proposedName(request));
    const QSize screen = dialog.screen()->availableGeometry().size();
    dialog.resize(scaledRect(0, 0, 8700, 5600).size().boundedTo(screen * kShareOfScreen));
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return std::nullopt;
    return pathFromQt(dialog.selectedFiles().constFirst());
}

void QtUser::Beep() {
    QApplication::beep();
}

}  // namespace tarnwell
