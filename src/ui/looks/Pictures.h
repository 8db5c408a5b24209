// The program's own pictures, drawn at the size of the user's font.
#pragma once

#include <QLabel>

namespace tarnwell {

/// A label with the picture of a resource, `side` twips square.
QLabel* pictureLabel(const char* resource, const char* name, int side, QWidget* parent);

}  // namespace tarnwell
