#include "ui/dialogs/names/NameModel.h"

#include <algorithm>
#include <array>

#include "core/Words.h"
#include "ui/looks/Text.h"

namespace tarnwell {

namespace {

constexpr std::array kHeads{"Name",          "Device",        "Address", "Bits",
                            "In the buffer", "On the device", "Text"};
static_assert(kHeads.size() == NameModel::Columns);

}  // namespace

NameModel::NameModel(const Program& program, QObject* parent)
    : QAbstractTableModel(parent), m_program(program) {}

void NameModel::show(const QString& filter) {
    const QStringList words = filter.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    const auto isShown = [&](const Named& named) {
        QString all;
        for (const int column : {Name, Device, Address, Bits, Text})
            all += text(*named, column) + QLatin1Char(' ');
        return std::ranges::all_of(
            words, [&](const QString& word) { return all.contains(word, Qt::CaseInsensitive); });
    };
    beginResetModel();
    m_shown.clear();
    std::ranges::copy_if(m_program.names.Own(), std::back_inserter(m_shown),
                         [&](const Named& named) { return words.isEmpty() || isShown(named); });
    endResetModel();
}

void NameModel::refresh() {
    if (!m_shown.empty())
        Q_EMIT dataChanged(index(0, InBuffer), index(rowCount() - 1, OnDevice));
}

int NameModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_shown.size());
}

int NameModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : Columns;
}

QVariant NameModel::data(const QModelIndex& index, int role) const {
    if (role != Qt::DisplayRole && role != Qt::ToolTipRole)
        return {};
    return text(*m_shown[static_cast<std::size_t>(index.row())], index.column());
}

QVariant NameModel::headerData(int section, Qt::Orientation orientation, int role) const {
    return orientation == Qt::Horizontal && role == Qt::DisplayRole
               ? QLatin1String(kHeads[static_cast<std::size_t>(section)])
               : QVariant();
}

QString NameModel::text(const NamedValue& named, int column) const {
    const NumberMode mode = m_program.state.numberMode;
    switch (column) {
        case Name:
            return toQt(named.name);
        case Device:
            return toQt(DeviceName(named.device));
        case Address:
            return toQt(NumberText(static_cast<std::uint32_t>(named.address), mode));
        case Bits:
            return toQt(BitsText(named, mode));
        case InBuffer: {
            const auto value = m_program.ShownValue(named);
            return value ? toQt(ValueText(named, *value, mode)) : QString();
        }
        case OnDevice: {
            const auto value = m_program.HeldValue(named);
            return value ? toQt(ValueText(named, *value, mode)) : QString();
        }
        default:
            return toQt(named.text);
    }
}

}  // namespace tarnwell
