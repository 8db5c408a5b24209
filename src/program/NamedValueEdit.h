// A name's value while the value editor is open on it.
#pragma once

#include "names/NamedValue.h"
#include "settings/EditedValue.h"

namespace tarnwell {

class Program;

class NamedValueEdit final : public EditedValue {
  public:
    /// Begins at the value that the grid shows.
    NamedValueEdit(Program& program, Named named);

    int Minimum() const override { return named_->lowest; }
    int Maximum() const override { return named_->highest; }

    /// What the value means, if that is known.
    std::string Note() const override;

    /// Takes a value of the range that is another one.
    Accepted Accept() override;

  private:
    void TellRange() override;

    Program& program_;
    const Named named_;
    const int before_;
};

}  // namespace tarnwell
