// The data editor's grid as a table model over the grid's own texts.
#pragma once

#include <QAbstractTableModel>
#include <QFont>

#include "program/Program.h"

namespace tarnwell {

/// The column of the bytes as characters, behind their own.
inline constexpr int kTextColumn = kBytesPerRow + 1;
inline constexpr int kGridColumns = kTextColumn + 1;

class GridModel final : public QAbstractTableModel {
  public:
    GridModel(const Program& program, QObject* parent);

    /// Whether the byte is that of a named setting.
    static constexpr int kNamedRole = Qt::UserRole;

    /// Whether it has a name of the user's own.
    static constexpr int kOwnNameRole = Qt::UserRole + 2;

    /// A byte's Standing::Kind, as a number.
    static constexpr int kStandingRole = Qt::UserRole + 1;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;

    /// The hidden headers' texts, which a screen reader says.
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

    QModelIndex indexOf(GridCell cell) const { return index(cell.row, cell.column); }

    void refill();
    void refresh(GridCell cell);

  private:
    QString text(const QModelIndex& index) const;
    QChar character(GridCell cell) const;
    QString spokenText(const QModelIndex& index) const;
    QString toolTip(GridCell cell) const;
    QString description(GridCell cell) const;
    QString name(GridCell cell) const;
    const NameList& namesAt(GridCell cell) const;

    const Program& m_program;
    const DataGrid& m_grid;
    const ProgramState& m_state;
    QFont m_changedFont;
    QFont m_textFont;
};

}  // namespace tarnwell
