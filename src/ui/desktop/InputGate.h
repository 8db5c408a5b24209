// Drops the user's input while a command works on a whole device.
#pragma once

#include <QElapsedTimer>
#include <QObject>

namespace tarnwell {

/// While it is shut, windows paint themselves and answer the window manager, but no input is
/// acted on, then or later.
class InputGate final : public QObject {
    Q_OBJECT
  public:
    /// Shuts the gate; lets pending events through at once, then ten times a second, which is as
    /// often as a person sees a number change.
    void keepPainting();

    bool isShut() const { return m_shut; }

    /// Opens the gate after the input that is still on its way was dropped.
    void open();

  Q_SIGNALS:
    /// What is painted now is seen.
    void painting();

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    bool m_shut = false;
    QElapsedTimer m_sinceEvents;
};

}  // namespace tarnwell
