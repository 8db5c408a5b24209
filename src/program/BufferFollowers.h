// What shows the memory buffer or may differ from it, as the commands on the buffer see it.
#pragma once

#include "image/WholeDevice.h"
#include "settings/SettingsEngine.h"

namespace tarnwell {

class BufferFollowers final : public BufferDisplays {
  public:
    BufferFollowers(PendingWrites& pending, EditorPage& editorPage, SettingCells& cells,
                    SettingsEngine& settings)
        : pending_(pending), editorPage_(editorPage), cells_(cells), settings_(settings) {}

    bool MayRefillGrid() override { return editorPage_.MayRefillGrid(); }
    void FillGrid() override { editorPage_.RefillGrid(); }
    void ShowSettingsFromBuffer() override { settings_.ShowSettingsFromBuffer(); }
    void ClearSettingCells() override { cells_.ClearSettingCells(); }
    void ClearPendingWrites() override { pending_.ClearPendingWrites(); }
    bool HasChangedSettings() const override { return cells_.AnyHasMark(Mark::Save); }

  private:
    PendingWrites& pending_;
    EditorPage& editorPage_;
    SettingCells& cells_;
    SettingsEngine& settings_;
};

}  // namespace tarnwell
