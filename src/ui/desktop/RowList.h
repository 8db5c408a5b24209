// The rows of a table outside the program: on the clipboard, and in a file.
#pragma once

#include <QAbstractItemView>
#include <functional>
#include <set>
#include <string>

#include "core/ProgramState.h"
#include "core/user/User.h"

namespace tarnwell {

/// Names bytes of a device, each asked for in front of a window, until the user gives up.
using NameBytes =
    std::function<void(TargetDevice device, const std::set<int>& addresses, QWidget& window)>;

/// The item and the key that name the bytes of the selected rows, in the table's context menu.
void nameRowsByKey(QAbstractItemView& table, const char* item, std::function<void()> name);

/// The rows as a text, a line each, with a separator between columns; empty if there are none.
using RowTexts = std::function<std::string(char separator)>;

/// The keys that copy put these rows on the clipboard, with tabulators; the table itself would copy
/// its current cell.
void copyRowsByKey(QAbstractItemView& table, RowTexts rows);

/// Asks for a file and saves the rows as comma-separated values,
/// whole or not at all. The user is told if that fails.
void saveRows(QWidget& window, User& user, const std::string& folder, const RowTexts& rows);

}  // namespace tarnwell
