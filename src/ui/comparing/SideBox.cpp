#include "ui/comparing/SideBox.h"

#include <QAbstractItemView>
#include <QBoxLayout>
#include <QCoreApplication>
#include <QFileInfo>
#include <QKeyEvent>
#include <QLabel>
#include <QWheelEvent>
#include <array>

#include "ui/looks/Text.h"

namespace tarnwell {

namespace {

/// By `Source`.
constexpr std::array kSourceNames{"Memory Buffer",    "Primary EEProm",      "Secondary EEProm",
                                  "Image Archive...", "Settings Archive...", "Backup..."};

/// Of an item that is a file, its row in the list of those of its kind.
constexpr int kRowRole = Qt::UserRole + 1;

}  // namespace

SideBox::SideBox(Side side, const Program& program) : m_side(side), m_program(program) {
    const bool left = side == Side::Left;
    setObjectName(left ? QStringLiteral("cboLeft") : QStringLiteral("cboRight"));
    setAccessibleName(left ? QStringLiteral("Left side") : QStringLiteral("Right side"));
    setPlaceholderText(QStringLiteral("(nothing)"));
    for (const char* source : kSourceNames)
        addItem(QLatin1String(source), count());
    connect(this, &QComboBox::activated, this, [this](int index) {
        const QVariant row = itemData(index, kRowRole);
        Q_EMIT chosen(static_cast<Source>(itemData(index).toInt()),
                      row.isValid() ? std::optional(row.toInt()) : std::nullopt);
    });
}

void SideBox::addTo(QBoxLayout& layout) {
    auto* label =
        new QLabel(m_side == Side::Left ? QStringLiteral("Le&ft:") : QStringLiteral("&Right:"));
    label->setBuddy(this);
    layout.addWidget(label);
    layout.addWidget(this, 1);
}

void SideBox::keyPressEvent(QKeyEvent* event) {
    const int key = event->key();
    const bool jumps = key == Qt::Key_Home || key == Qt::Key_End;
    if (!jumps && key != Qt::Key_Up && key != Qt::Key_Down && key != Qt::Key_PageUp &&
        key != Qt::Key_PageDown)
        return ElidingBox::keyPressEvent(event);
    showPopup();
    if (jumps)
        QCoreApplication::sendEvent(view(), event);
}

void SideBox::wheelEvent(QWheelEvent* event) {
    event->accept();
}

void SideBox::showSide() {
    while (count() > static_cast<int>(kSourceNames.size()))
        removeItem(count() - 1);
    const auto source = m_program.compare.Of(m_side);
    setCurrentIndex(source ? static_cast<int>(*source) : -1);
    if (source == Source::Backup) {
        const QFileInfo file(pathToQt(m_program.compare.FileOf(m_side)));
        insertSeparator(count());
        addItem(QStringLiteral("Backup: ") + file.fileName(), static_cast<int>(*source));
        setItemData(count() - 1, file.path(), Qt::ToolTipRole);
        setCurrentIndex(count() - 1);
    }
    addFiles(QStringLiteral("Image: "), Source::ImageArchive, m_program.state.recentImages);
    addFiles(QStringLiteral("Settings: "), Source::SettingsArchive, m_program.state.recentSettings);
    setToolTip(currentData(Qt::ToolTipRole).toString());
}

void SideBox::addFiles(const QString& kind, Source source, const RecentFiles& files) {
    if (!files.Paths().empty())
        insertSeparator(count());
    const CompareCommand& compare = m_program.compare;
    int row = 0;
    for (const std::string& path : files.Paths()) {
        const QFileInfo file(pathToQt(path));
        addItem(kind + file.fileName(), static_cast<int>(source));
        setItemData(count() - 1, row++, kRowRole);
        setItemData(count() - 1, file.path(), Qt::ToolTipRole);
        if (compare.Of(m_side) == source && path == compare.FileOf(m_side))
            setCurrentIndex(count() - 1);
    }
}

}  // namespace tarnwell

#include "moc_SideBox.cpp"
