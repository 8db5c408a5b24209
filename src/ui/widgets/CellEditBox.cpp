#include "ui/widgets/CellEditBox.h"

#include <QClipboard>
#include <QContextMenuEvent>
#include <QDropEvent>
#include <QGuiApplication>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QMimeData>
#include <algorithm>
#include <array>
#include <optional>

#include "core/user/Number.h"
#include "editor/ByteTexts.h"
#include "ui/looks/Fitted.h"
#include "ui/looks/Text.h"

namespace tarnwell {

namespace {

struct KeyBinding {
    int key;
    Qt::KeyboardModifiers modifiers;
    EditKey action;
};

constexpr std::array kKeys{
    KeyBinding{Qt::Key_Backspace, Qt::NoModifier, EditKey::Backspace},
    KeyBinding{Qt::Key_Tab, Qt::NoModifier, EditKey::Next},
    KeyBinding{Qt::Key_Right, Qt::NoModifier, EditKey::Next},
    KeyBinding{Qt::Key_Tab, Qt::ShiftModifier, EditKey::Previous},
    KeyBinding{Qt::Key_Backtab, Qt::ShiftModifier, EditKey::Previous},
    KeyBinding{Qt::Key_Left, Qt::NoModifier, EditKey::Left},
    KeyBinding{Qt::Key_Return, Qt::NoModifier, EditKey::Down},
    KeyBinding{Qt::Key_Enter, Qt::NoModifier, EditKey::Down},
    KeyBinding{Qt::Key_Down, Qt::NoModifier, EditKey::Down},
    KeyBinding{Qt::Key_Up, Qt::NoModifier, EditKey::Up},
    KeyBinding{Qt::Key_F6, Qt::NoModifier, EditKey::Side},
    KeyBinding{Qt::Key_Escape, Qt::NoModifier, EditKey::Escape},
    KeyBinding{Qt::Key_Escape, Qt::ShiftModifier, EditKey::Escape},
};

std::optional<EditKey> editKeyOf(const QKeyEvent& event) {
    const Qt::KeyboardModifiers modifiers = event.modifiers() & ~Qt::KeypadModifier;
    for (const KeyBinding& binding : kKeys) {
        if (binding.key == event.key() && binding.modifiers == modifiers)
            return binding.action;
    }
    return std::nullopt;
}

/// The menu's ways to another byte, and to a comparison, commit the entry.
bool leadsAway(const QKeyEvent& key) {
    return key.modifiers() == Qt::ControlModifier &&
           (key.key() == Qt::Key_G || key.key() == Qt::Key_F || key.key() == Qt::Key_D ||
            key.key() == Qt::Key_N);
}

bool isSeveral(const QString& text) {
    const std::string bytes = fromQt(text);
    return SplitBytes(bytes).size() > 1;
}

/// The bytes that this program copied, each behind 0x, whatever it copied them as.
constexpr const char* kCopiedBytes = "application/x-tarnwell-bytes";

QString clipboardText(QClipboard::Mode mode) {
    const QMimeData* copied = QGuiApplication::clipboard()->mimeData(mode);
    if (copied == nullptr)
        return {};
    return copied->hasFormat(kCopiedBytes) ? QString::fromLatin1(copied->data(kCopiedBytes))
                                           : copied->text();
}

}  // namespace

void copyBytes(const Selection& selection, NumberMode mode) {
    auto* copied = new QMimeData;
    copied->setText(toQt(selection.Text(mode)));
    copied->setData(
        kCopiedBytes,
        "0x" + QByteArray::fromStdString(selection.Text(NumberMode::Hex)).replace(" ", " 0x"));
    QGuiApplication::clipboard()->setMimeData(copied);
}

std::string bytesToPaste() {
    return fromQt(clipboardText(QClipboard::Clipboard));
}

CellEditBox::CellEditBox(DataGrid& grid, CellEditor& editor, const ProgramState& state,
                         QWidget* parent)
    : QLineEdit(parent), m_grid(grid), m_editor(editor), m_state(state) {
    setObjectName(QStringLiteral("txtEditBox"));
    setAccessibleName(QStringLiteral("New value"));
    setFrame(false);
    setAlignment(Qt::AlignCenter);
    setContextMenuPolicy(Qt::DefaultContextMenu);
    setStyleSheet(
        QStringLiteral("background: white; color: black; border: none; padding: 0px;"
                       "selection-background-color: #003399;"
                       "selection-color: white;"));
    hide();
    connect(this, &QLineEdit::textEdited, this, &CellEditBox::takeEditedText);
}

void CellEditBox::open(EditSelection selection) {
    const QString opening = toQt(m_grid.EditText());
    const bool foreign = selection == EditSelection::CaretAtEnd && opening.size() == 1 &&
                         !FilterKey(opening.front().toLatin1(), m_state.numberMode);
    m_foreign = foreign ? opening : QString();
    setText(opening);  // which also forgets what could be undone of the text before
    show();
    raise();
    setFocus(Qt::OtherFocusReason);
    if (selection == EditSelection::WholeText)
        selectAll();
    else
        end(false);
}

void CellEditBox::refreshText() {
    const QString wanted = toQt(m_grid.EditText());
    if (text() == wanted)
        return;
    const QSignalBlocker quiet(this);
    selectAll();
    insert(wanted);
}

void CellEditBox::keepFocus() {
    if (!isHidden())
        setFocus(Qt::OtherFocusReason);
}

bool CellEditBox::enters(const QString& text) const {
    return std::ranges::any_of(text, [this](QChar character) {
        return FilterKey(character.toLatin1(), m_state.numberMode).has_value();
    });
}

void CellEditBox::takeEditedText(const QString& edited) {
    QString kept;
    int caret = cursorPosition();
    for (qsizetype index = 0; index < edited.size(); ++index) {
        const QChar character = edited[index];
        const auto filtered = FilterKey(character.toLatin1(), m_state.numberMode);
        if (filtered)
            kept += QLatin1Char(*filtered);
        else if (index == 0 && QString(character) == m_foreign)
            kept += character;
        else if (index < cursorPosition())
            --caret;
    }
    if (kept != edited) {
        setText(kept);
        setCursorPosition(caret);
    }
    m_editor.TextEdited(fromQt(kept));
}

bool CellEditBox::event(QEvent* event) {
    // Keys held with Ctrl would turn the page.
    if (event->type() == QEvent::ShortcutOverride && !leadsAway(static_cast<QKeyEvent&>(*event)) &&
        static_cast<QKeyEvent&>(*event).modifiers().testFlag(Qt::ControlModifier)) {
        event->accept();
        return true;
    }
    // Tab would move the focus before it came to keyPressEvent.
    if (event->type() == QEvent::KeyPress) {
        auto& key = static_cast<QKeyEvent&>(*event);
        if (key.key() == Qt::Key_Tab || key.key() == Qt::Key_Backtab) {
            actOn(key);
            event->accept();
            return true;
        }
    }
    return QLineEdit::event(event);
}

void CellEditBox::keyPressEvent(QKeyEvent* event) {
    if (actOn(*event)) {
        event->accept();
        return;
    }
    if (event->matches(QKeySequence::Paste) && pasteBytes(clipboardText(QClipboard::Clipboard))) {
        event->accept();
        return;
    }
    const bool moves = event->key() == Qt::Key_Up || event->key() == Qt::Key_Down;
    const bool typed = !event->text().isEmpty() && event->text().front().isPrint() &&
                       !(event->modifiers() & (Qt::ControlModifier | Qt::AltModifier));
    const bool dropped = typed && !FilterKey(event->text().front().toLatin1(), m_state.numberMode);
    const bool pastesNothing =
        event->matches(QKeySequence::Paste) && !enters(clipboardText(QClipboard::Clipboard));
    if (!moves && !dropped && !pastesNothing)
        QLineEdit::keyPressEvent(event);
    // What a line edit ignores would move the grid behind it.
    event->accept();
}

// A line edit removes the marked text as soon as anything is composed, pasted or dropped.
void CellEditBox::inputMethodEvent(QInputMethodEvent* event) {
    QInputMethodEvent committed;
    committed.setCommitString(event->commitString());
    if (enters(event->commitString()))
        QLineEdit::inputMethodEvent(&committed);
    event->accept();
}

bool CellEditBox::pasteBytes(const QString& text) {
    return m_editor.PasteIntoEntry(fromQt(text));
}

void CellEditBox::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::MiddleButton && pasteBytes(clipboardText(QClipboard::Selection)))
        return;
    if (event->button() != Qt::MiddleButton || enters(clipboardText(QClipboard::Selection)))
        QLineEdit::mouseReleaseEvent(event);
}

