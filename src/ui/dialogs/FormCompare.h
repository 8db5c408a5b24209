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
#include "ui/comparing/DifferenceMap.h"
#include "ui/comparing/DifferenceModel.h"
#include "ui/comparing/SideBox.h"
#include "ui/comparing/WatchPane.h"

class QBoxLayout;

namespace tarnwell {

class FormCompare final : public QDialog {
  public:
    /// `run` runs a command that may end the program, `name` names the bytes of rows. The sides are
    /// chosen already.
    FormCompare(Program& program, User& user, std::function<void(const std::function<void()>&)> run,
                NameBytes name, QWidget* parent);

    /// Where to go after the window was closed, if the user wants to.
    const std::optional<Destination>& destination() const { return m_destination; }

    /// While a device is read: how far it has come.
    void showProgress();

    void done(int result) override;

  protected:
    void keyPressEvent(QKeyEvent* event) override;

  private:
    void addButtons(QBoxLayout& layout);
    void buildTable();
    void run(const std::function<void()>& command);
    void choose(Side side, Source source, std::optional<int> file);
    void chooseBackup(Side side);
    void showSides();
    void showDifferences();
    void showSummary(const QString& outcome = {});
    void fitTable();
    void placeWindow();
    void makeRoom();
    void step(int direction);
    void showAddress(int address);
    std::vector<DifferenceRow> selected() const;
    void enableButtons();
    void showSelected(bool asSetting);
    void take();
    void write();
    void readAgain();
    void nameSelected();
    void showNames();

    Program& m_program;
    CompareCommand& m_compare;
    User& m_user;
    std::function<void(const std::function<void()>&)> m_command;
    const NameBytes m_name;
    std::optional<Destination> m_destination;

    SideBox m_left;
    SideBox m_right;
    QLabel m_summary;
    QCheckBox m_settingsOnly;
    WatchPane m_watch;
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
