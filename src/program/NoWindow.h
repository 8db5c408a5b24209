// The window and the desktop of a program that nobody looks at.
#pragma once

#include "program/Program.h"

namespace tarnwell {

class NoWindow : public EditorView,
                 public SettingsView,
                 public PlacedWindow,
                 public Timer,
                 public Programs {
  public:
    void GridRefilled() override {}
    void GridCellChanged(GridCell /*cell*/) override {}
    void CurrentCellMoved() override {}
    void EditBoxOpened(EditSelection /*selection*/) override {}
    void EditBoxTextChanged() override {}
    void EditBoxClosed() override {}
    void PendingWritesChanged() override {}
    void FocusGrid() override {}
    void TurnToEditor() override {}
    bool ShowWarningAgain() override { return true; }

    void SettingCellChanged(int /*cell*/) override {}
    void ShowCell(int /*cell*/) override {}
    void ShowFormEdit() override {}

    void Place(WindowPlace place) override { place_ = place; }
    WindowPlace Place() const override { return place_; }

    void Start(std::chrono::milliseconds /*interval*/) override {}
    void Stop() override {}

    std::string ProgramFolder() const override { return {}; }
    bool Exists(const std::string& /*path*/) const override { return false; }
    void OpenInViewer(const std::string& /*path*/, std::function<void()> failed) override {
        failed();
    }
    bool Start(const std::string& /*path*/) override { return false; }
    bool MoveToTrash(const std::string& /*path*/) override { return false; }
    std::string KernelModulePath(const std::string& /*module*/) const override { return {}; }

  private:
    WindowPlace place_{};
};

}  // namespace tarnwell
