// The data editor's page, and the frame with the pending writes beside it.
#pragma once

#include <QCheckBox>
#include <QGroupBox>
#include <array>

#include "ui/looks/Fitted.h"
#include "ui/widgets/GridView.h"
#include "ui/widgets/Lamp.h"

namespace tarnwell {

/// Height of the tabs above a page, in twips.
inline constexpr int kTabRow = 330;

class EditorPageWidget final : public QWidget {
    Q_OBJECT
  public:
    explicit EditorPageWidget(Program& program);

    GridView& grid() { return m_view; }
    void colourHeadings();

    /// The grid has this much more room than designed.
    void layOut(QSize growth);
    void refill();
    void showSwitch(EditorSwitch editor);

  Q_SIGNALS:
    void toggled();

  private:
    void placeHeadings();

    const DataGrid& m_grid;
    GridView m_view;
    QCheckBox m_switch;
    Lamp m_lamp;
    std::array<FittedLabel*, kBytesPerRow> m_headings{};
};

class PendingFrame final : public QGroupBox {
    Q_OBJECT
  public:
    PendingFrame(const PendingWrites& pending, QWidget* parent);
    void colourRows();
    void refresh();

  Q_SIGNALS:
    void takeBackWanted(int row);

    /// The user wants to see the byte of an entry.
    void byteWanted(int row);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    bool pressKey(int row, int key);
    void popUpMenu(int row, const QPoint& place);
    void focusRow(int row);
    FittedLabel* addLabel(const QString& name, const QRect& place);

    struct Row {
        FittedLabel* address;
        FittedLabel* oldValue;
        FittedLabel* newValue;
    };
    std::array<FittedLabel*, 3> labelsOf(int row) const;

    const PendingWrites& m_pending;
    std::array<Row, kPendingRows> m_rows{};
};

}  // namespace tarnwell
