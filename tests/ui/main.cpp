// Runs the window tests within one application. A warning of Qt's is a failure.
#include <gmock/gmock.h>

#include <QApplication>
#include <QFont>

namespace {

void fail(QtMsgType type, const QMessageLogContext& /*context*/, const QString& text) {
    if (type != QtDebugMsg && !text.startsWith("This plugin does not support"))
        ADD_FAILURE() << text.toStdString();
}

}  // namespace

int main(int argc, char** argv) {
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    // So its texts are as wide and look the same on every machine.
    QFont font(QStringLiteral("DejaVu Sans"), 9);
    font.setHintingPreference(QFont::PreferNoHinting);
    font.setStyleStrategy(QFont::PreferAntialias);
    QApplication::setFont(font);
    QApplication::setCursorFlashTime(0);
    qInstallMessageHandler(fail);
    testing::InitGoogleMock(&argc, argv);
    return RUN_ALL_TESTS();
}
