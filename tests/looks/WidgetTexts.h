// What a widget shows as text, and whether it has the room for it.
#pragma once

#include <QGroupBox>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QStyleOptionGroupBox>
#include <QTabBar>
#include <vector>

#include "ui/looks/Fitted.h"
#include "ui/widgets/GridView.h"
#include "ui/widgets/SettingCell.h"

namespace tarnwell {

/// A text of a widget, the room that it has there and the size that it needs.
struct Text {
    QString text;
    QRect room;
    QSize needed;
    double narrowest = 1;  ///< how far it may be condensed
};

using Texts = std::vector<Text>;

inline constexpr double kNarrowest = 0.7;  // what a condensed text is still read at

inline Text textOf(const QWidget& widget, const QString& text, const QRect& room,
                   double narrowest = 1) {
    return {text, room, widget.fontMetrics().size(Qt::TextShowMnemonic, text), narrowest};
}

inline Texts ofFittedLabel(const FittedLabel& label) {
    return {textOf(label, label.text(), label.contentsRect(), kNarrowest)};
}

inline Texts ofLabel(const QLabel& label) {
    Text text = textOf(label, label.text(), label.contentsRect());
    text.needed =
        label.wordWrap() ? QSize(0, label.heightForWidth(label.width())) : label.sizeHint();
    return {text};
}

inline Texts ofSettingCell(const SettingCell& cell) {
    return {textOf(cell, cell.text(), cell.rect().adjusted(2, 1, -2, -1), kNarrowest)};
}

inline Texts ofButton(const QAbstractButton& button) {
    QStyleOptionButton option;
    option.initFrom(&button);
    const auto part = button.inherits("QCheckBox")      ? QStyle::SE_CheckBoxContents
                      : button.inherits("QRadioButton") ? QStyle::SE_RadioButtonContents
                                                        : QStyle::SE_PushButtonContents;
    return {textOf(button, button.text(), button.style()->subElementRect(part, &option, &button))};
}

inline Texts ofGroupBox(const QGroupBox& box) {
    QStyleOptionGroupBox option;
    option.initFrom(&box);
    option.text = box.title();
    option.subControls = QStyle::SC_GroupBoxLabel;
    const QRect room =
        box.style()->subControlRect(QStyle::CC_GroupBox, &option, QStyle::SC_GroupBoxLabel, &box);
    return {textOf(box, box.title(), box.rect() & room)};
}

inline Texts ofLineEdit(const QLineEdit& edit) {
    // The names of a file are as long as the user likes.
    const bool bounded = edit.objectName() != QLatin1String("fileNameEdit");
    return {textOf(edit, edit.text(), edit.rect(), bounded ? 1 : 0)};
}

inline Texts ofTabs(const QTabBar& tabs) {
    Texts texts;
    for (int tab = 0; tab < tabs.count(); ++tab)
        texts.push_back(textOf(tabs, tabs.tabText(tab), tabs.tabRect(tab)));
    return texts;
}

template <typename Menu>
Texts ofMenu(const Menu& menu) {
    Texts texts;
    for (QAction* action : menu.actions()) {
        if (action->isVisible() && action->isEnabled())
            texts.push_back(textOf(menu, action->text(), menu.actionGeometry(action)));
    }
    return texts;
}

inline Texts ofGrid(const GridView& grid) {
    Texts texts;
    const int rows = grid.rowAt(grid.viewport()->height() - 4);
    for (int cell = 0; cell < kGridColumns * rows; ++cell) {
        const QModelIndex index = grid.model()->index(cell / kGridColumns, cell % kGridColumns);
        const QRect room = grid.visualRect(index);
        const bool covered = grid.viewport()->childAt(room.center()) != nullptr;
        if (!covered)
            texts.push_back(textOf(grid, index.data().toString(),
                                   room.translated(grid.viewport()->pos()), kNarrowest));
    }
    return texts;
}

/// What `read` finds in a widget of its type, nothing in any other.
template <typename Widget>
Texts ifIs(const QWidget& widget, Texts (*read)(const Widget&)) {
    const auto* typed = qobject_cast<const Widget*>(&widget);
    return typed != nullptr ? read(*typed) : Texts();
}

/// By the widget's own measures; of a grid, those of the cells that are seen.
inline Texts textsOf(const QWidget& widget) {
    // The special ones stand before those that they are made of.
    for (const Texts& texts :
         {ifIs(widget, ofFittedLabel), ifIs(widget, ofLabel), ifIs(widget, ofSettingCell),
          ifIs(widget, ofButton), ifIs(widget, ofGroupBox), ifIs(widget, ofLineEdit),
          ifIs(widget, ofTabs), ifIs(widget, ofMenu<QMenu>), ifIs(widget, ofMenu<QMenuBar>),
          ifIs(widget, ofGrid)}) {
        if (!texts.empty())
            return texts;
    }
    return {};
}

}  // namespace tarnwell
