#include "ui/widgets/GridModel.h"

#include <QFontDatabase>
#include <algorithm>

#include "core/user/Number.h"
#include "ui/looks/Colours.h"
#include "ui/looks/Measures.h"
#include "ui/looks/Text.h"

namespace tarnwell {

namespace {

constexpr int kRowAddressColumn = 0;

bool showsByte(const QModelIndex& index) {
    return index.column() > kRowAddressColumn && index.column() < kTextColumn;
}

bool isSetting(const Named& named) {
    return named->cell.has_value();
}

QFont textFont() {
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    font.setPixelSize(scaledFont(8.25, Weight::Normal).pixelSize());
    return font;
}

GridCell cellOf(const QModelIndex& index) {
    return {index.row(), index.column()};
}

}  // namespace

GridModel::GridModel(const Program& program, QObject* parent)
    : QAbstractTableModel(parent),
      m_program(program),
      m_grid(program.grid),
      m_state(program.state),
      m_changedFont(scaledFont(8.25, Weight::Bold)),
      m_textFont(textFont()) {}

int GridModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : kGridRows;
}

int GridModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : kGridColumns;
}

QVariant GridModel::data(const QModelIndex& index, int role) const {
    const bool isAddress = index.column() == kRowAddressColumn;
    if (index.column() == kTextColumn && role == Qt::FontRole)
        return m_textFont;
    switch (role) {
        case Qt::DisplayRole:
            return text(index);
        case Qt::AccessibleTextRole:
            return showsByte(index) ? spokenText(index) : text(index);
        case Qt::TextAlignmentRole:
            return static_cast<int>(isAddress ? Qt::AlignRight | Qt::AlignVCenter
                                              : Qt::AlignCenter);
        case Qt::BackgroundRole:
            return isAddress ? colours::kHeading : colours::kCell;
        case Qt::ForegroundRole:
            return colours::kText;
        case Qt::FontRole:
            return showsByte(index) && m_grid.IsChanged(cellOf(index)) ? QVariant(m_changedFont)
                                                                       : QVariant();
        case Qt::ToolTipRole:
            return showsByte(index) ? QVariant(toolTip(cellOf(index))) : QVariant();
        case Qt::AccessibleDescriptionRole:
            return showsByte(index) ? QVariant(description(cellOf(index))) : QVariant();
        case kStandingRole:
            return static_cast<int>(showsByte(index)
                                        ? m_program.StandingOfByte(cellOf(index).Address()).kind
                                        : Standing::Kind::Held);
        case kNamedRole:
            return showsByte(index) && std::ranges::any_of(namesAt(cellOf(index)), isSetting);
        case kOwnNameRole:
            return showsByte(index) && !std::ranges::all_of(namesAt(cellOf(index)), isSetting);
        default:
            return {};
    }
}

const NameList& GridModel::namesAt(GridCell cell) const {
    return m_program.names.At(m_state.targetDevice, cell.Address());
}

QString GridModel::text(const QModelIndex& index) const {
    if (index.column() == kRowAddressColumn)
        return toQt(m_grid.RowAddressText(index.row()));
    if (index.column() != kTextColumn)
        return toQt(m_grid.Text(cellOf(index)));
    QString characters;
    for (int column = 1; column <= kBytesPerRow; ++column)
        characters += character({index.row(), column});
    return characters;
}

QChar GridModel::character(GridCell cell) const {
    const auto byte = m_grid.Shown(cell).Byte();
    return !byte ? u' ' : IsCharacter(*byte) ? QChar(*byte) : u'.';
}

QString GridModel::spokenText(const QModelIndex& index) const {
    const GridCell cell = cellOf(index);
    const std::string address =
        NumberText(static_cast<std::uint32_t>(cell.Address()), m_state.numberMode);
    const QString typed = m_grid.Side() == GridSide::Text
                              ? QStringLiteral(", character ") + character(cell)
                              : QString();
    return QStringLiteral("Address %1: %2%3%4")
        .arg(toQt(address), text(index).isEmpty() ? QStringLiteral("empty") : text(index), typed,
             m_grid.IsChanged(cell) ? QStringLiteral(", changed") : QString());
}

QVariant GridModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (role != Qt::DisplayRole)
        return {};
    if (orientation == Qt::Vertical)
        return toQt(m_grid.RowAddressText(section));
    if (section == kTextColumn)
        return QStringLiteral("Text");
    return section == kRowAddressColumn ? QStringLiteral("Address")
                                        : toQt(m_grid.HeadingText(section - 1));
}

QString GridModel::name(GridCell cell) const {
    QStringList names;
    for (const Named& named : namesAt(cell)) {
        QString name = QLatin1Char(' ') + toQt(TitleOf(*named));
        if (!named->cell)
            name += QStringLiteral(", ") + toQt(BitsText(*named, m_state.numberMode)) +
                    QLatin1String(named->text.empty() ? "" : ":");
        if (!named->text.empty())
            name += QLatin1Char(' ') + toQt(named->text);
        names += name + QLatin1Char(' ');
    }
    return names.join(QLatin1Char('\n'));
}

QString GridModel::toolTip(GridCell cell) const {
    const Standing standing = m_program.StandingOfByte(cell.Address());
    QStringList lines{name(cell)};
    if (standing.kind != Standing::Kind::Held)
        lines += QLatin1Char(' ') + capitalized(toQt(standing.Text(m_state.numberMode))) +
                 QLatin1Char(' ');
    lines.removeAll(QString());
    return lines.join(QLatin1Char('\n'));
}

QString GridModel::description(GridCell cell) const {
    return name(cell) + toQt(m_program.StandingOfByte(cell.Address()).Text(m_state.numberMode));
}

Qt::ItemFlags GridModel::flags(const QModelIndex& index) const {
    return showsByte(index) ? Qt::ItemIsEnabled | Qt::ItemIsSelectable : Qt::ItemIsEnabled;
}

void GridModel::refill() {
    Q_EMIT dataChanged(index(0, 0), index(kGridRows - 1, kGridColumns - 1));
}

void GridModel::refresh(GridCell cell) {
    Q_EMIT dataChanged(indexOf(cell), indexOf(cell));
    const QModelIndex characters = index(cell.row, kTextColumn);
    Q_EMIT dataChanged(characters, characters);
}

}  // namespace tarnwell
