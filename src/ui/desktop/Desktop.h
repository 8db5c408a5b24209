// The desktop as the program needs it: other programs, kernel modules, date and time, a timer.
#pragma once

#include <QTimer>

#include "core/Calendar.h"
#include "core/run/Programs.h"
#include "core/user/StatusBar.h"

namespace tarnwell {

class Desktop final : public Programs, public Calendar {
  public:
    ~Desktop() override;
    std::string ProgramFolder() const override;
    bool Exists(const std::string& path) const override;
    void OpenInViewer(const std::string& path, std::function<void()> failed) override;
    bool Start(const std::string& path) override;
    bool MoveToTrash(const std::string& path) override;
    std::string KernelModulePath(const std::string& module) const override;
    std::string ShortDate() const override;
    std::string TimeWithSeconds() const override;
    std::string Timestamp() const override;
    std::string ZonedTime() const override;

  private:
    QObject m_openers;  ///< parent of the processes that may still tell that they failed
};

/// `MsgTimer`.
class QtTimer final : public Timer {
  public:
    QtTimer();
    void Start(std::chrono::milliseconds interval) override { m_timer.start(interval); }
    void Stop() override { m_timer.stop(); }
    QTimer& timer() { return m_timer; }

  private:
    QTimer m_timer;
};

}  // namespace tarnwell
