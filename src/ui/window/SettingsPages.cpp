#include "ui/window/SettingsPages.h"

#include <algorithm>

#include "core/Pages.h"
#include "settings/CellTexts.h"
#include "ui/looks/Fitted.h"
#include "ui/looks/Measures.h"
#include "ui/looks/Text.h"

namespace tarnwell {

namespace {

/// Where the parts of a row stand on a page, in twips.
struct RowLayout {
    int codeLeft;
    int codeWidth;
    int numberLeft;
    int numberWidth;
    int descriptionLeft;
    int descriptionWidth;
    int cellLeft;
    int cellWidth;
};

constexpr RowLayout kFormatRow{120, 660, 800, 480, 1320, 2240, 3640, 720};
constexpr RowLayout kIrisRow{90, 420, 500, 390, 890, 1860, 2820, 600};

constexpr int kCellPitch = 850;
constexpr int kIrisColumnPitch = 3510;
constexpr int kSettingHeadingTop = 45;
constexpr int kSettingHeadingHeight = 240;
constexpr int kFirstRowTop = 300;
constexpr int kSettingRowPitch = 400;
constexpr int kSettingRowHeight = 330;

constexpr std::array<const char*, kColumnCount> kHeadingNames{"lbl480i", "lbl480p", "lbl1090i",
                                                              "lblVGA"};

/// The settings of a page that share one row of it stand in columns of this many rows.
constexpr int kIrisRows = 5;

bool hasHeadings(Page page) {
    return page != Page::Global && page != Page::Iris;
}

int headingIndex(Page page) {
    if (page == Page::Picture)
        return 2;
    return page == Page::Edges ? 1 : 0;
}

FittedLabel* addLabel(QWidget& page, const QString& name, std::string_view text, const QRect& place,
                      Qt::Alignment alignment) {
    auto* label = new FittedLabel(&page);
    label->setObjectName(name);
    label->setText(toQt(text));
    label->setAlignment(alignment);
    label->setGeometry(place);
    return label;
}

/// A setting's row on its page, or its place in the two columns of the Iris page.
struct Place {
    RowLayout layout;
    int left;
    int top;
};

Place placeOf(Page page, int row) {
    if (page == Page::Iris) {
        const int column = row / kIrisRows;
        return {kIrisRow, column * kIrisColumnPitch,
                kFirstRowTop + row % kIrisRows * kSettingRowPitch};
    }
    return {kFormatRow, 0, kFirstRowTop + row * kSettingRowPitch};
}

/// A description that the next row shares is centred on both.
bool coversTwoRows(const Setting& setting) {
    return &setting != &kCatalog.back() && (&setting + 1)->description.empty();
}

}  // namespace

SettingsPages::SettingsPages(QTabWidget& tabs) : QObject(&tabs) {
    for (const PageInfo& info : kPages) {
        if (info.page != Page::Editor)
            addPage(tabs, info.page);
    }
}

void SettingsPages::addPage(QTabWidget& tabs, Page page) {
    auto* widget = new QWidget;
    for (int column = 0; column < kColumnCount && hasHeadings(page); ++column) {
        const auto index = static_cast<std::size_t>(column);
        auto* heading = addLabel(
            *widget, elementName(kHeadingNames[index], headingIndex(page)), kFormats[index],
            scaledRect(kFormatRow.cellLeft + column * kCellPitch, kSettingHeadingTop,
                       kFormatRow.cellWidth, kSettingHeadingHeight),
            Qt::AlignCenter);
        heading->setFont(scaledFont(8.25, Weight::Bold));
    }
    int row = 0;
    for (const Setting& setting : kCatalog) {
        if (setting.page == page)
            addRow(*widget, setting, row++);
    }
    tabs.addTab(widget, toQt(Info(page).caption));
}

void SettingsPages::addRow(QWidget& widget, const Setting& setting, int row) {
    const auto [layout, left, top] = placeOf(setting.page, row);
    constexpr auto kAlignment = Qt::AlignLeft | Qt::AlignVCenter;
    auto* code = addLabel(
        widget, elementName("lblControlName", setting.codeLabel), setting.code,
        scaledRect(left + layout.codeLeft, top, layout.codeWidth, kSettingRowHeight), kAlignment);
    code->setFont(scaledFont(8.25, Weight::Bold));
    code->setToolTip(toQt(setting.codeTooltip));
    addLabel(widget, elementName("lblSettingNumber", setting.codeLabel), setting.number,
             scaledRect(left + layout.numberLeft, top, layout.numberWidth, kSettingRowHeight),
             kAlignment);
    if (setting.descriptionLabel >= 0) {
        const int height =
            coversTwoRows(setting) ? kSettingRowPitch + kSettingRowHeight : kSettingRowHeight;
        addLabel(widget, elementName("lblControlDesc", setting.descriptionLabel),
                 setting.description,
                 scaledRect(left + layout.descriptionLeft, top, layout.descriptionWidth, height),
                 kAlignment);
    }
    addCells(widget, setting, row);
}

void SettingsPages::addCells(QWidget& widget, const Setting& setting, int row) {
    const auto [layout, left, top] = placeOf(setting.page, row);
    int cellLeft = left + layout.cellLeft;
    for (const CellPlace& place : setting.cells) {
        const QRect room = scaledRect(cellLeft, top, layout.cellWidth, kSettingRowHeight);
        cellLeft += kCellPitch;
        if (!place.Exists())
            continue;
        auto* cell = new SettingCell(place.cell, &widget);
        cell->setGeometry(room);
        m_cells[static_cast<std::size_t>(place.cell)] = cell;
        connect(cell, &QAbstractButton::clicked, this,
                [this, number = place.cell] { Q_EMIT cellClicked(number); });
        connect(cell, &SettingCell::characterTyped, this,
                [this, number = place.cell](char typed) { Q_EMIT characterTyped(number, typed); });
        connect(cell, &SettingCell::menuWanted, this,
                [this, number = place.cell](const QPoint& at) { Q_EMIT menuWanted(number, at); });
        connect(cell, &SettingCell::arrowPressed, this, &SettingsPages::moveFocus);
    }
    const bool hasGap =
        setting.cells[0].Exists() && setting.cells[2].Exists() && !setting.cells[1].Exists();
    if (!hasGap)
        return;
    auto* label = addLabel(widget, elementName("lblControlDesc", kDeflJungLabel), kDeflJungCaption,
                           scaledRect(left + layout.cellLeft + layout.cellWidth, top,
                                      2 * kCellPitch - layout.cellWidth, kSettingRowHeight),
                           Qt::AlignCenter);
    label->setFont(scaledFont(7.5, Weight::Normal));
}

void SettingsPages::refresh(const Program& program, int cell) {
    SettingCell& widget = *m_cells[static_cast<std::size_t>(cell)];
    const SettingCells& cells = program.cells;
    const NumberMode mode = program.state.numberMode;
    const QString misfit = cells.IsOutOfRange(cell) ? toQt(OutOfRangeText(cell, mode)) : QString();
    const Standing standing = program.StandingOfCell(cell);
    const QString text = toQt(standing.Text(mode));
    widget.show({toQt(cells.Caption(cell)), cells.Colour(cell), misfit, standing.kind, text});
    QStringList lines{misfit, toQt(CellPlaceText(cell, mode))};
    if (standing.kind != Standing::Kind::Held)
        lines += capitalized(text);
    lines.removeAll(QString());
    widget.showPlace(lines.join(QLatin1Char('\n')));
}

void SettingsPages::click(int cell) {
    m_cells[static_cast<std::size_t>(cell)]->click();
}

void SettingsPages::focus(int cell) {
    m_cells[static_cast<std::size_t>(cell)]->setFocus(Qt::OtherFocusReason);
}

void SettingsPages::moveFocus(const SettingCell* from, int key) {
    const QPoint start = from->geometry().center();
    const bool vertical = key == Qt::Key_Up || key == Qt::Key_Down;
    const int sign = key == Qt::Key_Down || key == Qt::Key_Right ? 1 : -1;
    SettingCell* nearest = nullptr;
    int nearestDistance = 0;
    for (SettingCell* cell : m_cells) {
        const QPoint way = cell->geometry().center() - start;
        const int along = sign * (vertical ? way.y() : way.x());
        const int aside = qAbs(vertical ? way.x() : way.y());
        if (cell->parent() != from->parent() || along <= 0 || (!vertical && aside != 0))
            continue;
        const int distance = along + 16 * aside;
        if (nearest == nullptr || distance < nearestDistance) {
            nearest = cell;
            nearestDistance = distance;
        }
    }
    if (nearest != nullptr)
        nearest->setFocus(Qt::OtherFocusReason);
}

}  // namespace tarnwell

#include "moc_SettingsPages.cpp"
