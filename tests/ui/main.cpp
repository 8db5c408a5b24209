// Runs the window tests within one application.
#include <gmock/gmock.h>

#include <QApplication>

int main(int argc, char** argv) {
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    testing::InitGoogleMock(&argc, argv);
    return RUN_ALL_TESTS();
}
