#include "ui/dialogs/FormTestInt.h"

#include <QHBoxLayout>
#include <QRadioButton>
#include <QVBoxLayout>
#include <functional>

#include "ui/looks/Heading.h"
#include "ui/looks/Measures.h"
#include "ui/looks/Text.h"

namespace tarnwell {

namespace {

enum Row { OutputHeading, Outputs, InputHeading, Inputs, AutoTest, Diagnosis };
constexpr int kLegendColumn = 2;
constexpr int kTestColumns = 3;
constexpr QColor kSensedHigh(255, 0, 0);
constexpr QColor kSensedLow(95, 0, 0);

constexpr int kLampSide = 300;
constexpr int kSwatchSide = 165;
constexpr int kDiagnosisWidth = 5700;
constexpr int kDiagnosisLines = 4;

constexpr QColor colourOf(Level level) {
    return level == Level::High ? kSensedHigh : kSensedLow;
}

}  // namespace

FormTestInt::FormTestInt(InterfaceTest& test, QWidget* parent) : QDialog(parent), m_test(test) {
    setObjectName(QStringLiteral("formTestInt"));
    setWindowTitle(QStringLiteral("I2C Interface Test"));
    auto* layout = new QGridLayout(this);
    layout->setContentsMargins(scaled(240), scaled(180), scaled(240), scaled(180));
    layout->setHorizontalSpacing(scaled(180));
    layout->setVerticalSpacing(scaled(120));
    layout->addWidget(headingLabel(QStringLiteral("Output Bit State Selection")), OutputHeading, 0,
                      1, 2);
    layout->addWidget(headingLabel(QStringLiteral("Input Bit State Indicator")), InputHeading, 0, 1,
                      2);
    addLine(*layout, m_clock,
            {"Clock", 0, "Clock (SCL)", " Manual clock output bitstate selection "},
            &InterfaceTest::DriveClock);
    addLine(*layout, m_data, {"Data", 1, "Data (SDA)", " Manual data output bitstate selection "},
            &InterfaceTest::DriveData);
    addLegend(*layout);
    addResult(*layout);
    layout->setColumnStretch(0, 1);
    layout->setColumnStretch(1, 1);
    layout->setSizeConstraint(QLayout::SetFixedSize);

    m_timer.setObjectName(QStringLiteral("Timer1"));
    m_timer.setParent(this);
    m_timer.setTimerType(Qt::PreciseTimer);
    m_timer.setInterval(kAutoTestInterval);
    connect(&m_timer, &QTimer::timeout, this, &FormTestInt::tick);
    m_test.Open();
    refresh();
}

FormTestInt::~FormTestInt() {
    endTest();
}

void FormTestInt::addLine(QGridLayout& layout, LineControls& line, const LineNames& names,
                          void (InterfaceTest::*drive)(Level)) {
    const QString array = QLatin1String(names.array) + QStringLiteral("Out");
    line.frame.setTitle(QLatin1String(names.caption));
    line.frame.setObjectName(QStringLiteral("frame") + array);
    line.toolTip = QLatin1String(names.toolTip);
    line.frame.setAccessibleName(QStringLiteral("Output ") + line.frame.title());
    auto* column = new QVBoxLayout(&line.frame);
    column->setSpacing(scaled(30));
    for (int bit = 0; bit < 2; ++bit) {
        auto* button = new QRadioButton(QStringLiteral("Logic %1").arg(bit), &line.frame);
        button->setObjectName(QStringLiteral("%1_%2").arg(array).arg(bit));
        button->setAccessibleName(line.frame.accessibleName() + QStringLiteral(", ") +
                                  button->text());
        column->addWidget(button);
        line.levels.addButton(button, bit);
    }
    layout.addWidget(&line.frame, Outputs, names.number);
    InterfaceTest& test = m_test;
    connect(&line.levels, &QButtonGroup::idClicked, this, [this, &test, drive](int bit) {
        std::invoke(drive, test, bit == 0 ? Level::Low : Level::High);
        refresh();
    });

    line.lamp.setObjectName(elementName("Shape2", names.number));
    line.lamp.setFixedSize(scaled(kLampSide), scaled(kLampSide));
    line.caption.setText(QLatin1String(names.caption));
    auto* indicator = new QHBoxLayout;
    indicator->setSpacing(scaled(90));
    indicator->addWidget(&line.lamp);
    indicator->addWidget(&line.caption);
    indicator->addStretch();
    layout.addLayout(indicator, Inputs, names.number);
}

void FormTestInt::addLegend(QGridLayout& layout) {
    struct Entry {
        const char* colourName;
        const char* meaning;
        Level level;
    };
    constexpr std::array kEntries{Entry{"Red", "= 1", Level::High},
                                  Entry{"Black", "= 0", Level::Low}};
    auto* legend = new QGridLayout;
    legend->setHorizontalSpacing(scaled(60));
    legend->setVerticalSpacing(scaled(15));
    legend->addWidget(headingLabel(QStringLiteral("Bitstate")), 0, 0, 1, 3);
    int row = 1;
    for (const Entry& entry : kEntries) {
        auto* swatch = new Lamp(this);
        swatch->setObjectName(QStringLiteral("Swatch_%1").arg(row));
        swatch->setFixedSize(scaled(kSwatchSide), scaled(kSwatchSide));
        swatch->setColour(colourOf(entry.level));
        swatch->setAccessibleName(QLatin1String(entry.colourName));
        legend->addWidget(swatch, row, 0);
        legend->addWidget(new QLabel(QLatin1String(entry.colourName)), row, 1);
        legend->addWidget(new QLabel(QLatin1String(entry.meaning)), row, 2);
        ++row;
    }
    layout.addLayout(legend, InputHeading, kLegendColumn, 2, 1, Qt::AlignCenter);
}

void FormTestInt::addResult(QGridLayout& layout) {
    m_autoTest.setText(QStringLiteral("AutoTest"));
    m_autoTest.setObjectName(QStringLiteral("AutoTestcheck"));
    m_autoTest.setAccessibleName(m_autoTest.text());
    m_autoTest.setToolTip(QStringLiteral(" Starts & ends interface autotest "));
    layout.addWidget(&m_autoTest, AutoTest, 0);
    connect(&m_autoTest, &QCheckBox::toggled, this, &FormTestInt::toggleAutoTest);

    auto* status = new QLabel(QStringLiteral("Status:"));
    status->setObjectName(QStringLiteral("Label2"));
    m_result.setObjectName(QStringLiteral("Label3"));
    m_result.setMinimumWidth(m_result.fontMetrics().horizontalAdvance(QStringLiteral("Err: SDA")));
    auto* line = new QHBoxLayout;
    line->setSpacing(scaled(90));
    line->addWidget(status);
    line->addWidget(&m_result);
    line->addStretch();
    layout.addLayout(line, AutoTest, 1, 1, 2);

    m_diagnosis.setObjectName(QStringLiteral("lblDiagnosis"));
    m_diagnosis.setTextFormat(Qt::PlainText);
    m_diagnosis.setWordWrap(true);
    m_diagnosis.setAlignment(Qt::AlignLeft | Qt::AlignTop);
    m_diagnosis.setMinimumWidth(scaled(kDiagnosisWidth));
    m_diagnosis.setMinimumHeight(kDiagnosisLines * m_diagnosis.fontMetrics().lineSpacing());
    layout.addWidget(&m_diagnosis, Diagnosis, 0, 1, kTestColumns);
}

void FormTestInt::toggleAutoTest(bool on) {
    if (on) {
        m_test.StartAutoTest();
        m_timer.start();
    } else {
        m_timer.stop();
        m_test.StopAutoTest();
    }
    refresh();
}

void FormTestInt::tick() {
    m_test.Tick();
    refresh();
}

void FormTestInt::refresh() {
    const auto show = [this](LineControls& line, Level level) {
        line.frame.setEnabled(!m_test.AutoTestRuns());
        line.frame.setToolTip(m_test.AutoTestRuns() ? QStringLiteral("End the autotest first")
                                                    : line.toolTip);
        line.lamp.setColour(colourOf(level));
        line.lamp.setAccessibleName(
            line.caption.text() + QStringLiteral(" input is %1").arg(level == Level::High ? 1 : 0));
    };
    show(m_clock, m_test.ClockIndicator());
    show(m_data, m_test.DataIndicator());
    m_result.setText(toQt(m_test.ResultText()));
    m_diagnosis.setText(toQt(m_test.Diagnosis()));
}

void FormTestInt::endTest() {
    m_timer.stop();
    m_test.Close();
}

void FormTestInt::done(int result) {
    endTest();
    QDialog::done(result);
}

}  // namespace tarnwell
