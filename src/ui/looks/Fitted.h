// Texts that are never cut off: they are written narrower where the room does not do.
#pragma once

#include <QAbstractButton>
#include <QLabel>
#include <optional>

namespace tarnwell {

/// A one-line label that condenses its text to the width it has.
class FittedLabel : public QLabel {
    Q_OBJECT
  public:
    explicit FittedLabel(QWidget* parent = nullptr);

    QSize minimumSizeHint() const override { return {0, QLabel::minimumSizeHint().height()}; }

    /// Colours of the label's own, whatever the desktop's theme or a style sheet say. The text is
    /// dimmed while the label is disabled.
    void setColours(const QColor& background, const QColor& text);

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    void paintColoured(QPainter& painter);

    struct Colours {
        QColor background;
        QColor text;
    };
    std::optional<Colours> m_colours;
};

/// Draws one line of text within `room`, condensed if it is too wide.
void drawFitted(QPainter& painter, const QRect& room, Qt::Alignment alignment, const QString& text);

/// Makes the font of a button so small that its caption fits beside what else the button shows,
/// `besides` twips wide.
void fitCaption(QAbstractButton& button, int besides = 120);

}  // namespace tarnwell
