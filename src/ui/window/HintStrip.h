// The strip below the menu that says what a newcomer has to know first, with what to do about it.
#pragma once

#include <QLabel>
#include <QPushButton>

#include "program/Program.h"

namespace tarnwell {

class HintStrip final : public QWidget {
    Q_OBJECT
  public:
    explicit HintStrip(QWidget* parent);

    /// Takes no room where there is nothing to say, or once that was put away. `likeness` says
    /// which set was read, where that is not the chosen one, and goes before any hint.
    void show(Hint hint, const QString& likeness);

    /// Where the menu of the parallel ports pops up.
    QPushButton& usePort() { return *m_usePort; }

  Q_SIGNALS:
    void i2cWanted();
    void portWanted();
    void readWanted();
    void setWanted();

  private:
    QLabel* m_text;
    QPushButton* m_useI2C;
    QPushButton* m_usePort;
    QPushButton* m_readNow;
    QPushButton* m_useSet;
    Hint m_hint = Hint::None;
    QString m_likeness;
    bool m_isLikenessPutAway = false;
    bool m_putAway = false;
};

}  // namespace tarnwell
