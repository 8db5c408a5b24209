// Runs the window tests within one application.
#include <gmock/gmock.h>

#include <QApplication>
#include <QFont>

int main(int argc, char** argv) {
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    // Without hinting its texts are as wide on every machine.
    QFont font(QStringLiteral("DejaVu Sans"), 9);
    font.setHintingPreference(QFont::PreferNoHinting);
    QApplication::setFont(font);
    testing::InitGoogleMock(&argc, argv);
    return RUN_ALL_TESTS();
}
