#include "ui/widgets/GridModel.h"

#include "core/Number.h"
#include "ui/looks/Colours.h"
#include "ui/looks/Measures.h"
#include "ui/looks/Text.h"

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
            return text(index);
        case Qt::AccessibleTextRole:
            return isAddress ? text(index) : spokenText(index);
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
        case Qt::AccessibleDescriptionRole:
            return isAddress ? QVariant() : QVariant(toolTip(cellOf(index)));
        case kNamedRole:
            return !isAddress && isNamed(cellOf(index));
        default:
            return {};
    }
}

bool GridModel::isNamed(GridCell cell) const {
    return m_state.targetDevice == TargetDevice::Primary &&
           CellAtAddress(cell.Address()).has_value();
}

QString GridModel::text(const QModelIndex& index) const {
    if (index.column() == kAddressColumn)
        return toQt(m_grid.RowAddressText(index.row()));
    return toQt(m_grid.Text(cellOf(index)));
}

QString GridModel::spokenText(const QModelIndex& index) const {
    const GridCell cell = cellOf(index);
    const std::string address =
        NumberText(static_cast<std::uint32_t>(cell.Address()), m_state.numberMode);
    return QStringLiteral("Address %1: %2%3")
        .arg(toQt(address), text(index).isEmpty() ? QStringLiteral("empty") : text(index),
             m_grid.IsChanged(cell) ? QStringLiteral(", changed") : QString());
}

QVariant GridModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (role != Qt::DisplayRole)
        return {};
    if (orientation == Qt::Vertical)
        return toQt(m_grid.RowAddressText(section));
    return section == kAddressColumn ? QStringLiteral("Address")
                                     : toQt(m_grid.HeadingText(section - 1));
}

QString GridModel::toolTip(GridCell cell) const {
    if (!isNamed(cell))
        return {};
    const auto setting = CellAtAddress(cell.Address());
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
