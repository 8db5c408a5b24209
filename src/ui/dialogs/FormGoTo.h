// Asks for the place to go to: an address or a setting's name.
#pragma once

#include <QCompleter>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>

#include "names/Destination.h"

namespace tarnwell {

class FormGoTo final : public QDialog {
  public:
    FormGoTo(const Destinations& destinations, QWidget* parent);

    /// The place that the user named; only after the dialog was accepted.
    const Destination& destination() const { return *m_destination; }

    /// Accepts a text that names a place; of another it says so, and stays open.
    void accept() override;

  private:
    const Destinations m_destinations;
    std::optional<Destination> m_destination;
    QLineEdit m_text;
    QLabel m_problem;
    QCompleter m_completer;  ///< the first to go: its list hands the focus on to the others
};

}  // namespace tarnwell
