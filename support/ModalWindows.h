// Acts on the modal windows that the program opens, in the place of its user.
#pragma once

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QMessageBox>
#include <QScopedValueRollback>
#include <QTimer>
#include <deque>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace tarnwell {

/// How long what is expected may take on a busy machine, in ms.
inline constexpr int kPatience = 300'000;

/// The descendant of this name; the process ends if there is none.
template <typename T>
T& Child(const QWidget& window, const QString& name) {
    auto* found = window.findChild<T*>(name);
    if (found == nullptr)
        qFatal("there is no %s", qUtf8Printable(name));
    return *found;
}

/// Each window that comes up is left to the next action, which must see to its end.
class ModalWindows final : public QObject {
  public:
    using Action = std::function<void(QWidget&)>;

    /// `unexpected` is told the title of a window that there is no action for, which is closed.
    explicit ModalWindows(std::function<void(const std::string&)> unexpected)
        : m_unexpected(std::move(unexpected)) {
        m_timer.callOnTimeout(this, &ModalWindows::look);
        m_timer.start(1);
    }

    void then(Action action) { m_actions.push_back(std::move(action)); }
    void press(QMessageBox::StandardButton button) { then(pressing(button)); }

    static Action pressing(QMessageBox::StandardButton button) {
        return [button](QWidget& window) {
            dynamic_cast<QMessageBox&>(window).button(button)->click();
        };
    }

    /// Whether each action has had its window.
    bool isDone() const { return m_actions.empty(); }

    /// The titles of the windows since the last call.
    std::vector<std::string> takeTitles() { return std::exchange(m_titles, {}); }

  private:
    void look() {
        QWidget* window = QApplication::activeModalWidget();
        if (window == nullptr || window == m_current)
            return;
        m_titles.push_back(window->windowTitle().toStdString());
        if (m_actions.empty()) {
            m_unexpected(m_titles.back());
            static_cast<QDialog*>(window)->reject();
            return;
        }
        const Action action = std::move(m_actions.front());
        m_actions.pop_front();
        const QScopedValueRollback current(m_current, window);
        action(*window);
    }

    std::function<void(const std::string&)> m_unexpected;
    QTimer m_timer;
    std::deque<Action> m_actions;
    std::vector<std::string> m_titles;
    QWidget* m_current = nullptr;  ///< has its action, which may open another
};

}  // namespace tarnwell
