// A value while the value editor is open on it: stepped or typed, within its range.
#pragma once

#include <string>

#include "core/ProgramState.h"

namespace tarnwell {

class LiveValue;

class EditedValue {
  public:
    explicit EditedValue(const ProgramState& state) : mode_(state.numberMode) {}
    virtual ~EditedValue() = default;
    EditedValue(const EditedValue&) = delete;
    EditedValue& operator=(const EditedValue&) = delete;

    virtual int Minimum() const { return 0; }
    virtual int Maximum() const = 0;

    /// What the user has made of the value so far.
    int Value() const { return value_; }

    /// The value has come to `value` other than by digits.
    void StepTo(int value);

    /// The first digit replaces the value, the next ones are put behind it. One that would lead
    /// beyond the range is told on the status line and changes nothing. False if `character` is no
    /// digit of the number mode.
    bool TypeDigit(char character);

    /// Takes the value's last digit away; without any it is 0.
    void EraseDigit();

    std::string Readout(int value) const;

    /// What stands below the value: what has become of it, or what it means.
    virtual std::string Note() const = 0;

    enum class Accepted : std::uint8_t { Changed, Unchanged };

    /// OK: takes the value if it is in the range and another one; the dialog stays open if not.
    virtual Accepted Accept() = 0;

    /// What writes each value at once; null where nothing does.
    virtual LiveValue* Live() { return nullptr; }

  protected:
    void BeginAt(int value);

  private:
    virtual void TellRange() = 0;
    virtual void Turned() {}
    void Become(int value, bool typing);

    const NumberMode& mode_;
    int value_ = 0;
    bool typing_ = false;  ///< it is made of typed digits, more of which may follow
};

}  // namespace tarnwell
