// What a widget shows as text, and whether it has the room for it.
#pragma once

#include <QWidget>
#include <vector>

namespace tarnwell {

/// A text of a widget, the room that it has there and the size that it needs.
struct Text {
    QString text;
    QRect room;
    QSize needed;
    double narrowest = 1;  ///< how far it may be condensed
};

/// By the widget's own measures; of a grid, those of the cells that are seen.
std::vector<Text> textsOf(const QWidget& widget);

}  // namespace tarnwell