void CellEditBox::contextMenuEvent(QContextMenuEvent* event) {
    QMenu* menu = createStandardContextMenu();
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->setToolTipsVisible(true);
    const QString text = clipboardText(QClipboard::Clipboard);
    for (QAction* action : menu->actions()) {
        // The item has no name in this version of Qt: it is the one that would paste.
        if (!disconnect(action, nullptr, this, SLOT(paste())))
            continue;
        allow(*action, enters(text) || isSeveral(text), "What was copied holds no digits");
        connect(action, &QAction::triggered, this, [this, text] {
            if (!pasteBytes(text))
                paste();
        });
    }
    menu->popup(event->globalPos());
}

// Over a line edit a text that is dragged moves the caret, and the marked text is no longer marked.
void CellEditBox::dragEnterEvent(QDragEnterEvent* event) {
    const QString text = event->mimeData()->text();
    if (enters(text) || isSeveral(text))
        QLineEdit::dragEnterEvent(event);
    else
        event->ignore();
}

void CellEditBox::dropEvent(QDropEvent* event) {
    if (pasteBytes(event->mimeData()->text()))
        event->acceptProposedAction();
    else
        QLineEdit::dropEvent(event);
}

bool CellEditBox::actOn(const QKeyEvent& event) {
    const bool undoesNothing = event.matches(QKeySequence::Undo) && !isUndoAvailable();
    const auto key = undoesNothing ? EditKey::Escape : editKeyOf(event);
    if (key)
        m_editor.KeyPressed(*key);
    return key.has_value();
}

}  // namespace tarnwell
