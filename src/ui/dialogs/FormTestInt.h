// The interface test: buttons that drive the adapter's lines and lamps that show what came back.
#pragma once

#include <QButtonGroup>
#include <QCheckBox>
#include <QDialog>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QTimer>

#include "i2c/parallel/InterfaceTest.h"
#include "ui/widgets/Lamp.h"

namespace tarnwell {

class FormTestInt final : public QDialog {
  public:
    /// Opens `test`, whose pre-check has passed, and closes it however the dialog ends.
    FormTestInt(InterfaceTest& test, QWidget* parent);
    ~FormTestInt() override;

    void done(int result) override;

  private:
    /// One line's controls.
    struct LineControls {
        QGroupBox frame;
        QButtonGroup levels;
        Lamp lamp{nullptr};
        QLabel caption;
        QString toolTip;  ///< of the frame, while the lines may be driven
    };
    struct LineNames {
        const char* array;
        int number;
        const char* caption;
        const char* toolTip;
    };

    void addLine(QGridLayout& layout, LineControls& line, const LineNames& names,
                 void (InterfaceTest::*drive)(Level));
    void addLegend(QGridLayout& layout);
    void addResult(QGridLayout& layout);
    void toggleAutoTest(bool on);
    void tick();
    void refresh();
    void endTest();

    InterfaceTest& m_test;
    LineControls m_clock;
    LineControls m_data;
    QCheckBox m_autoTest;
    QLabel m_result;
    QLabel m_diagnosis;
    QTimer m_timer;
};

}  // namespace tarnwell
