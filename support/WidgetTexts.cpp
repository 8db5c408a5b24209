#include "support/WidgetTexts.h"

#include <QGroupBox>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QStyleOptionGroupBox>
#include <QTabBar>

#include "ui/Fitted.h"
#include "ui/GridView.h"
#include "ui/SettingCell.h"

namespace tarnwell {

namespace {

constexpr double kNarrowest = 0.7;  // what a condensed text is still read at

}  // namespace

std::vector<Text> textsOf(const QWidget& widget) {
    std::vector<Text> texts;
    const auto add = [&](const QString& text, const QRect& room, double narrowest = 1) {
        texts.push_back(
            {text, room, widget.fontMetrics().size(Qt::TextShowMnemonic, text), narrowest});
    };
    const auto addActions = [&](const auto& menu) {
        for (QAction* action : menu.actions())
            add(action->isVisible() && action->isEnabled() ? action->text() : QString(),
                menu.actionGeometry(action));
    };
    if (const auto* label = qobject_cast<const QLabel*>(&widget)) {
        const bool fitted = qobject_cast<const FittedLabel*>(label) != nullptr;
        add(label->text(), label->contentsRect(), fitted ? kNarrowest : 1);
        if (!fitted && !label->text().isEmpty())
            texts.back().needed = label->wordWrap()
                                      ? QSize(0, label->heightForWidth(label->width()))
                                      : label->sizeHint();
    } else if (const auto* cell = qobject_cast<const SettingCell*>(&widget)) {
        add(cell->text(), cell->rect().adjusted(2, 1, -2, -1), kNarrowest);
    } else if (const auto* button = qobject_cast<const QAbstractButton*>(&widget)) {
        QStyleOptionButton option;
        option.initFrom(button);
        const auto part = button->inherits("QCheckBox")      ? QStyle::SE_CheckBoxContents
                          : button->inherits("QRadioButton") ? QStyle::SE_RadioButtonContents
                                                             : QStyle::SE_PushButtonContents;
        add(button->text(), button->style()->subElementRect(part, &option, button));
    } else if (const auto* box = qobject_cast<const QGroupBox*>(&widget)) {
        QStyleOptionGroupBox option;
        option.initFrom(box);
        option.text = box->title();
        option.subControls = QStyle::SC_GroupBoxLabel;
        add(box->title(),
            box->rect() & box->style()->subControlRect(QStyle::CC_GroupBox, &option,
                                                       QStyle::SC_GroupBoxLabel, box));
    } else if (const auto* edit = qobject_cast<const QLineEdit*>(&widget)) {
        // The names of a file are long as the user likes.
        const bool bounded = edit->objectName() != QLatin1String("fileNameEdit");
        add(edit->text(), edit->rect(), bounded ? 1 : 0);
    } else if (const auto* tabs = qobject_cast<const QTabBar*>(&widget)) {
        for (int tab = 0; tab < tabs->count(); ++tab)
            add(tabs->tabText(tab), tabs->tabRect(tab));
    } else if (const auto* menu = qobject_cast<const QMenu*>(&widget)) {
        addActions(*menu);
    } else if (const auto* bar = qobject_cast<const QMenuBar*>(&widget)) {
        addActions(*bar);
    } else if (const auto* grid = qobject_cast<const GridView*>(&widget)) {
        for (int cellNumber = 0;
             cellNumber < kGridColumns * grid->rowAt(grid->viewport()->height() - 4);
             ++cellNumber) {
            const QModelIndex index =
                grid->model()->index(cellNumber / kGridColumns, cellNumber % kGridColumns);
            const QRect room = grid->visualRect(index);
            const bool covered = grid->viewport()->childAt(room.center()) != nullptr;
            add(covered ? QString() : index.data().toString(),
                room.translated(grid->viewport()->pos()), kNarrowest);
        }
    }
    return texts;
}

}  // namespace tarnwell
