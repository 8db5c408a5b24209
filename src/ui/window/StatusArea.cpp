#include "ui/window/StatusArea.h"

#include <QKeyEvent>
#include <QPainter>

#include "ui/looks/Accessible.h"
#include "ui/looks/Colours.h"
#include "ui/looks/Measures.h"
#include "ui/looks/Text.h"

namespace tarnwell {

namespace {

constexpr int kStripHeight = 240;
constexpr int kPanelHeight = StatusArea::kHeight - kStripHeight;

constexpr std::array<const char*, 4> kCaptions{"Mode", "Status", "CRC32", "EEP"};
constexpr std::array<int, 4> kCaptionWidths{600, 720, 660, 420};

/// Lefts of the captions and panels of a size mode, in twips.
struct Arrangement {
    int windowWidth;
    int stripWidth;
    std::array<int, 4> captionLefts;
    std::array<int, 4> panelLefts;
};

constexpr Arrangement kSmall{7305, 7215, {60, 3015, 5720, 6780}, {0, 825, 5475, 6570}};
constexpr Arrangement kBig{9495, 9395, {60, 4110, 7870, 8970}, {0, 825, 7620, 8760}};

/// A double-click, or what a screen reader presses the first caption by.
bool isPress(const QEvent& event) {
    if (event.type() == QEvent::MouseButtonDblClick)
        return static_cast<const QMouseEvent&>(event).button() == Qt::LeftButton;
    return event.type() == QEvent::KeyPress &&
           static_cast<const QKeyEvent&>(event).key() == Qt::Key_Space;
}

const Arrangement& arrangementOf(SizeMode mode) {
    return mode == SizeMode::Small ? kSmall : kBig;
}

}  // namespace

void ProgressPanel::setPercent(std::optional<int> percent) {
    m_percent = percent;
    update();
}

void ProgressPanel::paintEvent(QPaintEvent* event) {
    if (m_percent) {
        QRect bar = contentsRect();
        bar.setWidth(bar.width() * *m_percent / 100);
        QPainter(this).fillRect(bar, colours::progressBar(palette()));
    }
    FittedLabel::paintEvent(event);
}

StatusArea::StatusArea(const StatusBar& statusBar, QWidget* parent)
    : QWidget(parent),
      m_statusBar(statusBar),
      m_strip(this),
      m_stop(QStringLiteral("Stop"), &m_strip) {
    m_stop.setObjectName(QStringLiteral("cmdStop"));
    m_stop.setAccessibleName(m_stop.text());
    m_stop.setToolTip(QStringLiteral("Ends after the byte or page under way\nEscape twice"));
    m_stop.setFocusPolicy(Qt::NoFocus);  // no key but Escape does anything meanwhile
    m_stop.hide();
    for (std::size_t index = 0; index < kPanels; ++index) {
        const int number = static_cast<int>(index);
        auto* caption = new FittedLabel(&m_strip);
        setAccessibleRole(*caption, index == 0 ? QAccessible::Button : QAccessible::StaticText);
        caption->setAccessibleName(QLatin1String(kCaptions[index]));
        caption->setObjectName(elementName("lblSBinfo", number));
        caption->setText(QLatin1String(kCaptions[index]));
        caption->installEventFilter(this);
        m_captions[index] = caption;

        const bool showsProgress = index == static_cast<std::size_t>(Panel::Eep);
        if (showsProgress)
            m_progress = new ProgressPanel(this);
        FittedLabel* panel = showsProgress ? m_progress : new FittedLabel(this);
        panel->setObjectName(elementName("statusPanel", number + 1));
        panel->setFrameStyle(QFrame::Panel | QFrame::Sunken);
        panel->setMargin(scaled(30));
        m_panels[index] = panel;
        refresh(static_cast<Panel>(index));
        name(static_cast<Panel>(index));
    }
    m_captions[0]->setToolTip(QStringLiteral(" Easter Egg! "));
    m_strip.setObjectName(QStringLiteral("StatusStrip"));
}

void StatusArea::colourStrip() {
    m_strip.setColours(colours::kHeading, colours::kText);
    for (FittedLabel* caption : m_captions)
        caption->setColours(colours::kHeading, colours::kText);
}

void StatusArea::layOut(SizeMode mode, int extraWidth) {
    const Arrangement& arrangement = arrangementOf(mode);
    resize(scaled(arrangement.windowWidth) + extraWidth, scaled(kHeight));
    m_strip.setGeometry(0, 0, scaled(arrangement.stripWidth) + extraWidth, scaled(kStripHeight));
    constexpr auto kStatus = static_cast<std::size_t>(Panel::Status);
    for (std::size_t index = 0; index < kPanels; ++index) {
        const int right =
            index + 1 < kPanels ? arrangement.panelLefts[index + 1] : arrangement.windowWidth;
        QRect caption =
            scaledRect(arrangement.captionLefts[index], 0, kCaptionWidths[index], kStripHeight);
        QRect panel = scaledRect(arrangement.panelLefts[index], kStripHeight,
                                 right - arrangement.panelLefts[index] - 15, kPanelHeight);
        if (index == kStatus) {
            caption.translate(extraWidth / 2, 0);
            panel.setWidth(panel.width() + extraWidth);
        } else if (index > kStatus) {
            caption.translate(extraWidth, 0);
            panel.translate(extraWidth, 0);
        }
        m_captions[index]->setGeometry(caption);
        m_panels[index]->setGeometry(panel);
    }
    QRect place = m_panels[static_cast<std::size_t>(Panel::Eep)]->geometry();
    place.moveTop(0);
    place.setHeight(scaled(kStripHeight));
    m_stop.setGeometry(place & m_strip.rect());
}

void StatusArea::refresh(Panel panel) {
    m_panels[static_cast<std::size_t>(panel)]->setText(toQt(m_statusBar.Text(panel)));
    if (panel != Panel::Eep)
        return;
    const std::optional<Progress>& progress = m_statusBar.RunningProgress();
    m_progress->setPercent(progress ? std::optional(progress->percent) : std::nullopt);
    m_stop.setVisible(progress.has_value());
    m_captions[static_cast<std::size_t>(panel)]->setVisible(!progress);
}

void StatusArea::name(Panel panel) {
    const auto index = static_cast<std::size_t>(panel);
    m_panels[index]->setAccessibleName(QLatin1String(kCaptions[index]) + QStringLiteral(": ") +
                                       m_panels[index]->text());
}

void StatusArea::setTips(const QString& bus, const QString& origin) {
    for (FittedLabel* panel : m_panels)
        panel->setToolTip(bus.isEmpty() ? QString() : QStringLiteral(" I2C bus %1 ").arg(bus));
    FittedLabel* const crc = m_panels[static_cast<std::size_t>(Panel::Crc)];
    crc->setToolTip(origin);
    crc->setAccessibleDescription(origin);
}

bool StatusArea::eventFilter(QObject* watched, QEvent* event) {
    if (isPress(*event)) {
        Q_EMIT captionDoubleClicked();
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

}  // namespace tarnwell

#include "moc_StatusArea.cpp"
