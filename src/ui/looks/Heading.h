// Bold captions above the groups of a dialog.
#pragma once

#include <QLabel>

namespace tarnwell {

inline QLabel* headingLabel(const QString& text) {
    auto* label = new QLabel(text);
    QFont font = label->font();
    font.setBold(true);
    label->setFont(font);
    label->setAlignment(Qt::AlignCenter);
    return label;
}

}  // namespace tarnwell
