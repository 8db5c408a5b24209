// A table of rows of which one may be selected.
#pragma once

#include <QTreeWidget>

namespace tarnwell {

class RowTable final : public QTreeWidget {
  public:
    RowTable(const char* name, const QString& accessibleName, const QStringList& headings);

    /// Makes the columns as wide as what they hold; the width of them all, in pixels.
    int fitColumns();

    /// The selected row's number, or -1.
    int selectedRow() const {
        return indexOfTopLevelItem(selectedItems().isEmpty() ? nullptr : currentItem());
    }
};

}  // namespace tarnwell
