// The names of one's own as a table, with their values.
#pragma once

#include <QAbstractTableModel>
#include <QStringList>

#include "program/Program.h"

namespace tarnwell {

class NameModel final : public QAbstractTableModel {
  public:
    NameModel(const Program& program, QObject* parent);

    enum Column { Name, Device, Address, Bits, InBuffer, OnDevice, Text, Columns };

    /// Shows the names that count now and of whose row each word of `filter` is a part.
    void show(const QString& filter);

    /// The values may be others.
    void refresh();

    const NameList& names() const { return m_shown; }

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

  private:
    QString text(const NamedValue& named, int column) const;

    const Program& m_program;
    NameList m_shown;
};

}  // namespace tarnwell
