#include "ui/comparing/DifferenceModel.h"

#include <algorithm>
#include <map>
#include <utility>

#include "settings/Catalog.h"
#include "ui/looks/Text.h"

namespace tarnwell {

namespace {

/// The id of a row's index; a byte's is its row's number behind it.
constexpr quintptr kRow = 0;

bool isByte(const QModelIndex& index) {
    return index.internalId() != kRow;
}

std::size_t rowNumber(const QModelIndex& index) {
    return isByte(index) ? index.internalId() - 1 : static_cast<std::size_t>(index.row());
}

}  // namespace

void DifferenceModel::show(std::vector<DifferenceRow> rows, NumberMode mode) {
    beginResetModel();
    m_rows = std::move(rows);
    m_mode = mode;
    endResetModel();
}

const DifferenceRow& DifferenceModel::rowOf(const QModelIndex& index) const {
    return m_rows[rowNumber(index)];
}

int DifferenceModel::addressOf(const QModelIndex& index) const {
    const DifferenceRow& row = rowOf(index);
    return isByte(index) ? row.bytes[static_cast<std::size_t>(index.row())].address : row.Address();
}

QModelIndex DifferenceModel::indexOf(int address) const {
    const auto isAt = [=](const DifferenceRow& row) {
        return row.Address() <= address && address <= row.bytes.back().address;
    };
    const auto found = std::ranges::find_if(m_rows, isAt);
    if (found == m_rows.end())
        return {};
    const QModelIndex row = index(static_cast<int>(found - m_rows.begin()), 0);
    return found->bytes.size() == 1 ? row : index(address - found->Address(), 0, row);
}

std::vector<DifferenceRow> DifferenceModel::selected(const QModelIndexList& indexes) const {
    std::map<std::size_t, std::map<int, Difference>> bytes;
    std::map<std::size_t, DifferenceRow> rows;
    for (const QModelIndex& index : indexes) {
        const DifferenceRow& row = rowOf(index);
        if (!isByte(index)) {
            rows[rowNumber(index)] = row;
            continue;
        }
        bytes[rowNumber(index)].emplace(index.row(),
                                        row.bytes[static_cast<std::size_t>(index.row())]);
    }
    for (const auto& [number, some] : bytes) {
        const auto [row, isNew] = rows.try_emplace(number);
        if (!isNew)
            continue;
        row->second.bytes.reserve(some.size());
        for (const auto& [place, byte] : some)
            row->second.bytes.push_back(byte);
    }
    std::vector<DifferenceRow> result;
    result.reserve(rows.size());
    for (const auto& [number, row] : rows)
        result.push_back(row);
    return result;
}

QModelIndex DifferenceModel::index(int row, int column, const QModelIndex& parent) const {
    if (row < 0 || row >= rowCount(parent))
        return {};
    return createIndex(row, column,
                       parent.isValid() ? static_cast<quintptr>(parent.row()) + 1 : kRow);
}

QModelIndex DifferenceModel::parent(const QModelIndex& index) const {
    return index.isValid() && isByte(index)
               ? createIndex(static_cast<int>(rowNumber(index)), 0, kRow)
               : QModelIndex();
}

int DifferenceModel::rowCount(const QModelIndex& parent) const {
    if (!parent.isValid())
        return static_cast<int>(m_rows.size());
    const bool isPlace = !isByte(parent) && !rowOf(parent).named;
    const std::size_t bytes = isPlace ? rowOf(parent).bytes.size() : 0;
    return bytes > 1 && parent.column() == 0 ? static_cast<int>(bytes) : 0;
}

int DifferenceModel::columnCount(const QModelIndex& /*parent*/) const {
    return static_cast<int>(kDifferenceColumns.size());
}

QVariant DifferenceModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || (role != Qt::DisplayRole && role != Qt::ToolTipRole))
        return {};
    const DifferenceRow& row = rowOf(index);
    if (role == Qt::ToolTipRole)
        return row.named ? QVariant(toQt(TitleOf(*row.named))) : QVariant();
    const DifferenceTexts texts =
        isByte(index) ? TextsOf(row.bytes[static_cast<std::size_t>(index.row())], m_mode)
                      : TextsOf(row, m_mode);
    return toQt(texts[static_cast<std::size_t>(index.column())]);
}

QVariant DifferenceModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    return toQt(kDifferenceColumns[static_cast<std::size_t>(section)]);
}

}  // namespace tarnwell
