// What the program tells its window about the state that the window shows.
#pragma once

#include <cstdint>

namespace tarnwell {

/// A piece of what is shown; the window reads it from where the state lives.
enum class Shown : std::uint8_t {
    ModePanel,
    StatusPanel,
    CrcPanel,
    EepPanel,
    Steps,          ///< what undo and redo take back and make again
    Menus,          ///< check marks, visible and enabled items
    Layout,         ///< the size mode
    Set,            ///< whose record is kept
    Names,          ///< of one's own: which there are
    EditorSwitch,   ///< its caption and lamp
    EditorCaption,  ///< the data editor page's tab
};

class Screen {
  public:
    virtual ~Screen() = default;
    virtual void Changed(Shown what) = 0;
};

}  // namespace tarnwell
