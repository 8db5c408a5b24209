// The names of one's own: a table of them, and what is done with them.
#pragma once

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTreeView>
#include <functional>

#include "ui/dialogs/names/FormName.h"
#include "ui/dialogs/names/NameModel.h"

namespace tarnwell {

class FormNames final : public QDialog {
  public:
    /// `run` runs the program's commands.
    FormNames(Program& program, std::function<void(const std::function<void()>&)> run,
              QWidget* parent);
    ~FormNames() override;

    /// Where to go after the window was closed, if the user wants to.
    const std::optional<Destination>& destination() const { return m_destination; }

  private:
    QPushButton* addButton(const char* name, const char* text, std::function<void()> pressed);
    void addButtons(QBoxLayout& layout);
    void showNames();
    NameList selected() const;
    void enableButtons();
    void edit();
    void changeValue();
    void remove();
    void showInEditor();
    void openFile();
    void readFile();
    void save();
    std::optional<std::string> askFile(FileRequest::Kind kind, std::string_view title);

    Program& m_program;
    const std::function<void(const std::function<void()>&)> m_run;
    std::optional<Destination> m_destination;
    NameModel m_model;
    QLineEdit m_filter;
    QTreeView m_table;
    QLabel m_faults;
    QPushButton* m_edit = nullptr;
    QPushButton* m_value = nullptr;
    QPushButton* m_remove = nullptr;
    QPushButton* m_show = nullptr;
};

}  // namespace tarnwell
