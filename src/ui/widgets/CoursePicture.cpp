#include "ui/widgets/CoursePicture.h"

#include <QPainter>
#include <QPainterPath>
#include <algorithm>

#include "ui/looks/Measures.h"
#include "ui/looks/Text.h"

namespace tarnwell {

namespace {

constexpr int kHeight = 480;
constexpr int kEdge = 3;

}  // namespace

CoursePicture::CoursePicture() {
    setObjectName(QStringLiteral("picCourse"));
    setAccessibleName(QStringLiteral("Course of the setting"));
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void CoursePicture::show(const std::optional<Course>& course, NumberMode mode) {
    m_points = course ? course->points : std::vector<CoursePoint>();
    setVisible(m_points.size() > 1);
    QString text;
    for (const CoursePoint& point : m_points)
        text += (text.isEmpty() ? "" : ", ") + toQt(ValueText(*course->named, point.value, mode));
    setAccessibleDescription(course ? toQt(TitleOf(*course->named)) + ": " + text : QString());
    setToolTip(accessibleDescription());
    update();
}

QSize CoursePicture::sizeHint() const {
    return {scaled(2 * kHeight), scaled(kHeight)};
}

/// Each value stands until the next one; equally far apart, since changes come in bunches.
void CoursePicture::paintEvent(QPaintEvent* /*event*/) {
    if (m_points.size() < 2)
        return;
    const auto [low, high] = std::ranges::minmax(m_points, {}, &CoursePoint::value);
    const double range = std::max(1, high.value - low.value);
    const QRectF area = QRectF(rect()).adjusted(kEdge, kEdge, -kEdge, -kEdge);
    const double step = area.width() / static_cast<double>(m_points.size());
    QPainterPath path;
    double x = area.left();
    for (const CoursePoint& point : m_points) {
        const double y = area.bottom() - (point.value - low.value) / range * area.height();
        x == area.left() ? path.moveTo(x, y) : path.lineTo(x, y);
        x += step;
        path.lineTo(x, y);
    }
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(palette().color(QPalette::WindowText), 2));
    painter.drawPath(path);
}

}  // namespace tarnwell
