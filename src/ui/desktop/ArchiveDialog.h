// The file dialog of all commands on archives.
#pragma once

#include <QFileDialog>

#include "core/User.h"

namespace tarnwell {

/// It keeps the filter that the user chose.
class ArchiveDialog final : public QFileDialog {
  public:
    explicit ArchiveDialog(QWidget* parent);

    /// The picked file's full path, or nothing when the user cancels.
    std::optional<std::string> ask(const FileRequest& request);

  protected:
    void accept() override;

  private:
    void propose(const FileRequest& request);
};

}  // namespace tarnwell
