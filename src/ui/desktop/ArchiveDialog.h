// The file dialogs: that of all commands on archives, and what it shares with others.
#pragma once

#include <QFileDialog>

#include "core/user/User.h"

namespace tarnwell {

/// It takes the list of names that complete what is typed with it when it closes.
class FileDialog : public QFileDialog {
  public:
    using QFileDialog::QFileDialog;
    void done(int result) override;
};

/// It keeps the filter that the user chose.
class ArchiveDialog final : public FileDialog {
  public:
    explicit ArchiveDialog(QWidget* parent);

    /// The picked file's full path, or nothing when the user cancels.
    std::optional<std::string> ask(const FileRequest& request);

  protected:
    void accept() override;

  private:
    void offer(const QStringList& filters);
    void propose(const FileRequest& request);
};

}  // namespace tarnwell
