// Gives a byte, some of its bits or two bytes a name, or changes what a name says.
#pragma once

#include <QComboBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QSpinBox>

#include "program/Program.h"
#include "ui/dialogs/FormSets.h"

namespace tarnwell {

class FormName final : public QDialog {
  public:
    /// Of `former`, or of a new name if that is null; the fields say what `shown` does.
    FormName(Program& program, const NamedValue& shown, Named former, QWidget* parent);

    /// What the fields say, which is right once the dialog was accepted.
    NamedValue named() const;

    /// The file that it goes into.
    NameLayer layer() const { return static_cast<NameLayer>(m_layer.currentData().toInt()); }

    /// Accepts a name that can stand among the others; of another it says why not, and stays open.
    void accept() override;

  private:
    void addFields(QFormLayout& fields);
    void addLayers();
    void fill();
    void followBits();
    QString text(int number) const;
    int number(const QString& text) const;
    QWidget& fieldOf(const std::string& key);

    Program& m_program;
    const NamedValue m_start;
    const Named m_former;
    QLineEdit m_name;
    QComboBox m_device;
    QLineEdit m_address;
    QLineEdit m_low;
    QSpinBox m_lowestBit;
    QSpinBox m_highestBit;
    QLineEdit m_lowest;
    QLineEdit m_highest;
    QLineEdit m_text;
    NotesEdit m_values;
    QComboBox m_layer;
    QLabel m_problem;
    bool m_rangeIsGiven = false;
};

}  // namespace tarnwell
