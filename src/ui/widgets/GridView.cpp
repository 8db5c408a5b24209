#include "ui/widgets/GridView.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QMenu>
#include <QPainter>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <QStyledItemDelegate>
#include <algorithm>
#include <optional>

#include "ui/looks/Colours.h"
#include "ui/looks/Fitted.h"
#include "ui/looks/Measures.h"
#include "ui/looks/ReadableStyle.h"
#include "ui/looks/Text.h"
#include "ui/widgets/StandingMark.h"

namespace tarnwell {

namespace {

constexpr int kAddressWidth = 475;
constexpr int kByteWidth = 375;
constexpr int kTextWidth = 1760;
constexpr int kColumnsWidth = kAddressWidth + kBytesPerRow * kByteWidth;
constexpr int kRowHeight = 240;
constexpr int kEditBoxDrop = 6;
constexpr std::chrono::milliseconds kDragPause{50};

/// Draws a byte's cell in the design's colours, the current one framed.
class CellDelegate final : public QStyledItemDelegate {
  public:
    CellDelegate(const DataGrid& grid, const GridView& view)
        : QStyledItemDelegate(const_cast<GridView*>(&view)), m_grid(grid), m_view(view) {}

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override {
        const bool selected = option.state.testFlag(QStyle::State_Selected);
        painter->fillRect(option.rect, selected ? colours::kSelected
                                                : index.data(Qt::BackgroundRole).value<QColor>());
        if (index.data(GridModel::kNamedRole).toBool())
            drawCorner(*painter, option.rect.topRight(), {-1, 1}, colours::kValueText);
        if (index.data(GridModel::kOwnNameRole).toBool())
            drawCorner(*painter, option.rect.topLeft(), {1, 1}, colours::kOwnName);
        if (index.column() == kTextColumn)
            return paintText(*painter, option, index);
        const auto kind = static_cast<Standing::Kind>(index.data(GridModel::kStandingRole).toInt());
        drawStanding(*painter, option.rect, kind);
        const QVariant font = index.data(Qt::FontRole);
        painter->setFont(font.isValid() ? font.value<QFont>() : option.font);
        painter->setPen(kind == Standing::Kind::NoValue ? colours::paler(colours::kText)
                                                        : colours::kText);
        const int margin = index.column() == 0 ? 3 : 0;
        drawFitted(*painter, option.rect.adjusted(0, 0, -margin, 0),
                   Qt::Alignment(index.data(Qt::TextAlignmentRole).toInt()),
                   index.data().toString());
        if (GridCell{index.row(), index.column()} != m_grid.Current())
            return;
        frame(*painter, option.rect, GridSide::Bytes);
    }

  private:
    /// A whole frame on the side where one types.
    void frame(QPainter& painter, const QRect& cell, GridSide side) const {
        if (m_view.hasFocus() && m_grid.Side() == side)
            return drawFocusFrame(painter, cell, colours::kText);
        painter.setPen(QPen(colours::kText, 1, Qt::DotLine));
        painter.drawRect(cell.adjusted(0, 0, -1, -1));
    }

    void paintText(QPainter& painter, const QStyleOptionViewItem& option,
                   const QModelIndex& index) const {
        const auto [first, last] = m_grid.Selection();
        const QString text = index.data().toString();
        painter.setFont(index.data(Qt::FontRole).value<QFont>());
        for (int offset = 0; offset < kBytesPerRow; ++offset) {
            const QRect place = GridView::characterPlace(option.rect, offset);
            const int address = index.row() * kBytesPerRow + offset;
            if (first < last && address >= first && address <= last)
                painter.fillRect(place, colours::kSelected);
            painter.setPen(colours::kText);
            drawFitted(painter, place, Qt::AlignCenter, text.mid(offset, 1));
            if (address == m_grid.Current().Address())
                frame(painter, place, GridSide::Text);
        }
    }

