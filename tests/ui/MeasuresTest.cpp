// Windows that come back: onto a screen that exists, elsewhere left where they were; fitted texts.
#include <gtest/gtest.h>

#include "ui/looks/Colours.h"
#include "ui/looks/Fitted.h"
#include "ui/looks/Measures.h"

namespace tarnwell {
namespace {

TEST(BroughtBack, LeavesAWindowWhoseTitleShowsAndBringsOthersToTheNearestScreen) {
    const QRect laptop(0, 30, 1366, 738);
    const QRect beside(1366, 0, 1920, 1080);
    const QRect onTheLeft(-1920, 0, 1920, 1080);
    struct Row {
        QPoint from;
        QList<QRect> screens;
        QPoint to;
    };
    const QSize size(500, 300);
    for (const Row& row :
         {Row{{10, 40}, {laptop}, {10, 40}},
          Row{{1000, 700}, {laptop}, {1000, 700}},  // half of it shows
          Row{{-300, 40}, {laptop}, {-300, 40}},    // enough of the title
          Row{{-490, 40}, {laptop}, {0, 40}},       // too little of it
          Row{{1350, 40}, {laptop, beside}, {1350, 40}},
          Row{{2000, 500}, {laptop, beside}, {2000, 500}},
          Row{{2000, 500}, {laptop}, {866, 468}},  // its screen is gone
          Row{{-900, 200}, {onTheLeft}, {-900, 200}}, Row{{10, 10}, {onTheLeft}, {-500, 10}},
          Row{{200, -25}, {laptop}, {200, 30}},  // above the top edge
          Row{{200, 5000}, {laptop, beside}, {200, 468}},
          Row{{9, 9}, {QRect(100, 100, 400, 200)}, {100, 100}}, Row{{9, 9}, {}, {9, 9}}})
        EXPECT_EQ(broughtBack({row.from, size}, row.screens), row.to)
            << row.from.x() << "," << row.from.y();
}

TEST(ScreenPlace, ReadsBackAsSetUnlessTheWindowMoved) {
    QWidget window;
    window.resize(300, 200);
    ScreenPlace place;
    place.place(window, {152, 157});  // no whole pixels
    EXPECT_EQ(place.of(window).top, 152);
    EXPECT_EQ(place.of(window).left, 157);
    window.move(30, 20);
    EXPECT_EQ(place.of(window).top, 300);
    EXPECT_EQ(place.of(window).left, 450);
    place.place(window, {90000, 144});
    EXPECT_LT(window.y(), 6000);
    EXPECT_EQ(place.of(window).top, screenTwips(window.y()));
}

TEST(FittedLabel, WritesItsTextInTheMiddleOfItsRoomCondensedIfItMust) {
    for (const int letters : {2, 60}) {
        FittedLabel label;
        label.setText(QString(letters, 'I'));
        label.setAlignment(Qt::AlignCenter);
        label.setFixedSize(90, 80);
        label.setColours(colours::kCell, colours::kText);
        const QImage image = label.grab().toImage();
        QRect ink;
        for (int at = 0; at < 90 * 80; ++at)
            if (image.pixelColor(at % 90, at / 90) != colours::kCell)
                ink |= QRect(at % 90, at / 90, 1, 1);
        EXPECT_TRUE(letters == 2 ? ink.width() <= 40 : ink.width() >= 80) << ink.width();
        EXPECT_LE((ink.center() - QPoint(45, 40)).manhattanLength(), 6) << letters;
    }
}

}  // namespace
}  // namespace tarnwell
