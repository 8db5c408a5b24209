#include "program/NamedValueEdit.h"

#include <utility>

#include "program/Program.h"

namespace tarnwell {

NamedValueEdit::NamedValueEdit(Program& program, Named named)
    : EditedValue(program.state),
      program_(program),
      named_(std::move(named)),
      before_(program.ShownValue(*named_).value_or(0)) {
    BeginAt(before_);
}

std::string NamedValueEdit::Note() const {
    const auto meaning = named_->values.find(Value());
    return meaning == named_->values.end() ? "" : meaning->second;
}

EditedValue::Accepted NamedValueEdit::Accept() {
    if (Value() == before_)
        return Accepted::Unchanged;
    if (Value() >= Minimum() && Value() <= Maximum())
        return Accepted::Changed;
    TellRange();
    return Accepted::Unchanged;
}

void NamedValueEdit::TellRange() {
    program_.statusBar.ShowStatus(
        named_->name + " goes from " + Readout(Minimum()) + " to " + Readout(Maximum()),
        kResultSeconds);
}

}  // namespace tarnwell