    const DataGrid& m_grid;
    const GridView& m_view;
};

/// Where a key leads while the grid is browsed.
std::optional<GridCell> destination(const QKeyEvent& event, GridCell from, int pageRows) {
    const bool control = (event.modifiers() & ~Qt::ShiftModifier) == Qt::ControlModifier;
    if (control && event.key() == Qt::Key_Home)
        return GridCell{0, 1};
    if (control && event.key() == Qt::Key_End)
        return GridCell{kGridRows - 1, kBytesPerRow};
    if ((event.modifiers() & ~(Qt::KeypadModifier | Qt::ShiftModifier)) != Qt::NoModifier)
        return std::nullopt;
    GridCell to = from;
    switch (event.key()) {
        case Qt::Key_Up:
            --to.row;
            break;
        case Qt::Key_Down:
            ++to.row;
            break;
        case Qt::Key_PageUp:
            to.row -= pageRows;
            break;
        case Qt::Key_PageDown:
            to.row += pageRows;
            break;
        case Qt::Key_Left:
            --to.column;
            break;
        case Qt::Key_Right:
            ++to.column;
            break;
        case Qt::Key_Home:
            to.column = 1;
            break;
        case Qt::Key_End:
            to.column = kBytesPerRow;
            break;
        default:
            return std::nullopt;
    }
    to.row = std::clamp(to.row, 0, kGridRows - 1);
    to.column = std::clamp(to.column, 1, kBytesPerRow);
    return to;
}

/// Printable characters begin an entry; so do Enter and Backspace, with the cell's own text.
bool beginsEntry(const QKeyEvent& event) {
    if ((event.modifiers() & (Qt::ControlModifier | Qt::AltModifier)) != 0)
        return false;
    const int key = event.key();
    return key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Backspace ||
           (!event.text().isEmpty() && event.text().front().isPrint());
}

}  // namespace

GridView::GridView(Program& program, QWidget* parent)
    : QTableView(parent),
      m_grid(program.grid),
      m_editor(program.cellEditor),
      m_selection(program.selection),
      m_state(program.state),
      m_model(program, this),
      m_editBox(program.grid, program.cellEditor, program.state, viewport()) {
    setObjectName(QStringLiteral("DataGrid"));
    setAccessibleName(QStringLiteral("EEPROM data"));
    setModel(&m_model);
    setItemDelegate(new CellDelegate(m_grid, *this));
    horizontalHeader()->hide();
    verticalHeader()->hide();
    horizontalHeader()->setMinimumSectionSize(1);
    verticalHeader()->setMinimumSectionSize(1);
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    setSelectionMode(QAbstractItemView::NoSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    setTabKeyNavigation(false);
    setWordWrap(false);
    setMouseTracking(false);
    setFocusPolicy(Qt::StrongFocus);
    m_dragTimer.setInterval(kDragPause);
    m_dragTimer.callOnTimeout(this, &GridView::dragOn);
    QPalette colour = palette();
    colour.setColor(QPalette::Base, colours::kCell);
    setPalette(colour);
}

void GridView::setUp() {
    verticalHeader()->setDefaultSectionSize(scaled(kRowHeight));
    setCurrentIndex(m_model.indexOf(m_grid.Current()));
    layOutColumns();
    refill();
}

/// The columns are narrower than designed where a wide scroll bar leaves them less room: a view
/// that had to be scrolled sideways would shift under the edit box.
void GridView::layOutColumns() {
    setColumnHidden(kTextColumn, !m_state.textColumn);
    const int all = kColumnsWidth + (m_state.textColumn ? kTextWidth : 0);
    const int width = std::min(scaled(kColumnsWidth) + m_extraWidth, viewport()->width());
    const int address = m_state.textColumn ? scaled(kAddressWidth) : 0;
    const int others = m_state.textColumn ? all - kAddressWidth : all;
    const auto rightOf = [=](int column) {
        const int bytes = column * kByteWidth + (address == 0 ? kAddressWidth : 0);
        return column == kTextColumn ? width : address + (width - address) * bytes / others;
    };
    for (int column = 0; column < kGridColumns; ++column)
        setColumnWidth(column, rightOf(column) - (column == 0 ? 0 : rightOf(column - 1)));
    placeEditBox();
    Q_EMIT columnsLaidOut();
}

void GridView::layOut(int extraWidth) {
    m_extraWidth = extraWidth;
    layOutColumns();
}

QRect GridView::characterPlace(const QRect& texts, int offset) {
    const auto leftOf = [&](int index) {
        return texts.left() + texts.width() * index / kBytesPerRow;
    };
    return {leftOf(offset), texts.top(), leftOf(offset + 1) - leftOf(offset), texts.height()};
}

QRect GridView::columnPlace(int offset) const {
    const int column = offset + 1;
    return {viewport()->x() + columnViewportPosition(column), 0, columnWidth(column), height()};
}

void GridView::resizeEvent(QResizeEvent* event) {
    QTableView::resizeEvent(event);
    layOutColumns();
}

int GridView::visibleRows() const {
    return std::max(1, viewport()->height() / verticalHeader()->defaultSectionSize());
}

void GridView::showCurrentCell() {
    const QScopedValueRollback guard(m_scrollingToCell, true);
    const QModelIndex index = m_model.indexOf(m_grid.Current());
    setCurrentIndex(index);
    showSelection();
    scrollTo(index);
    viewport()->update();
    placeEditBox();
}

/// For screen readers as well: a single byte is just the current one.
void GridView::showSelection() {
    const GridRange range = m_grid.Selection();
    QItemSelection selection;
    for (int row = range.first / kBytesPerRow;
         range.first < range.last && row <= range.last / kBytesPerRow; ++row) {
        const int begin = row * kBytesPerRow;
        selection.select(
            m_model.indexOf(GridCell::At(std::max(range.first, begin))),
            m_model.indexOf(GridCell::At(std::min(range.last, begin + kBytesPerRow - 1))));
    }
    selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
}

void GridView::openEditBox(EditSelection selection) {
    showCurrentCell();
    m_editBox.open(selection);
}

void GridView::closeEditBox() {
    const bool hadFocus = m_editBox.hasFocus();
    m_editBox.hide();
    if (hadFocus)
        setFocus(Qt::OtherFocusReason);
}

void GridView::placeEditBox() {
    QRect place = visualRect(m_model.indexOf(m_grid.Current()));
    place.translate(0, scaled(kEditBoxDrop));
    m_editBox.setGeometry(place);
}

void GridView::mousePressEvent(QMouseEvent* event) {
    const QPoint place = event->position().toPoint();
    const QModelIndex index = indexAt(place);
    const bool onByte = event->button() == Qt::LeftButton && index.column() > 0;
    const GridSide side = index.column() == kTextColumn ? GridSide::Text : GridSide::Bytes;
    if (onByte && side != m_grid.Side())
        m_editor.SetSide(side);
    const GridCell cell{index.row(), columnTowards(place.x())};
    if (!onByte)
        m_editor.SettleEntry();
    else if (event->modifiers() == Qt::ShiftModifier)
        m_editor.SelectTo(cell);
    else if (m_editor.MoveTo(cell))
        m_editor.Click();
    m_drags = onByte && m_grid.Current() == cell;
    m_editBox.keepFocus();
}

/// Above and below what is seen the selection goes on by itself, so that the mouse may rest there.
void GridView::mouseMoveEvent(QMouseEvent* event) {
    event->accept();
    m_dragPlace = event->position().toPoint();
    m_drags = m_drags && event->buttons() == Qt::LeftButton;
    const bool beyond = m_dragPlace.y() < 0 || m_dragPlace.y() >= viewport()->height();
    if (!m_drags || !beyond)
        m_dragTimer.stop();
    else if (m_dragTimer.isActive())
        return;
    else
        m_dragTimer.start();
    if (m_drags)
        dragOn();
}

void GridView::dragOn() {
    const GridCell cell = cellTowards(m_dragPlace);
    if (cell != m_grid.Current())
        m_editor.SelectTo(cell);
}

/// The cell at `place`; beyond what is seen, the farther the more rows.
GridCell GridView::cellTowards(QPoint place) const {
    const auto clampedTo = [](int end, int value) { return std::clamp(value, 0, end - 1); };
    const QPoint seen{clampedTo(viewport()->width(), place.x()),
                      clampedTo(viewport()->height(), place.y())};
    const int beyond = place.y() - seen.y();
    const int rows = beyond / verticalHeader()->defaultSectionSize() + (beyond > 0) - (beyond < 0);
    return {clampedTo(kGridRows, rowAt(seen.y()) + rows), columnTowards(seen.x())};
}

/// The byte's column at `x`, on the side where the user is.
int GridView::columnTowards(int x) const {
    if (m_grid.Side() == GridSide::Text) {
        const int within = x - columnViewportPosition(kTextColumn);
        return std::clamp(within * kBytesPerRow / columnWidth(kTextColumn), 0, kBytesPerRow - 1) +
               1;
    }
    const int column = columnAt(x);
    return column < 0 ? kBytesPerRow : std::clamp(column, 1, kBytesPerRow);
}

void GridView::mouseReleaseEvent(QMouseEvent* event) {
    m_dragTimer.stop();
    m_drags = false;
    event->accept();
}

void GridView::mouseDoubleClickEvent(QMouseEvent* event) {
    mousePressEvent(event);
}

void GridView::keyPressEvent(QKeyEvent* event) {
    if (browse(*event)) {
        event->accept();
        return;
    }
    if (beginsEntry(*event))
        m_editor.CharacterTyped(fromQt(event->text()));
    else
        QWidget::keyPressEvent(event);
}

bool GridView::browse(const QKeyEvent& event) {
    if (event.matches(QKeySequence::Copy)) {
        copyBytes(m_selection, m_state.numberMode);
        return true;
    }
    if (event.key() == Qt::Key_F6 && event.modifiers() == Qt::NoModifier) {
        m_editor.ChangeSide();
        return true;
    }
    if (event.matches(QKeySequence::Paste)) {
        paste();
        return true;
    }
    const auto to = destination(event, m_grid.Current(), visibleRows());
    if (to && event.modifiers().testFlag(Qt::ShiftModifier))
        m_editor.SelectTo(*to);
    else if (to)
        m_editor.MoveTo(*to);
    return to.has_value();
}

void GridView::contextMenuEvent(QContextMenuEvent* event) {
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->setToolTipsVisible(true);
    const auto add = [&](const char* name, const char* caption, auto command) {
        QAction* item = menu->addAction(QLatin1String(caption), this, command);
        item->setObjectName(QLatin1String(name));
        return item;
    };
    add("mnuGridCopyHex", "Copy in &Hexadecimal",
        [this] { copyBytes(m_selection, NumberMode::Hex); });
    add("mnuGridCopyDecimal", "Copy in &Decimal",
        [this] { copyBytes(m_selection, NumberMode::Decimal); });
    QAction* pasteItem = add("mnuGridPaste", "&Paste", &GridView::paste);
    menu->addSeparator();
    QAction* fillItem = add("mnuGridFill", "&Fill...", &GridView::fillWanted);
    add("mnuGridSave", "&Save Selection...", &GridView::saveWanted);
    menu->addSeparator();
    add("mnuGridName", "&Name This Byte...", &GridView::nameWanted);
    for (QAction* item : {pasteItem, fillItem})
        allow(*item, m_state.editor == EditorSwitch::On, "Switch the Data Editor on first");
    menu->popup(event->globalPos());
}

void GridView::paste() {
    m_editor.Paste(bytesToPaste());
}

void GridView::scrollContentsBy(int dx, int dy) {
    QTableView::scrollContentsBy(dx, dy);
    if (!m_scrollingToCell)
        m_editor.Scrolled();
}

}  // namespace tarnwell

#include "moc_GridView.cpp"
