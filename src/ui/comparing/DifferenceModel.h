// What differs between two images as a tree of two levels: rows, and the bytes of a place.
#pragma once

#include <QAbstractItemModel>

#include "differences/DifferenceTexts.h"

namespace tarnwell {

class DifferenceModel final : public QAbstractItemModel {
  public:
    using QAbstractItemModel::QAbstractItemModel;

    void show(std::vector<DifferenceRow> rows, NumberMode mode);

    const std::vector<DifferenceRow>& rows() const { return m_rows; }

    /// The row that an index is of or within.
    const DifferenceRow& rowOf(const QModelIndex& index) const;

    /// The address that an index stands for; of a row, its first.
    int addressOf(const QModelIndex& index) const;

    /// The row or the byte of a place at an address; invalid where nothing differs.
    QModelIndex indexOf(int address) const;

    /// What the selection stands for: whole rows, and of a place only the bytes that are selected
    /// where the place itself is not.
    std::vector<DifferenceRow> selected(const QModelIndexList& indexes) const;

    QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
    QModelIndex parent(const QModelIndex& index) const override;
    using QObject::parent;
    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

  private:
    std::vector<DifferenceRow> m_rows;
    NumberMode m_mode = NumberMode::Decimal;
};

}  // namespace tarnwell
