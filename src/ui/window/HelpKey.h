// F1: the manual opens at the topic of the window in use.
#pragma once

#include <QWidget>
#include <functional>

#include "core/HelpTopics.h"
#include "core/ProgramState.h"

namespace tarnwell {

/// The topic of the innermost of the widget and those around it that has one. The main window's
/// is that of its page.
Topic helpTopicOf(const QWidget& widget, Page page);

/// Sees the key wherever the focus is; a modal dialog keeps it from the main window's shortcuts.
class HelpKey final : public QObject {
  public:
    HelpKey(const ProgramState& state, std::function<void(Topic)> showTopic);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    const ProgramState& m_state;
    std::function<void(Topic)> m_showTopic;
};

}  // namespace tarnwell
