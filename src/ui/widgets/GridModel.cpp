#include "ui/widgets/GridModel.h"

#include "core/user/Number.h"
#include "ui/looks/Colours.h"
#include "ui/looks/Measures.h"
#include "ui/looks/Text.h"

namespace tarnwell {

namespace {

constexpr int kRowAddressColumn = 0;

GridCell cellOf(const QModelIndex& index) {
    return {index.row(), index.column()};
}

}  // namespace

GridModel::GridModel(const Program& program, QObject* parent)
    : QAbstractTableModel(parent),
      m_program(program),
      m_grid(program.grid),
      m_state(program.state),
      m_changedFont(scaledFont(8.25, Weight::Bold)) {}

int GridModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : kGridRows;
}

int GridModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : kGridColumns;
}

QVariant GridModel::data(const QModelIndex& index, int role) const {
    const bool isAddress = index.column() == kRowAddressColumn;
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
            return isAddress ? QVariant() : QVariant(toolTip(cellOf(index)));
        case Qt::AccessibleDescriptionRole:
            return isAddress ? QVariant() : QVariant(description(cellOf(index)));
        case kStandingRole:
            return isAddress
                       ? static_cast<int>(Standing::Kind::Held)
                       : static_cast<int>(m_program.StandingOfByte(cellOf(index).Address()).kind);
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
    if (index.column() == kRowAddressColumn)
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
    return section == kRowAddressColumn ? QStringLiteral("Address")
                                        : toQt(m_grid.HeadingText(section - 1));
}

QString GridModel::name(GridCell cell) const {
    if (!isNamed(cell))
        return {};
    const auto setting = CellAtAddress(cell.Address());
    const std::string_view description = Cell(*setting).setting->description;
    QString name = QLatin1Char(' ') + toQt(CellTitle(*setting)) + QLatin1Char(' ');
    if (!description.empty())
        name += toQt(description) + QLatin1Char(' ');
    return name;
}

QString GridModel::toolTip(GridCell cell) const {
    const Standing standing = m_program.StandingOfByte(cell.Address());
    QStringList lines{name(cell)};
    if (standing.kind != Standing::Kind::Held)
        lines += QLatin1Char(' ') + capitalized(toQt(standing.Text(m_state.numberMode))) +
                 QLatin1Char(' ');
    lines.removeAll(QString());
    return lines.join(QLatin1Char('\n'));
}

QString GridModel::description(GridCell cell) const {
    return name(cell) + toQt(m_program.StandingOfByte(cell.Address()).Text(m_state.numberMode));
}

Qt::ItemFlags GridModel::flags(const QModelIndex& index) const {
    return index.column() == kRowAddressColumn ? Qt::ItemIsEnabled
                                               : Qt::ItemIsEnabled | Qt::ItemIsSelectable;
}

void GridModel::refill() {
    Q_EMIT dataChanged(index(0, 0), index(kGridRows - 1, kGridColumns - 1));
}

void GridModel::refresh(GridCell cell) {
    Q_EMIT dataChanged(indexOf(cell), indexOf(cell));
}

}  // namespace tarnwell
