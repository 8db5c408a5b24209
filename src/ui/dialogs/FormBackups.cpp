#include "ui/dialogs/FormBackups.h"

#include <QDateTime>
#include <QHBoxLayout>
#include <QLabel>
#include <QLocale>
#include <QVBoxLayout>

#include "archive/ImageRecords.h"
#include "core/Words.h"
#include "differences/DifferenceTexts.h"
#include "ui/looks/Measures.h"
#include "ui/looks/Text.h"

namespace tarnwell {

namespace {

enum BackupColumn { Device, Time, Crc, Differing };

/// In the user's own form.
QString timeText(const std::string& timestamp) {
    const auto time = QDateTime::fromString(toQt(timestamp), QStringLiteral("yyyyMMdd-HHmmss"));
    return time.isValid() ? QLocale().toString(time, QLocale::ShortFormat) : toQt(timestamp);
}

}  // namespace

FormBackups::FormBackups(const Program& program, const std::string& folder, Purpose purpose,
                         QWidget* parent)
    : QDialog(parent),
      m_program(program),
      m_kept(KeptImagesIn(folder)),
      m_table("tblBackups", QStringLiteral("Backups"),
              {QStringLiteral("Device"), QStringLiteral("Date and time"), QStringLiteral("CRC"),
               QStringLiteral("Against the buffer")}) {
    setObjectName(QStringLiteral("formBackups"));
    setWindowTitle(QStringLiteral("Restore Backup"));
    auto* layout = new QVBoxLayout(this);
    auto* intro = new QLabel(QStringLiteral("Images that were read of the devices, newest first:"));
    layout->addWidget(intro);

    intro->setBuddy(&m_table);
    layout->addWidget(&m_table);
    for (const KeptImage& kept : m_kept)
        addRow(kept);
    const int width = scaled(600) + m_table.fitColumns();

    auto* buttons = new QHBoxLayout;
    layout->addLayout(buttons);
    buttons->addStretch();
    if (purpose == Purpose::Restore) {
        buttons->addWidget(addButton("cmdLoad", QStringLiteral("&Load"), Choice::Load));
        buttons->addWidget(
            addButton("cmdRestore", QStringLiteral("&Restore to EEPROM..."), Choice::Restore));
    }
    buttons->addWidget(addButton("cmdCompare", QStringLiteral("Co&mpare"), Choice::Compare));
    m_rowButtons = findChildren<QPushButton*>();
    m_rowButtons.first()->setDefault(true);
    if (purpose == Purpose::Restore)
        buttons->addWidget(
            addButton("cmdShowFolder", QStringLiteral("Show &Folder"), Choice::ShowFolder));
    auto* close = new QPushButton(QStringLiteral("Close"), this);
    close->setObjectName(QStringLiteral("cmdClose"));
    close->setAutoDefault(false);
    connect(close, &QPushButton::clicked, this, &QDialog::reject);
    buttons->addWidget(close);

    connect(&m_table, &QTreeWidget::itemSelectionChanged, this, &FormBackups::enableButtons);
    connect(&m_table, &QTreeWidget::itemDoubleClicked, m_rowButtons.first(), &QPushButton::click);
    if (QTreeWidgetItem* newest = m_table.topLevelItem(0))
        m_table.setCurrentItem(newest);
    enableButtons();
    resize(QSize(width, scaled(4500)).boundedTo(roomFor(*this)));
    m_table.setFocus();
}

// The table may tell of its own end.
FormBackups::~FormBackups() {
    m_table.disconnect(this);
}

void FormBackups::addRow(const KeptImage& kept) {
    auto* row = new QTreeWidgetItem(&m_table);
    row->setText(Device, toQt(DeviceName(kept.device)));
    row->setText(Time, timeText(kept.timestamp));
    MemoryBuffer image{};
    ArchiveFile file(kept.path);
    if (file.Kind() != ArchiveKind::Image || LoadImageRecords(file, image) != LoadEnd::Complete) {
        row->setText(Differing, QStringLiteral("damaged"));
        return;
    }
    row->setText(Crc, toQt(mCRC32::BufferCrcText(image)));
    row->setText(Differing, HoldsImage(m_program.state, m_program.buffer)
                                ? toQt(DifferencesText(CountDifferences(DifferenceRows(
                                      m_program.names, kept.device, image, m_program.buffer))))
                                : QStringLiteral("the buffer holds no image"));
}

QPushButton* FormBackups::addButton(const char* name, const QString& text, Choice choice) {
    auto* button = new QPushButton(text, this);
    button->setObjectName(QLatin1String(name));
    button->setAccessibleName(QString(text).remove(QLatin1Char('&')));
    button->setAutoDefault(false);
    connect(button, &QPushButton::clicked, this,
            [this, choice] { done(static_cast<int>(choice)); });
    return button;
}

void FormBackups::enableButtons() {
    for (QPushButton* button : m_rowButtons)
        allow(*button, m_table.selectedRow() >= 0, "Select a backup first");
}

const KeptImage& FormBackups::selected() const {
    return m_kept[static_cast<std::size_t>(m_table.selectedRow())];
}

}  // namespace tarnwell
