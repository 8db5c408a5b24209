// What windows look like, compared.
#pragma once

#include <QPainter>
#include <QWidget>
#include <algorithm>

namespace tarnwell {

/// The window from afar, so that how the edges of letters are drawn makes little difference.
inline QImage fromAfar(QWidget& window) {
    const QImage seen = window.grab().toImage();
    return seen
        .scaled(seen.size() / (seen.width() < 100 ? 5 : 8), Qt::IgnoreAspectRatio,
                Qt::SmoothTransformation)
        .convertToFormat(QImage::Format_RGB32);
}

/// Whether the edges of letters are soft on this machine, as they are in the kept picture.
inline bool hasSoftEdges() {
    QImage letter(20, 20, QImage::Format_Grayscale8);
    letter.fill(Qt::white);
    QPainter(&letter).drawText(letter.rect(), QStringLiteral("O"));
    return std::any_of(letter.constBits(), letter.constBits() + letter.sizeInBytes(),
                       [](uchar grey) { return grey > 60 && grey < 200; });
}

/// How much the pictures differ at most, of 255.
inline int difference(const QImage& one, const QImage& other) {
    int greatest = 0;
    for (int at = 0; at < one.width() * one.height(); ++at) {
        const QRgb a = one.pixel(at % one.width(), at / one.width());
        const QRgb b = other.pixel(at % one.width(), at / one.width());
        greatest = std::max({greatest, std::abs(qRed(a) - qRed(b)), std::abs(qGreen(a) - qGreen(b)),
                             std::abs(qBlue(a) - qBlue(b))});
    }
    return greatest;
}

}  // namespace tarnwell
