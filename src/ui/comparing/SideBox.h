// A side of the comparison as a list: what it may be, and below that the files that were used last.
#pragma once

#include "program/Program.h"
#include "ui/widgets/ElidingBox.h"

class QBoxLayout;

namespace tarnwell {

/// A step through the closed list opens it: it would read a device or ask for a file at each.
class SideBox final : public ElidingBox {
    Q_OBJECT
  public:
    SideBox(Side side, const Program& program);

    /// Goes behind its caption.
    void addTo(QBoxLayout& layout);

    /// Shows what the side is, and the files of now.
    void showSide();

  Q_SIGNALS:
    /// The user wants the side to be that; a file by its row in the list of those of its kind.
    void chosen(tarnwell::Source source, std::optional<int> file);

  protected:
    void keyPressEvent(QKeyEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

  private:
    void addFiles(const QString& kind, Source source, const RecentFiles& files);

    const Side m_side;
    const Program& m_program;
};

}  // namespace tarnwell
