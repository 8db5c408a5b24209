#include "ui/window/EditorWidgets.h"

#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMenu>

#include "ui/looks/Accessible.h"
#include "ui/looks/Colours.h"
#include "ui/looks/Measures.h"
#include "ui/looks/Text.h"

namespace tarnwell {

namespace {

constexpr int kHeadingTop = 360;
constexpr int kHeadingHeight = 225;

/// The switch has little room: its box is smaller than the desktop's.
constexpr int kIndicatorSide = 165;

struct Column {
    const char* heading;
    int left;
    int width;
};

constexpr int kHeaderTop = 240;
constexpr int kRowTop = 480;
constexpr int kRowPitch = 240;
constexpr int kRowHeight = 255;
constexpr Column kSider{"", 120, 255};
constexpr std::array kColumns{Column{"Addr", 465, 480}, Column{"Old", 1005, 375},
                              Column{"New", 1440, 375}};

constexpr const char* kRowProperty = "pendingRow";

/// On the page, of a place in the window.
QRect place(int left, int top, int width, int height) {
    return scaledRect(left, top - kTabRow, width, height);
}

QRect rowPlace(const Column& column, int row) {
    return scaledRect(column.left, kRowTop + kRowPitch * row, column.width, kRowHeight);
}

}  // namespace

EditorPageWidget::EditorPageWidget(Program& program)
    : m_grid(program.grid), m_view(program, this), m_switch(this), m_lamp(this) {
    m_switch.setObjectName(QStringLiteral("EditorEnabled"));
    m_switch.setAccessibleName(QStringLiteral("Data Editor"));
    m_switch.setToolTip(QStringLiteral("Click to toggle the Data Editor"));
    m_switch.setGeometry(place(120, 360, 475, 230));
    m_switch.setStyleSheet(QStringLiteral("QCheckBox { spacing: 2px; }"
                                          "QCheckBox::indicator { width: %1px; height: %1px; }")
                               .arg(scaled(kIndicatorSide)));
    for (int offset = 0; offset < kBytesPerRow; ++offset) {
        auto* heading = new FittedLabel(this);
        heading->setObjectName(elementName("lblRow", offset));
        heading->setAlignment(Qt::AlignCenter);
        heading->setGeometry(place(0, kHeadingTop, 0, kHeadingHeight));
        m_headings[static_cast<std::size_t>(offset)] = heading;
    }
    connect(&m_view, &GridView::columnsLaidOut, this, &EditorPageWidget::placeHeadings);
    layOut({});
    showSwitch(program.state.editor);
    setTabOrder(&m_switch, &m_view);
    connect(&m_switch, &QCheckBox::clicked, this, &EditorPageWidget::toggled);
}

void EditorPageWidget::layOut(QSize growth) {
    m_lamp.setGeometry(place(6700, 340, 225, 195).translated(growth.width(), 0));
    QRect grid = place(120, 585, 6765, 2415);
    grid.setSize(grid.size() + growth);
    m_view.setGeometry(grid);
    m_view.layOut(growth.width());
}

void EditorPageWidget::placeHeadings() {
    for (int offset = 0; offset < kBytesPerRow; ++offset) {
        FittedLabel& heading = *m_headings[static_cast<std::size_t>(offset)];
        const QRect column = m_view.columnPlace(offset).translated(m_view.pos());
        heading.setGeometry(column.x(), heading.y(), column.width(), heading.height());
    }
}

void EditorPageWidget::colourHeadings() {
    for (FittedLabel* heading : m_headings)
        heading->setColours(colours::kHeading, colours::kText);
}

void EditorPageWidget::refill() {
    for (int offset = 0; offset < kBytesPerRow; ++offset)
        m_headings[static_cast<std::size_t>(offset)]->setText(toQt(m_grid.HeadingText(offset)));
    m_view.refill();
}

void EditorPageWidget::showSwitch(EditorSwitch editor) {
    const bool on = editor == EditorSwitch::On;
    m_switch.setChecked(on);
    m_switch.setText(toQt(Word(editor)));
    fitCaption(m_switch, kIndicatorSide + 60);
    m_lamp.setAccessibleName(on ? QStringLiteral("The Data Editor is on")
                                : QStringLiteral("The Data Editor is off"));
    m_lamp.setColour(on ? colours::kLampOn : colours::kLampOff);
}

PendingFrame::PendingFrame(const PendingWrites& pending, QWidget* parent)
    : QGroupBox(QStringLiteral("Pending EEP Writes"), parent), m_pending(pending) {
    setObjectName(QStringLiteral("Frame1"));
    int index = 0;
    for (const Column& column : kColumns) {
        FittedLabel* header =
            addLabel(elementName("lblHeader", index++),
                     scaledRect(column.left, kHeaderTop, column.width, kRowPitch));
        header->setText(QLatin1String(column.heading));
    }
    for (int row = 0; row < kPendingRows; ++row) {
        FittedLabel* sider = addLabel(elementName("LblSider", row), rowPlace(kSider, row));
        sider->setText(QStringLiteral("%1").arg(row + 1, 2));
        m_rows[static_cast<std::size_t>(row)] = {
            addLabel(elementName("lblAddy", row), rowPlace(kColumns[0], row)),
            addLabel(elementName("lblOldData", row), rowPlace(kColumns[1], row)),
            addLabel(elementName("lblNewData", row), rowPlace(kColumns[2], row))};
    }
    for (int row = 0; row < kPendingRows; ++row) {
        for (FittedLabel* label : labelsOf(row)) {
            label->setProperty(kRowProperty, row);
            label->installEventFilter(this);
        }
    }
    refresh();
}

std::array<FittedLabel*, 3> PendingFrame::labelsOf(int row) const {
    const Row& labels = m_rows[static_cast<std::size_t>(row)];
    return {labels.address, labels.oldValue, labels.newValue};
}

FittedLabel* PendingFrame::addLabel(const QString& name, const QRect& place) {
    auto* label = new FittedLabel(this);
    label->setObjectName(name);
    label->setAlignment(Qt::AlignCenter);
    label->setGeometry(place);
    return label;
}

void PendingFrame::colourRows() {
    for (int row = 0; row < kPendingRows; ++row) {
        for (FittedLabel* label : labelsOf(row)) {
            label->setColours(colours::kCell, colours::kText);
            label->setFrameStyle(QFrame::Panel | QFrame::Sunken);
        }
        m_rows[static_cast<std::size_t>(row)].address->setColours(colours::kHeading,
                                                                  colours::kText);
    }
}

void PendingFrame::refresh() {
    for (int row = 0; row < kPendingRows; ++row) {
        const EditRecord& record = m_pending.Row(row);
        const Row& labels = m_rows[static_cast<std::size_t>(row)];
        const bool isEntry = row < m_pending.Count();
        const auto show = [=](FittedLabel& label, const char* what, const std::string& text) {
            label.setText(toQt(text));
            label.setEnabled(isEntry);
            label.setAccessibleName(
                QStringLiteral("Pending write %1, %2: %3")
                    .arg(row + 1)
                    .arg(QLatin1String(what), isEntry ? toQt(text) : QStringLiteral("none")));
        };
        show(*labels.address, "address", record.EditAddress);
        show(*labels.oldValue, "old value", record.EditOldValue);
        show(*labels.newValue, "new value", record.EditNewValue);
        labels.address->setFocusPolicy(isEntry ? Qt::StrongFocus : Qt::NoFocus);
        labels.address->setAccessibleDescription(
            !isEntry ? QString()
                     : QStringLiteral("%1 becomes %2; Delete takes it back")
                           .arg(toQt(record.EditOldValue), toQt(record.EditNewValue)));
    }
}

bool PendingFrame::eventFilter(QObject* watched, QEvent* event) {
    const int row = watched->property(kRowProperty).toInt();
    switch (event->type()) {
        case QEvent::KeyPress:
            if (pressKey(row, static_cast<const QKeyEvent&>(*event).key()))
                return true;
            break;
        case QEvent::MouseButtonPress:
            focusRow(row);
            return true;
        case QEvent::MouseButtonDblClick:
            Q_EMIT byteWanted(row);
            return true;
        case QEvent::ContextMenu:
            popUpMenu(row, static_cast<const QContextMenuEvent&>(*event).globalPos());
            return true;
        default:
            break;
    }
    return QGroupBox::eventFilter(watched, event);
}

bool PendingFrame::pressKey(int row, int key) {
    switch (key) {
        case Qt::Key_Delete:
            Q_EMIT takeBackWanted(row);
            focusRow(qMin(row, m_pending.Count() - 1));
            return true;
        case Qt::Key_Return:
        case Qt::Key_Enter:
            Q_EMIT byteWanted(row);
            return true;
        case Qt::Key_Up:
        case Qt::Key_Down:
            focusRow(row + (key == Qt::Key_Up ? -1 : 1));
            return true;
        default:
            return false;
    }
}

void PendingFrame::popUpMenu(int row, const QPoint& place) {
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    QAction* item = menu->addAction(QStringLiteral("Take &Back"));
    item->setObjectName(QStringLiteral("mnuPendingTakeBack"));
    connect(item, &QAction::triggered, this, [this, row] { Q_EMIT takeBackWanted(row); });
    menu->popup(place);
}

void PendingFrame::focusRow(int row) {
    if (row >= 0 && row < m_pending.Count())
        m_rows[static_cast<std::size_t>(row)].address->setFocus(Qt::OtherFocusReason);
}

}  // namespace tarnwell

#include "moc_EditorWidgets.cpp"
