// Walks through every window of the program in one look, keeps a picture of each and checks by the
// widgets' own measures that its texts can be read. Usage: looks_test LOOK FOLDER
#include <QApplication>
#include <QDir>
#include <QGroupBox>
#include <QLineEdit>
#include <QMenuBar>
#include <QScreen>
#include <QStyleOptionGroupBox>
#include <QTabBar>
#include <algorithm>
#include <map>

#include "support/Gallery.h"
#include "ui/looks/Colours.h"
#include "ui/looks/Fitted.h"
#include "ui/looks/Measures.h"
#include "ui/looks/ReadableStyle.h"
#include "ui/widgets/GridView.h"
#include "ui/widgets/SettingCell.h"

namespace tarnwell {
namespace {

constexpr double kSeenContrast = 3;  // of a focus frame
constexpr int kSeenPixels = 40;
constexpr double kContrast = 4.5;   // WCAG 2.1, 1.4.3
constexpr double kNarrowest = 0.7;  // what a condensed text is still read at

struct Look {
    QLatin1String name;
    QColor window, text, highlight;
    int points = 0;
    const char* styleSheet = "";
};
const Look kLooks[] = {
    {QLatin1String("light"), {}, {}, {}},
    {QLatin1String("dark"), "#2b2b2b", "#f0f0f0", "#1a6ac0"},
    {QLatin1String("contrast"), "#000000", "#ffffff", "#ffff00"},
    {QLatin1String("sheet"), {}, {}, {}, 0, "* { color: white; background-color: black; }"},
    {QLatin1String("200percent"), {}, {}, {}},  // by QT_SCALE_FACTOR
    {QLatin1String("20point"), {}, {}, {}, 20},
};

void wear(const Look& look) {
    QFont font = QApplication::font();
    font.setPointSize(look.points > 0 ? look.points : font.pointSize());
    QApplication::setFont(font);
    if (look.window.isValid()) {
        QPalette palette(look.text, look.window, look.window.lighter(), look.window.darker(),
                         look.window.lighter(120), look.text, Qt::white, look.window.darker(140),
                         look.window);
        palette.setColor(QPalette::Highlight, look.highlight);
        const bool light = look.highlight.lightness() > look.window.lightness() + 120;
        palette.setColor(QPalette::HighlightedText, light ? Qt::black : Qt::white);
        for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
            palette.setColor(QPalette::Disabled, role, Qt::gray);
        QApplication::setPalette(palette);
    }
    qApp->setStyleSheet(QLatin1String(look.styleSheet));
}

/// A text of a widget, the room that it has there and the size that it needs.
struct Text {
    QString text;
    QRect room;
    QSize needed;
    double narrowest;  ///< how far it may be condensed
};

/// By the widget's own measures; of a grid, those of the cells that are seen.
std::vector<Text> textsOf(const QWidget& widget) {
    std::vector<Text> texts;
    const auto add = [&](const QString& text, const QRect& room, double narrowest = 1) -> Text& {
        const QSize needed = widget.fontMetrics().size(Qt::TextShowMnemonic, text);
        texts.push_back({text, room, needed, narrowest});
        return texts.back();
    };
    const auto addMenu = [&](const auto& menu) {
        for (QAction* action : menu.actions()) {
            if (action->isVisible() && action->isEnabled())
                add(action->text(), menu.actionGeometry(action));
        }
    };
    if (const auto* fitted = qobject_cast<const FittedLabel*>(&widget)) {
        add(fitted->text(), fitted->contentsRect(), kNarrowest);
    } else if (const auto* label = qobject_cast<const QLabel*>(&widget)) {
        const int width = label->width();
        add(label->text(), label->contentsRect()).needed =
            label->wordWrap() ? QSize(0, label->heightForWidth(width)) : label->sizeHint();
    } else if (const auto* cell = qobject_cast<const SettingCell*>(&widget)) {
        add(cell->text(), cell->rect().adjusted(2, 1, -2, -1), kNarrowest);
    } else if (const auto* button = qobject_cast<const QAbstractButton*>(&widget)) {
        QStyleOptionButton option;
        option.initFrom(button);
        const auto part = button->inherits("QCheckBox")      ? QStyle::SE_CheckBoxContents
                          : button->inherits("QRadioButton") ? QStyle::SE_RadioButtonContents
                                                             : QStyle::SE_PushButtonContents;
        add(button->text(), button->style()->subElementRect(part, &option, button));
    } else if (const auto* group = qobject_cast<const QGroupBox*>(&widget)) {
        QStyleOptionGroupBox option;
        option.initFrom(group);
        option.text = group->title();
        option.subControls = QStyle::SC_GroupBoxLabel;
        add(group->title(),
            group->rect() & group->style()->subControlRect(QStyle::CC_GroupBox, &option,
                                                           QStyle::SC_GroupBoxLabel, group));
    } else if (const auto* edit = qobject_cast<const QLineEdit*>(&widget)) {
        // The names of a file are as long as the user likes.
        add(edit->text(), edit->rect(), edit->objectName() == "fileNameEdit" ? 0 : 1);
    } else if (const auto* tabs = qobject_cast<const QTabBar*>(&widget)) {
        for (int tab = 0; tab < tabs->count(); ++tab)
            add(tabs->tabText(tab), tabs->tabRect(tab));
    } else if (const auto* menu = qobject_cast<const QMenu*>(&widget)) {
        addMenu(*menu);
    } else if (const auto* bar = qobject_cast<const QMenuBar*>(&widget)) {
        addMenu(*bar);
    } else if (const auto* grid = qobject_cast<const GridView*>(&widget)) {
        const int rows = grid->rowAt(grid->viewport()->height() - 4);
        for (int at = 0; at < kGridColumns * rows; ++at) {
            const QModelIndex index = grid->model()->index(at / kGridColumns, at % kGridColumns);
            const QRect room = grid->visualRect(index);
            if (!room.isEmpty() && grid->viewport()->childAt(room.center()) == nullptr)
                add(index.data().toString(), room.translated(grid->viewport()->pos()), kNarrowest);
        }
    }
    return texts;
}

/// The background, which is the most common colour, and the greatest contrast to it.
std::pair<QColor, double> seenIn(const QImage& image) {
    std::map<QRgb, int> counts;
    for (int pixel = 0; pixel < image.width() * image.height(); ++pixel)
        ++counts[image.pixel(pixel % image.width(), pixel / image.width())];
    using Count = std::pair<const QRgb, int>;
    const QColor background = std::ranges::max_element(counts, {}, &Count::second)->first;
    double greatest = 1;
    for (const auto& [colour, count] : counts)
        greatest = std::max(greatest, contrast(colour, background));
    return {background, greatest};
}

/// Whether the design gives the widget's background.
bool hasGivenBackground(const QWidget& widget) {
    constexpr std::array kNames{"lblSetting_", "DataGrid",   "lblRow",    "lblAddy",
                                "lblOldData",  "lblNewData", "lblSBinfo", "Label1"};
    return std::ranges::any_of(
        kNames, [&](auto name) { return widget.objectName().startsWith(QLatin1String(name)); });
}

class Inspector {
  public:
    Inspector(QString exhibit, QWidget& window, const QString& folder)
        : exhibit_(std::move(exhibit)),
          window_(window),
          image_(window.grab().toImage().convertToFormat(QImage::Format_RGB32)) {
        Expect(image_.save(folder + '/' + exhibit_ + ".png"), window, "has no picture");
        Expect(window.screen()->size().boundedTo(window.frameGeometry().size()) ==
                   window.frameGeometry().size(),
               window, "is larger than the screen");
        auto widgets = window.findChildren<QWidget*>();
        widgets.prepend(&window);
        const auto isHidden = [&](const QWidget* widget) {
            return !widget->isVisible() || widget->window() != &window;
        };
        widgets.erase(std::remove_if(widgets.begin(), widgets.end(), isHidden), widgets.end());
        for (const QWidget* widget : widgets) {
            Inspect(*widget);
            if (widget == &window || window.inherits("QFileDialog") ||
                widget->parent()->inherits("QTabWidget"))
                continue;  // Qt's own parts lie on each other
            for (const QWidget* other : widgets) {
                const QRect shared = widget->geometry() & other->geometry();
                Expect(widget == other || widget->parent() != other->parent() ||
                           qMin(shared.width(), shared.height()) <= scaled(30),
                       *widget, "lies on " + other->objectName());
            }
        }
        for (QWidget* widget : widgets) {
            if ((widget->focusPolicy() & Qt::TabFocus) != 0 && widget->isEnabled() &&
                isOurs(*widget))
                InspectFocus(*widget);
        }
    }
    static inline int failures = 0;

