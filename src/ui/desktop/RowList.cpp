#include "ui/desktop/RowList.h"

#include <QAction>
#include <QClipboard>
#include <QGuiApplication>
#include <QKeyEvent>
#include <utility>

#include "core/files/AtomicFile.h"
#include "ui/desktop/ArchiveDialog.h"
#include "ui/looks/Text.h"

namespace tarnwell {

namespace {

constexpr Message kListNotSaved{"The list could not be saved.", "E R R O R", BoxStyle::Exclamation};

class CopyKey final : public QObject {
  public:
    CopyKey(QAbstractItemView& table, RowTexts rows) : QObject(&table), m_rows(std::move(rows)) {
        table.installEventFilter(this);
    }

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() != QEvent::KeyPress ||
            !static_cast<QKeyEvent*>(event)->matches(QKeySequence::Copy))
            return QObject::eventFilter(watched, event);
        if (const std::string text = m_rows('\t'); !text.empty())
            QGuiApplication::clipboard()->setText(toQt(text));
        return true;
    }

  private:
    const RowTexts m_rows;
};

}  // namespace

void copyRowsByKey(QAbstractItemView& table, RowTexts rows) {
    new CopyKey(table, std::move(rows));
}

void nameRowsByKey(QAbstractItemView& table, const char* item, std::function<void()> name) {
    auto* action = new QAction(QStringLiteral("&Name This Byte..."), &table);
    action->setObjectName(QLatin1String(item));
    action->setShortcut(Qt::CTRL | Qt::Key_N);
    action->setShortcutContext(Qt::WidgetShortcut);
    QObject::connect(action, &QAction::triggered, &table, std::move(name));
    table.addAction(action);
    table.setContextMenuPolicy(Qt::ActionsContextMenu);
}

void saveRows(QWidget& window, User& user, const std::string& folder, const RowTexts& rows) {
    FileDialog dialog(&window, QStringLiteral("Save List As..."), pathToQt(folder),
                      QStringLiteral("Comma-Separated Values (*.csv)"));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setDefaultSuffix(QStringLiteral("csv"));
    if (dialog.exec() != QDialog::Accepted)
        return;
    AtomicFile file(pathFromQt(dialog.selectedFiles().constFirst()));
    file.Write(rows(','));
    if (!file.Commit())
        user.ShowBox(kListNotSaved);
}

}  // namespace tarnwell
