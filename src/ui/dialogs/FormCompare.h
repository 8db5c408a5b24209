// Two images side by side: what differs as a table and as a picture.
#pragma once

#include <QCheckBox>
#include <QDialog>
#include <QLabel>
#include <QPushButton>
#include <QTreeView>
#include <functional>
#include <optional>

#include "program/Program.h"
#include "ui/widgets/DifferenceMap.h"
#include "ui/widgets/DifferenceModel.h"
#include "ui/widgets/ElidingBox.h"

class QBoxLayout;

namespace tarnwell {

class FormCompare final : public QDialog {
  public:
    /// `run` runs a command that may end the program. The sides are chosen already.
    FormCompare(Program& program, User& user, std::function<void(const std::function<void()>&)> run,
                QWidget* parent);

    /// Where to go after the window was closed, if the user wants to.
    const std::optional<Destination>& destination() const { return m_destination; }

    /// While a device is read: how far it has come.
    void showProgress();

    void done(int result) override;

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    void addSide(QBoxLayout& layout, QComboBox& box, const char* name, const QString& caption,
                 Side side);
    void addButtons(QBoxLayout& layout);
    void buildTable();
    void choose(Side side, const QComboBox& box, int index);
    void chooseBackup(Side side);
    void showSides();
    void showSide(QComboBox& box, Side side);
    void showDifferences();
    void showSummary(const QString& outcome = {});
    void fitTable();
    void placeWindow();
    void step(int direction);
    void showAddress(int address);
    std::vector<DifferenceRow> selected() const;
    void enableButtons();
    void copyRows();
    void saveList();
    void showSelected(bool asSetting);
    void take();
    void write();
    void readAgain();

    Program& m_program;
    CompareCommand& m_compare;
    User& m_user;
    std::function<void(const std::function<void()>&)> m_run;
    std::optional<Destination> m_destination;

    ElidingBox m_left;
    ElidingBox m_right;
    QLabel m_summary;
    QCheckBox m_settingsOnly;
    DifferenceModel m_model;
    QTreeView m_table;
    DifferenceMap m_map;
    QBoxLayout* m_picture = nullptr;  ///< the map with its legend
    QPushButton m_saveList;
    QPushButton m_showInEditor;
    QPushButton m_showSetting;
    QPushButton m_take;
    QPushButton m_write;
    QPushButton m_readAgain;
    QPushButton m_close;
};

}  // namespace tarnwell