  private:
    void Expect(bool fulfilled, const QWidget& widget, const QString& what) const {
        failures += fulfilled ? 0 : 1;
        if (!fulfilled)
            qWarning("%s: %s %s %s", qUtf8Printable(exhibit_), widget.metaObject()->className(),
                     qUtf8Printable(widget.objectName()), qUtf8Printable(what));
    }
    void Inspect(const QWidget& widget) const {
        const bool scrolled =
            widget.parent() != nullptr && widget.parent()->objectName() == "qt_scrollarea_viewport";
        Expect(&widget == &window_ || scrolled ||
                   widget.parentWidget()->rect().contains(widget.geometry()),
               widget, "is outside of its parent");
        for (const Text& text : textsOf(widget)) {
            if (text.text.trimmed().isEmpty())
                continue;
            const QSize room = text.room.size() + QSize(1, 1);  // Qt rounds
            Expect(room.width() >= text.narrowest * text.needed.width() &&
                       room.height() >= text.needed.height(),
                   widget, "cuts off " + text.text);
            if (widget.isEnabled() && widget.visibleRegion().contains(text.room) &&
                (widget.visibleRegion() & text.room).boundingRect() == text.room)
                InspectColours(widget, text);
        }
    }
    void InspectColours(const QWidget& widget, const Text& text) const {
        const QRect room =
            text.room.adjusted(1, 1, -1, -1).translated(widget.mapTo(&window_, QPoint()));
        const double ratio = image_.devicePixelRatio();
        const auto [background, seen] =
            seenIn(image_.copy(QRect(room.topLeft() * ratio, room.size() * ratio)));
        Expect(seen >= kContrast, widget,
               text.text + " has too little contrast on " + background.name());
        const std::array given{colours::kCell, colours::kHeading, colours::kBeingEdited};
        Expect(!hasGivenBackground(widget) || std::ranges::count(given, background) == 1, widget,
               text.text + " is on " + background.name());
    }

