// The five settings pages, laid out from the catalog.
#pragma once

#include <QTabWidget>
#include <array>

#include "program/Program.h"
#include "ui/widgets/SettingCell.h"

namespace tarnwell {

class SettingsPages final : public QObject {
    Q_OBJECT
  public:
    /// Adds the pages to `tabs`, in the order of the catalog's pages.
    explicit SettingsPages(QTabWidget& tabs);

    /// Shows what the program holds for one cell.
    void refresh(const Program& program, int cell);

    void click(int cell);
    const QWidget& widget(int cell) const { return *m_cells[static_cast<std::size_t>(cell)]; }

    /// Gives a cell, on the page that is shown, the focus.
    void focus(int cell);

  Q_SIGNALS:
    void cellClicked(int cell);
    void characterTyped(int cell, char character);
    void menuWanted(int cell, const QPoint& place);

  private:
    void addPage(QTabWidget& tabs, Page page);
    void addRow(QWidget& widget, const Setting& setting, int row);
    void addCells(QWidget& widget, const Setting& setting, int row);
    void moveFocus(const SettingCell* from, int key);

    std::array<SettingCell*, kCellCount> m_cells{};
};

}  // namespace tarnwell
