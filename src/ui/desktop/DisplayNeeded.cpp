#include "ui/desktop/DisplayNeeded.h"

#include <QString>
#include <cstdio>
#include <cstdlib>

#include "ui/desktop/CommandLine.h"

namespace tarnwell {

namespace {

void endOrPassOn(QtMsgType type, const QMessageLogContext& context, const QString& text) {
    if (type == QtFatalMsg)
        refuse("There is no display to show the window on.");
    // The reasons that a window system has are Qt's own.
    if (!QLatin1String(context.category).startsWith(QLatin1String("qt.qpa")))
        std::fprintf(stderr, "%s\n", qPrintable(qFormatLogMessage(type, context, text)));
}

}  // namespace

DisplayNeeded::DisplayNeeded() {
    qInstallMessageHandler(endOrPassOn);
}

DisplayNeeded::~DisplayNeeded() {
    qInstallMessageHandler(nullptr);
}

}  // namespace tarnwell