    /// Qt's file dialog shows the focus on what it lists; the edit box would be closed.
    bool isOurs(const QWidget& widget) const {
        return !window_.inherits("QFileDialog") && exhibit_ != "editor" &&
               !widget.inherits("QTextEdit");
    }
    void InspectFocus(QWidget& widget) const {
        if (QWidget* before = QApplication::focusWidget())
            before->clearFocus();
        const QImage without = widget.grab().toImage();
        widget.setFocus(Qt::TabFocusReason);
        const QImage with = widget.grab().toImage();
        const QWidget* seen = window_.childAt(widget.mapTo(&window_, widget.rect().center()));
        Expect(seen == &widget || widget.isAncestorOf(seen), widget, "is not scrolled to");
        int changed = 0;
        for (int pixel = 0; pixel < with.width() * with.height(); ++pixel) {
            const QPoint at(pixel % with.width(), pixel / with.width());
            changed += contrast(with.pixel(at), without.pixel(at)) >= kSeenContrast ? 1 : 0;
        }
        Expect(changed >= kSeenPixels, widget, "does not show the focus");
    }

    QString exhibit_;
    QWidget& window_;
    QImage image_;
};

}  // namespace
}  // namespace tarnwell

int main(int argc, char** argv) {
    using namespace tarnwell;
    QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    const auto* look = std::ranges::find(kLooks, arguments.value(1), &Look::name);
    if (look == std::end(kLooks) || !QDir().mkpath(arguments.value(2)))
        qFatal("usage: looks_test LOOK FOLDER");
    wear(*look);
    WalkGallery([&](const std::string& name, QWidget& window) {
        Inspector(QString::fromStdString(name), window, arguments[2]);
    });
    return Inspector::failures == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}
