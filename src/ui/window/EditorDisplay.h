// The data editor on the screen: its page, and the pending writes at the window's right.
#pragma once

#include <QTabWidget>

#include "program/Program.h"
#include "ui/widgets/CommandButton.h"
#include "ui/window/EditorWidgets.h"

namespace tarnwell {

class EditorDisplay final : public EditorView {
  public:
    /// `window` is the one that the editor's warning belongs to.
    explicit EditorDisplay(QWidget& window) : m_window(window) {}

    /// Makes the widgets, the page as the last of `tabs` and the rest beside them. The program,
    /// which is made with this view of it, shows nothing before.
    void build(Program& program, QTabWidget& tabs);

    EditorPageWidget& page() { return *m_page; }
    PendingFrame& pendingFrame() { return *m_pendingFrame; }
    CommandButton& writePending() { return *m_writePending; }

    void colour();
    void showSwitch();
    void showCaption();

    /// The page and what is beside it have this much more room than designed.
    void layOut(QSize growth);

    /// Pending writes are seen in a big window only.
    void setLayoutMode(SizeMode mode);

    void GridRefilled() override { m_page->refill(); }
    void GridCellChanged(GridCell cell) override { grid().refresh(cell); }
    void CurrentCellMoved() override { grid().showCurrentCell(); }
    void EditBoxOpened(EditSelection selection) override { grid().openEditBox(selection); }
    void EditBoxTextChanged() override { grid().refreshEditBox(); }
    void EditBoxClosed() override { grid().closeEditBox(); }
    void PendingWritesChanged() override;
    void TurnToEditor() override { m_tabs->setCurrentIndex(static_cast<int>(Page::Editor)); }
    void FocusGrid() override { grid().setFocus(Qt::OtherFocusReason); }
    bool ShowWarningAgain() override;

  private:
    GridView& grid() { return m_page->grid(); }

    QWidget& m_window;
    const Program* m_program = nullptr;
    QTabWidget* m_tabs = nullptr;
    EditorPageWidget* m_page = nullptr;
    PendingFrame* m_pendingFrame = nullptr;
    CommandButton* m_writePending = nullptr;
};

}  // namespace tarnwell
