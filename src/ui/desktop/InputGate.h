// Drops the user's input while a command works on a whole device, but for the wish to stop it.
#pragma once

#include <QAbstractButton>
#include <QElapsedTimer>

namespace tarnwell {

/// While it is shut, windows paint themselves and answer the window manager, but no input is
/// acted on, then or later.
class InputGate final : public QObject {
    Q_OBJECT
  public:
    /// Shuts the gate; lets pending events through at once, then ten times a second, which is as
    /// often as a person sees a number change. False once the user wants to stop the command: by
    /// the button, or by Escape twice within two seconds.
    bool keepPainting();

    /// The button that stops what runs; it outlives the gate's use.
    void setStopButton(QAbstractButton& button);

    bool isShut() const { return m_shut; }

    /// Opens the gate after the input that is still on its way was dropped.
    void open();

  Q_SIGNALS:
    /// What is painted now is seen.
    void painting();

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void noteEscape(const QKeyEvent& event);
    void noteMouse(const QObject* watched, const QMouseEvent& event);

    QAbstractButton* m_stopButton = nullptr;
    bool m_shut = false;
    bool m_stopWanted = false;
    QElapsedTimer m_sinceEvents;
    QElapsedTimer m_sinceEscape;
};

}  // namespace tarnwell
