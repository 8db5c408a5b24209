// A setting's values over time, as a line of steps.
#pragma once

#include <QWidget>

#include "sets/HistoryTexts.h"

namespace tarnwell {

class CoursePicture final : public QWidget {
  public:
    CoursePicture();

    /// Nothing is drawn without points.
    void show(const std::optional<Course>& course, NumberMode mode);

    QSize sizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    std::vector<CoursePoint> m_points;
};

}  // namespace tarnwell
