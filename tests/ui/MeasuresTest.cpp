// Windows that come back: onto a screen that exists, elsewhere left where the user put them; texts
// that are fitted into their room.
#include <gtest/gtest.h>

#include <QPainter>
#include <QPushButton>
#include <QScreen>
#include <QStyleOption>

#include "ui/looks/Colours.h"
#include "ui/looks/Fitted.h"
#include "ui/looks/Measures.h"
#include "ui/looks/ReadableStyle.h"

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
    const int half = 30 - scaled(300) + scaled(300) / 2;  // of the title shows below the top edge
    for (const Row& row :
         {Row{{10, 40}, {laptop}, {10, 40}},
          Row{{1000, 700}, {laptop}, {1000, 700}},  // half of it shows
          Row{{-300, 40}, {laptop}, {-300, 40}},    // enough of the title
          Row{{-490, 40}, {laptop}, {0, 40}},       // too little of it
          Row{{1350, 40}, {laptop, beside}, {1350, 40}},
          Row{{2000, 500}, {laptop, beside}, {2000, 500}},
          Row{{2000, 500}, {laptop}, {866, 468}},  // its screen is gone
          Row{{-900, 200}, {onTheLeft}, {-900, 200}}, Row{{10, 10}, {onTheLeft}, {-500, 10}},
          Row{{200, half}, {laptop}, {200, half}}, Row{{200, half - 1}, {laptop}, {200, 30}},
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
    EXPECT_EQ(window.geometry().bottom() + scaled(300),
              window.screen()->availableGeometry().bottom())
        << "below its title";
    EXPECT_EQ(place.of(window).top, screenTwips(window.y()));

    const int gap = scaled(60), right = window.screen()->availableGeometry().right();
    const int last = right - window.width() - 15;  // where the window fits with its frame
    for (const auto& [shown, at] :
         {std::pair(QRect(20, 50, 40, 20), QPoint(59 + gap, 50)),
          {QRect(last - gap, 50, 1, 20), {last, 50}},
          {QRect(last - gap + 1, 50, 1, 20), {last - 2 * gap - window.width() - 14, 50}},
          {QRect(5, 790, 790, 9), {0, 552}}}) {
        place.placeBeside(window, {7, 8}, shown);
        EXPECT_EQ(window.pos(), at);
        EXPECT_TRUE(place.of(window).top == 7 && place.of(window).left == 8);
    }
}

TEST(FittedLabel, WritesItsTextInTheMiddleOfItsRoomCondensedIfItMust) {
    for (int kind = 0; kind < 8; ++kind) {
        const bool isLong = kind % 2 == 1, enabled = kind / 2 % 2 == 1, coloured = kind / 4 == 1;
        FittedLabel label;
        label.setText(QString(isLong ? 23 : 2, 'I'));
        label.setAlignment(Qt::AlignCenter);
        label.setFrameStyle(QFrame::Panel | QFrame::Plain);
        label.setFixedSize(92, 80);
        label.setEnabled(enabled);
        coloured ? label.setColours(colours::kCell, colours::kText) : void();
        const QImage image = label.grab().toImage();
        const QRgb background = coloured ? colours::kCell.rgb() : image.pixel(2, 2);
        EXPECT_NE(image.pixel(0, 0), background);
        QRect ink;
        int darkest = 255;
        for (int at = 0; at < 90 * 78; ++at) {
            const QRect dot(1 + at % 90, 1 + at / 90, 1, 1);
            const QRgb colour = image.pixel(dot.topLeft());
            ink |= colour == background ? QRect() : dot;
            darkest = qMin(darkest, qGray(colour));
        }
        EXPECT_TRUE(isLong ? ink.width() >= 80 : ink.width() <= 40) << ink.width();
        EXPECT_LE((ink.center() - QPoint(46, 40)).manhattanLength(), 6) << kind;
        EXPECT_EQ(darkest < 100, enabled) << kind;
    }
}

TEST(FitCaption, MakesTheFontAsSmallAsTheCaptionNeedsWithoutItsAmpersand) {
    QPushButton button("&Fit");
    const int pixels = QFontInfo(button.font()).pixelSize();
    const int needed = button.fontMetrics().horizontalAdvance("Fit") + scaled(150);
    for (const int missing : {0, 1}) {
        button.setFixedWidth(needed - missing);
        fitCaption(button, 150);
        EXPECT_EQ(QFontInfo(button.font()).pixelSize(), pixels - missing);
    }
}

TEST(ReadableStyle, DrawsEdgesThatAreSeenOnADarkWindowAndFocusFrames) {
    using S = QStyle;
    const ReadableStyle style;
    const auto paint = [](const S& with, int element, QColor window, QColor text, int focus) {
        QStyleOptionButton button;
        QStyleOptionTab tab;
        QStyleOption& option = element < 0 ? static_cast<QStyleOption&>(tab) : button;
        option.palette = QPalette(text, window, {}, {}, {}, text, window);
        option.rect = QRect(0, 0, 40, 40);
        option.state = S::State_Enabled | S::State_Selected | S::State(focus);
        QImage image(40, 40, QImage::Format_RGB32);
        image.fill(window);
        QPainter painter(&image);
        element < 0 ? with.drawControl(S::CE_TabBarTabShape, &option, &painter)
                    : with.drawPrimitive(S::PrimitiveElement(element), &option, &painter);
        return image;
    };
    const std::pair<int, std::string> rows[] = {{S::PE_IndicatorRadioButton, "eeee"},
                                                {S::PE_IndicatorCheckBox, "eeee"},
                                                {S::PE_PanelButtonCommand, "-FeF"},
                                                {S::PE_FrameLineEdit, "--e-"},
                                                {S::PE_Frame, "--e-"},
                                                {S::PE_PanelMenu, "--e-"},
                                                {S::PE_FrameFocusRect, "FFFF"},
                                                {S::PE_PanelMenuBar, "----"},
                                                {-1, "-ILI"}};  // a tab
    for (const auto& [element, expected] : rows) {
        std::string shown;
        for (int kind = 0; kind < 4; ++kind) {
            const QColor window(kind < 2 ? Qt::white : Qt::black),
                text(kind < 2 ? Qt::black : Qt::white);
            const int focus = kind % 2 == 1 ? S::State_HasFocus : S::State_None;
            const QImage image = paint(style, element, window, text, focus);
            shown += image == paint(*style.baseStyle(), element, window, text, focus) ? '-'
                     : image.pixelColor(0, 20) == text                                ? 'F'
                     : image.pixelColor(4, 20) == text                                ? 'I'
                     : image.pixelColor(20, 1) == text                                ? 'L'
                     : contrast(image.pixel(0, 20), window) >= 3                      ? 'e'
                                                                                      : '?';
        }
        EXPECT_EQ(shown, expected) << element;
    }
    EXPECT_NEAR(contrast(Qt::white, Qt::blue) * contrast(Qt::green, Qt::red), 8.59 * 2.91, 0.1);
}

}  // namespace
}  // namespace tarnwell
