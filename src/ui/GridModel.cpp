#include "ui/GridModel.h"

#include "ui/Colours.h"
#include "ui/Measures.h"
#include "ui/Text.h"

namespace tarnwell {

namespace {

constexpr int kAddressColumn = 0;

GridCell cellOf(const QModelIndex& index) {
    return {index.row(), index.column()};
}

}  // namespace

GridModel::GridModel(const DataGrid& grid, const ProgramState& state, QObject* parent)
    : QAbstractTableModel(parent),
      m_grid(grid),
      m_state(state),
      m_changedFont(scaledFont(8.25, Weight::Bold)) {}

int GridModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : kGridRows;
}

int GridModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : kGridColumns;
}

QVariant GridModel::data(const QModelIndex& index, int role) const {
    const bool isAddress = index.column() == kAddressColumn;
    switch (role) {
        case Qt::DisplayRole:
        case Qt::AccessibleTextRole:
            return text(index);
        case Qt::TextAlignmentRole:
            return static_cast<int>(isAddress ? Qt::AlignRight | Qt::AlignVCenter
                                              : Qt::AlignCenter);
        case Qt::BackgroundRole:
            return isAddress ? colours::kHeading : colours::kCell;
        case Qt::ForegroundRole:
            return colours::kText;
        case Qt::FontRole:
            return !isAddress && m_grid.IsChanged(cellOf(index)) ? QVariant(m_changedFont)
                                                                 : QVariant();
        case Qt::ToolTipRole:
            return isAddress ? QVariant() : QVariant(toolTip(cellOf(index)));
        default:
            return {};
    }
}

QString GridModel::text(const QModelIndex& index) const {
    if (index.column() == kAddressColumn)
        return toQt(m_grid.RowAddressText(index.row()));
    return toQt(m_grid.Text(cellOf(index)));
}

QString GridModel::toolTip(GridCell cell) const {
    const auto setting = CellAtAddress(cell.Address());
    if (!setting || m_state.targetDevice == TargetDevice::Secondary)
        return {};
    const std::string_view description = Cell(*setting).setting->description;
    QString tip = QLatin1Char(' ') + toQt(CellTitle(*setting)) + QLatin1Char(' ');
    if (!description.empty())
        tip += toQt(description) + QLatin1Char(' ');
    return tip;
}

Qt::ItemFlags GridModel::flags(const QModelIndex& index) const {
    return index.column() == kAddressColumn ? Qt::ItemIsEnabled
                                            : Qt::ItemIsEnabled | Qt::ItemIsSelectable;
}

void GridModel::refill() {
    Q_EMIT dataChanged(index(0, 0), index(kGridRows - 1, kGridColumns - 1));
}

void GridModel::refresh(GridCell cell) {
    Q_EMIT dataChanged(indexOf(cell), indexOf(cell));
}

}  // namespace tarnwell
