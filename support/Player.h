// Plays a table of steps on the program's windows, in the place of its user.
#pragma once

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAction>
#include <QApplication>
#include <QContextMenuEvent>
#include <QMenu>
#include <QPointer>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <algorithm>
#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <utility>
#include <variant>

namespace tarnwell {

/// How long what is expected may take on a busy machine, in ms.
inline constexpr int kPatience = 300'000;

/// The descendant of this name; the process ends if there is none.
template <typename T = QWidget>
T& Child(const QWidget& window, const QString& name) {
    auto* found = window.findChild<T*>(name);
    if (found == nullptr)
        qFatal("there is no %s in %s", qUtf8Printable(name), qUtf8Printable(window.windowTitle()));
    return *found;
}

/// What is done, and what is looked at then. A text is words, done in turn in the window that takes
/// input: the name of a button, an item or a menu that is chosen, a key, or a verb and what it is
/// about, where ~ is a blank.
struct Act {
    std::variant<QString, std::function<void()>> does;
    QString at{};
    QString told{};
};

class Player {
  public:
    explicit Player(QWidget& window) : m_window(window) {}
    Player(const Player&) = delete;
    Player& operator=(const Player&) = delete;
    virtual ~Player() = default;

    void play(std::initializer_list<Act> acts) {
        m_acts.clear();
        for (const Act& act : acts) {
            const auto* words = std::get_if<QString>(&act.does);
            for (const QString& word : words ? words->split(' ') : QStringList())
                m_acts.push_back({word});
            if (words == nullptr)
                m_acts.push_back(act);
            m_acts.back().at = act.at;
            m_acts.back().told = act.told;
        }
        playOn();
    }

    /// By the verb in front of a ":".
    std::map<QString, std::function<void(const QString&)>> verbs{
        {"on",
         [this](const QString& name) {
             activate(*Child(front(), name).window());
             Child(front(), name).setFocus();
         }},
        {"menu",
         [this](const QString& name) {
             QContextMenuEvent wanted(QContextMenuEvent::Keyboard, {}, m_window.pos());
             QCoreApplication::sendEvent(&Child(front(), name), &wanted);
         }},
        {"type", [this](const QString& text) { QTest::keyClicks(&focus(), text); }},
    };

    void perform(QString word) const {
        QWidget& window = front();
        word.replace('~', ' ');
        if (word.isEmpty())
            return;
        if (const auto verb = verbs.find(word.section(':', 0, 0)); verb != verbs.end()) {
            verb->second(word.section(':', 1));
        } else if (auto* menu = window.findChild<QMenu*>(word)) {
            menu->popup({});
        } else if (auto* item = window.findChild<QAction*>(word)) {
            item->trigger();
            if (auto* open = qobject_cast<QMenu*>(&window))
                open->close();
        } else if (auto* button = buttonOf(window, word)) {
            QTest::mouseClick(button, Qt::LeftButton, {}, {8, button->height() / 2});
        } else if (auto* widget = window.findChild<QWidget*>(word)) {
            QTest::mouseClick(widget, Qt::LeftButton);
        } else {
            const QKeyCombination key = QKeySequence(word)[0];
            if (key.key() == Qt::Key_unknown)
                qFatal("there is no %s", qUtf8Printable(word));
            QTest::keyClick(&focus(), key.key(), key.keyboardModifiers());
            if (key.keyboardModifiers() == Qt::AltModifier)
                letGo();
        }
    }

    /// That which takes input.
    QWidget& front() const {
        QWidget* popup = QApplication::activePopupWidget();
        QWidget* modal = QApplication::activeModalWidget();
        return popup != nullptr ? *popup : modal != nullptr ? *modal : m_window;
    }

    QWidget& focus() const {
        QWidget& window = front();
        if (QApplication::activePopupWidget() != nullptr) {
            auto* list = window.findChild<QAbstractItemView*>();
            return list != nullptr ? *list : window;
        }
        const bool isBehind =
            QApplication::activeModalWidget() && QApplication::activeWindow() != &window;
        if (QApplication::focusWidget() == nullptr || isBehind)
            activate(window);
        QWidget* const focused = QApplication::focusWidget();
        return focused != nullptr ? *focused : window;
    }

  protected:
    /// Is called after each step, as soon as its window is there if it opens one.
    virtual void look(const Act& act) = 0;

    QWidget& m_window;

  private:
    /// Until the steps or the window are at their end; what ends the window is looked at below it.
    void playOn() {
        QWidget* const modal = QApplication::activeModalWidget();
        const QPointer<QWidget> still = modal;
        while (!m_acts.empty() && QApplication::activeModalWidget() == modal) {
            const Act act = m_acts.front();
            m_acts.pop_front();
            m_done = act;
            QTimer timer;
            timer.callOnTimeout([&] {
                QWidget* opened = QApplication::activeModalWidget();
                const bool isClosing = modal != nullptr && (still == nullptr || still->isHidden());
                if (opened == nullptr || opened == modal || isClosing)
                    return;
                lookAtDone();
                if (m_acts.empty())
                    qFatal("unexpected window: %s", qUtf8Printable(opened->windowTitle()));
                playOn();
            });
            timer.start(1);
            if (const auto* word = std::get_if<QString>(&act.does))
                perform(*word);
            else
                std::get<1>(act.does)();
            if (QApplication::activeModalWidget() == modal)
                lookAtDone();
        }
    }
    void lookAtDone() {
        if (const auto done = std::exchange(m_done, std::nullopt); done && !done->at.isEmpty())
            look(*done);
    }

    /// By its name or its caption.
    static QAbstractButton* buttonOf(const QWidget& window, const QString& word) {
        for (auto* button : window.findChildren<QPushButton*>()) {
            if (button->text().remove('&') == word)
                return button;
        }
        return window.findChild<QAbstractButton*>(word);
    }
    /// A button is pressed for a moment before its key has its effect.
    void letGo() const {
        const auto isDown = [this] {
            const auto buttons = front().findChildren<QPushButton*>();
            return std::ranges::any_of(buttons, &QPushButton::isDown);
        };
        if (!QTest::qWaitFor([&] { return !isDown(); }, kPatience))
            qFatal("a button stays down");
    }
    static void activate(QWidget& window) {
        window.activateWindow();
        if (!QTest::qWaitFor([&] { return QApplication::activeWindow() == &window; }, kPatience))
            qFatal("%s is not active", qUtf8Printable(window.windowTitle()));
    }
    std::deque<Act> m_acts;
    std::optional<Act> m_done;  ///< not yet looked at
};

}  // namespace tarnwell
