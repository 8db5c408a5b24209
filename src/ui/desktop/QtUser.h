// The user at a desktop: message boxes, input box, file dialog, beep.
#pragma once

#include <QWidget>

#include "core/user/User.h"
#include "ui/desktop/InputGate.h"

namespace tarnwell {

class ArchiveDialog;

class QtUser final : public User {
  public:
    Answer ShowBox(const Box& box) override;
    std::optional<std::string> AskText(const TextRequest& request) override;
    std::optional<std::string> AskFile(const FileRequest& request) override;
    void Beep() override;
    bool KeepPainting() override { return m_gate.keepPainting(); }

    InputGate& gate() { return m_gate; }

    /// The window that boxes belong to while no dialog is open.
    void setWindow(QWidget* window) { m_window = window; }

    /// Call it before a file is asked for.
    void setUpFileDialog();

    /// Whether a command works for long, or waits for the answer to a box.
    bool isBusy() const;

    /// Takes input again after a long command.
    void endCommand() { m_gate.open(); }

  private:
    QWidget* parent() const;

    InputGate m_gate;
    QWidget* m_window = nullptr;
    ArchiveDialog* m_fileDialog = nullptr;  ///< belongs to the window
};

}  // namespace tarnwell
