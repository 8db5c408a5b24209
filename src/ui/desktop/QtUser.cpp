#include "ui/desktop/QtUser.h"

#include <QApplication>
#include <QInputDialog>
#include <QLabel>
#include <QMessageBox>

#include "ui/desktop/ArchiveDialog.h"
#include "ui/looks/Text.h"

namespace tarnwell {

namespace {

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

}  // namespace

void QtUser::setUpFileDialog() {
    m_fileDialog = new ArchiveDialog(m_window);
}

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
    return m_fileDialog->ask(request);
}

void QtUser::Beep() {
    QApplication::beep();
}

}  // namespace tarnwell
