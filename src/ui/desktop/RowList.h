// The rows of a table outside the program: on the clipboard, and in a file.
#pragma once

#include <QAbstractItemView>
#include <functional>
#include <string>

#include "core/user/User.h"

namespace tarnwell {

/// The rows as a text, a line each, with a separator between columns; empty if there are none.
using RowTexts = std::function<std::string(char separator)>;

/// The keys that copy put these rows on the clipboard, with tabulators; the table itself would copy
/// its current cell.
void copyRowsByKey(QAbstractItemView& table, RowTexts rows);

/// Asks for a file and saves the rows as comma-separated values,
/// whole or not at all. The user is told if that fails.
void saveRows(QWidget& window, User& user, const std::string& folder, const RowTexts& rows);

}  // namespace tarnwell
