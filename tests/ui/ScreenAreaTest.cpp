// A window on a screen that is too small for its content.
#include <gtest/gtest.h>

#include <QApplication>
#include <QPushButton>
#include <QScreen>
#include <QScrollBar>
#include <QTest>
#include <QVBoxLayout>

#include "ui/desktop/ScreenArea.h"

namespace tarnwell {
namespace {

struct Window : QWidget {
    QWidget content, beside;
    QPushButton first{&content}, last{&content};
    ScreenArea* area;

    explicit Window(QSize size) {
        content.resize(size);
        last.move(size.width() - last.width(), size.height() - last.height());
        auto* layout = new QVBoxLayout(this);
        layout->setContentsMargins(0, 0, 0, 0);
        layout->setSizeConstraint(QLayout::SetFixedSize);
        area = new ScreenArea(content, beside, this);
        layout->addWidget(area);
        show();
    }
};

TEST(ScreenAreaTest, IsAsLargeAsItsContentWhereThereIsRoom) {
    const Window window({300, 200});
    EXPECT_EQ(window.area->size(), QSize(300, 200));
    EXPECT_EQ(window.area->focusPolicy(), Qt::NoFocus);
}

TEST(ScreenAreaTest, ScrollsByKeyboardToEverythingWhereThereIsNot) {
    Window window({3000, 2000});
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    const QSize screen = window.screen()->availableSize();
    EXPECT_EQ(window.frameSize().boundedTo(screen), window.frameSize());
    window.last.setFocus();
    EXPECT_TRUE(window.last.visibleRegion().contains(window.last.rect().center()));
    window.area->setFocus();
    const int before = window.area->verticalScrollBar()->value();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Up);
    EXPECT_LT(window.area->verticalScrollBar()->value(), before);
    window.content.resize(200, 100);
    QCoreApplication::processEvents();
    EXPECT_EQ(window.area->size(), QSize(200, 100));
}

}  // namespace
}  // namespace tarnwell
