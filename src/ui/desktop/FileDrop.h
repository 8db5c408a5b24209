// Files that are dropped on a window.
#pragma once

#include <QWidget>
#include <functional>
#include <string>

namespace tarnwell {

/// Takes drops of one local file; whoever drags it keeps it.
class FileDrop final : public QObject {
    Q_OBJECT
  public:
    /// `open` gets the file's full path after the drop has ended.
    FileDrop(QWidget& window, std::function<void(const std::string&)> open);

  Q_SIGNALS:
    void dropped(const QString& path);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    std::function<void(const std::string&)> m_open;
};

}  // namespace tarnwell
