// How a cell shows what stands between its value and the device.
#pragma once

#include <QPainter>

#include "command/Standing.h"
#include "ui/looks/Colours.h"
#include "ui/looks/Measures.h"

namespace tarnwell {

/// Fills one corner of `cell` with a triangle: `corner` is one of the cell's own.
inline void drawCorner(QPainter& painter, const QPoint& corner, const QPoint& inwards,
                       const QColor& colour) {
    const int side = scaled(75);
    const QPoint points[] = {corner + QPoint(inwards.x() * side, 0), corner,
                             corner + QPoint(0, inwards.y() * side)};
    painter.save();
    painter.setPen(Qt::NoPen);
    painter.setBrush(colour);
    painter.drawPolygon(points, 3);
    painter.restore();
}

/// Of a value that waits to be written the lower right corner, of one that was not compared with
/// the device a bar on the left.
inline void drawStanding(QPainter& painter, const QRect& cell, Standing::Kind kind) {
    if (kind == Standing::Kind::Waiting)
        drawCorner(painter, cell.bottomRight() + QPoint(1, 1), {-1, -1}, colours::kText);
    else if (kind == Standing::Kind::Unknown)
        painter.fillRect(QRect(cell.left() + scaled(30), cell.top() + scaled(30), scaled(30),
                               cell.height() - 2 * scaled(30)),
                         colours::kUnknown);
}

}  // namespace tarnwell
