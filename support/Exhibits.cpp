// Shows the windows of the program one after the other: says the name of each, then waits for a
// line before it goes on, so that they can be looked at from outside.
#include <QApplication>
#include <QEventLoop>
#include <QSocketNotifier>
#include <iostream>

#include "support/Gallery.h"

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    tarnwell::WalkGallery([](const std::string& name, const QWidget& /*window*/) {
        std::cout << name << std::endl;
        QEventLoop loop;
        QSocketNotifier line(0, QSocketNotifier::Read);
        QObject::connect(&line, &QSocketNotifier::activated, &loop, &QEventLoop::quit);
        loop.exec();
        std::string ignored;
        if (!std::getline(std::cin, ignored))
            std::exit(EXIT_FAILURE);
    });
}
