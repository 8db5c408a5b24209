#include "ui/window/Navigation.h"

#include <utility>

#include "ui/dialogs/FormGoTo.h"
#include "ui/looks/Text.h"

namespace tarnwell {

Navigation::Navigation(QWidget& window, Program& program,
                       std::function<void(const std::function<void()>&)> run)
    : m_window(window), m_program(program), m_run(std::move(run)) {}

void Navigation::goTo() {
    const ProgramState& state = m_program.state;
    FormGoTo dialog({m_program.names, state.targetDevice, state.numberMode}, &m_window);
    if (dialog.exec() == QDialog::Accepted)
        m_run([&] { m_program.GoTo(dialog.destination()); });
}

void Navigation::find() {
    if (m_findWindow == nullptr) {
        m_findWindow = new FormFind(m_program.find, &m_window);
        QObject::connect(m_findWindow, &FormFind::wanted, &m_window,
                         [this](FindDirection direction) { findAgain(direction); });
    }
    QStringList names;
    for (const Named& named : m_program.names.On(m_program.state.targetDevice))
        names += toQt(TitleOf(*named));
    m_findWindow->ask(
        m_program.grid.Side() == GridSide::Text ? std::optional(FindKind::Text) : std::nullopt,
        names);
}

void Navigation::findAgain(FindDirection direction) {
    if (m_program.find.KnowsWhat())
        m_run([&] { m_program.find.Go(direction); });
    else
        find();
}

void Navigation::showByte(int address) {
    m_run([&] { m_program.editorPage.ShowByte(address); });
}

}  // namespace tarnwell
