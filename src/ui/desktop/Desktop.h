// The desktop as the program needs it: other programs, kernel modules, date and time, a timer.
#pragma once

#include <QTimer>

#include "core/Calendar.h"
#include "core/Programs.h"
#include "core/StatusBar.h"

namespace tarnwell {

class Desktop final : public Programs, public Calendar {
  public:
    std::string ProgramFolder() const override;
    bool Exists(const std::string& path) const override;
    bool OpenInViewer(const std::string& path) override;
    bool Start(const std::string& path) override;
    std::string KernelModulePath(const std::string& module) const override;
    std::string ShortDate() const override;
    std::string TimeWithSeconds() const override;
    std::string Timestamp() const override;
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
