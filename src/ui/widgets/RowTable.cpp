#include "ui/widgets/RowTable.h"

#include <QHeaderView>

namespace tarnwell {

RowTable::RowTable(const char* name, const QString& accessibleName, const QStringList& headings) {
    setObjectName(QLatin1String(name));
    setAccessibleName(accessibleName);
    setHeaderLabels(headings);
    setRootIsDecorated(false);
    setAllColumnsShowFocus(true);
    setTabKeyNavigation(false);
}

int RowTable::fitColumns() {
    for (int column = 0; column < columnCount(); ++column)
        resizeColumnToContents(column);
    return header()->length();
}

}  // namespace tarnwell
