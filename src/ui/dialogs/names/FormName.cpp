#include "ui/dialogs/names/FormName.h"

#include <QBoxLayout>
#include <QDialogButtonBox>
#include <QPushButton>
#include <array>
#include <utility>

#include "core/Words.h"
#include "ui/looks/Measures.h"
#include "ui/looks/Text.h"

namespace tarnwell {

namespace {

constexpr int kFieldWidth = 4500;
constexpr int kValuesLines = 3;
constexpr int kLargestNumber = 0xFFFF;

struct LayerCaption {
    NameLayer layer;
    const char* caption;
};
constexpr std::array kLayerCaptions{LayerCaption{NameLayer::User, "among your names"},
                                    LayerCaption{NameLayer::Set, "in the set's record"},
                                    LayerCaption{NameLayer::Opened, "in the file that was opened"}};

QHBoxLayout* fromTo(QWidget& from, QWidget& to) {
    auto* line = new QHBoxLayout;
    line->addWidget(&from, 1);
    line->addWidget(new QLabel(QStringLiteral("to")));
    line->addWidget(&to, 1);
    return line;
}

}  // namespace

FormName::FormName(Program& program, const NamedValue& shown, Named former, QWidget* parent)
    : QDialog(parent), m_program(program), m_start(shown), m_former(std::move(former)) {
    setObjectName(QStringLiteral("formName"));
    setWindowTitle(m_former ? QStringLiteral("Name") : QStringLiteral("New Name"));
    auto* layout = new QVBoxLayout(this);
    auto* fields = new QFormLayout;
    addFields(*fields);
    layout->addLayout(fields);
    m_problem.setObjectName(QStringLiteral("lblNameProblem"));
    m_problem.setTextFormat(Qt::PlainText);
    m_problem.setWordWrap(true);
    layout->addWidget(&m_problem);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    buttons->button(QDialogButtonBox::Ok)->setObjectName(QStringLiteral("cmdAccept"));
    buttons->button(QDialogButtonBox::Cancel)->setObjectName(QStringLiteral("cmdCancel"));
    connect(buttons, &QDialogButtonBox::accepted, this, &FormName::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    layout->addWidget(buttons);
    fill();
    for (QSpinBox* bit : {&m_lowestBit, &m_highestBit})
        connect(bit, &QSpinBox::valueChanged, this, &FormName::followBits);
    connect(&m_low, &QLineEdit::textEdited, this, &FormName::followBits);
    for (const QLineEdit* bound : {&m_lowest, &m_highest})
        connect(bound, &QLineEdit::textEdited, this, [this] { m_rangeIsGiven = true; });
    m_name.setFocus();
}

void FormName::addFields(QFormLayout& fields) {
    const auto name = [](QWidget& field, const char* objectName, const char* accessibleName) {
        field.setObjectName(QLatin1String(objectName));
        field.setAccessibleName(QLatin1String(accessibleName));
    };
    name(m_name, "txtName", "Name");
    name(m_device, "cboDevice", "Device");
    name(m_address, "txtAddress", "Address");
    name(m_low, "txtLowByte", "Address of the low byte");
    name(m_lowestBit, "spnLowestBit", "Lowest bit");
    name(m_highestBit, "spnHighestBit", "Highest bit");
    name(m_lowest, "txtLowest", "Lowest value");
    name(m_highest, "txtHighest", "Highest value");
    name(m_text, "txtText", "Text");
    name(m_values, "txtValues", "Values");
    name(m_layer, "cboKept", "Kept");
    m_name.setMinimumWidth(scaled(kFieldWidth));
    for (const TargetDevice device : {TargetDevice::Primary, TargetDevice::Secondary})
        m_device.addItem(toQt(EepromName(device)));
    for (QSpinBox* bit : {&m_lowestBit, &m_highestBit})
        bit->setRange(0, 7);
    m_low.setPlaceholderText(QStringLiteral("only of two bytes that are one number"));
    m_values.setPlaceholderText(QStringLiteral("0 off\n1 on"));
    m_values.setTabChangesFocus(true);
    m_values.setFixedHeight((kValuesLines + 1) * m_values.fontMetrics().lineSpacing());
    addLayers();
    const auto add = [&](const char* label, auto* field, QWidget& buddy) {
        auto* caption = new QLabel(QLatin1String(label));
        caption->setBuddy(&buddy);
        fields.addRow(caption, field);
    };
    add("&Name:", &m_name, m_name);
    add("&Device:", &m_device, m_device);
    add("&Address:", &m_address, m_address);
    add("Low b&yte at:", &m_low, m_low);
    add("&Bits:", fromTo(m_lowestBit, m_highestBit), m_lowestBit);
    add("&Range:", fromTo(m_lowest, m_highest), m_lowest);
    add("&Text:", &m_text, m_text);
    add("&Values:", &m_values, m_values);
    add("&Kept:", &m_layer, m_layer);
}

/// A name that there is stays in its file.
void FormName::addLayers() {
    for (const auto& [layer, caption] : kLayerCaptions) {
        const NamesFile* const file = m_program.names.File(layer);
        const bool isItsOwn = m_former && m_program.names.LayerOf(m_former) == layer;
        if (file != nullptr && file->usable == Usable::Yes && (!m_former || isItsOwn))
            m_layer.addItem(QLatin1String(caption), static_cast<int>(layer));
    }
    m_layer.setEnabled(m_layer.count() > 1);
}

void FormName::fill() {
    m_name.setText(toQt(m_start.name));
    m_device.setCurrentIndex(static_cast<int>(m_start.device));
    m_address.setText(text(m_start.address));
    m_low.setText(m_start.low ? text(*m_start.low) : QString());
    m_lowestBit.setValue(m_start.bits.lowest);
    m_highestBit.setValue(m_start.bits.highest);
    m_lowest.setText(text(m_start.lowest));
    m_highest.setText(text(m_start.highest));
    m_text.setText(toQt(m_start.text));
    QStringList values;
    for (const auto& [value, meaning] : m_start.values)
        values += text(value) + QLatin1Char(' ') + toQt(meaning);
    m_values.setPlainText(values.join(QLatin1Char('\n')));
    m_rangeIsGiven = m_start.lowest != 0 || m_start.highest != LargestIn(m_start);
}

/// All that the bits can hold, until a range is given.
void FormName::followBits() {
    if (m_rangeIsGiven)
        return;
    m_lowest.setText(text(0));
    m_highest.setText(text(LargestIn(named())));
}

QString FormName::text(int number) const {
    return toQt(NumberText(static_cast<std::uint32_t>(number), m_program.state.numberMode));
}

/// -1, which is nowhere right, of a text that is none.
int FormName::number(const QString& text) const {
    return NumberFromText(fromQt(text.trimmed()), m_program.state.numberMode, kLargestNumber)
        .value_or(-1);
}

NamedValue FormName::named() const {
    NamedValue named = m_start;
    named.name = fromQt(m_name.text().trimmed());
    named.device = static_cast<TargetDevice>(m_device.currentIndex());
    named.address = number(m_address.text());
    named.low =
        m_low.text().trimmed().isEmpty() ? std::nullopt : std::optional(number(m_low.text()));
    named.bits = {m_lowestBit.value(), m_highestBit.value()};
    named.lowest = number(m_lowest.text());
    named.highest = number(m_highest.text());
    named.text = fromQt(m_text.text().trimmed());
    named.values.clear();
    for (const QString& line : m_values.toPlainText().split(QLatin1Char('\n'))) {
        const QString value = line.trimmed().section(QLatin1Char(' '), 0, 0);
        if (!value.isEmpty())
            named.values[number(value)] =
                fromQt(line.trimmed().section(QLatin1Char(' '), 1).trimmed());
    }
    return named;
}

QWidget& FormName::fieldOf(const std::string& key) {
    const std::pair<const char*, QWidget&> fields[] = {
        {"address", m_address}, {"low", m_low},   {"bits", m_lowestBit},
        {"range", m_lowest},    {"text", m_text}, {"values", m_values}};
    for (const auto& [name, field] : fields)
        if (key == name)
            return field;
    return m_name;
}

void FormName::accept() {
    std::string key;
    const std::string fault = m_program.nameCommands.Fault(named(), m_former, layer(), key);
    if (fault.empty())
        return QDialog::accept();
    m_problem.setText(toQt(fault));
    fieldOf(key).setFocus();
}

}  // namespace tarnwell
