// The commands on names of one's own. What they change is a step of undo, and in its file at once.
#pragma once

#include "core/user/User.h"
#include "names/NameBook.h"

namespace tarnwell {

class Program;

class NameCommands {
  public:
    NameCommands(Program& program, User& user) : program_(program), user_(user) {}

    /// What the user may want to name at a byte: the first bits there that nothing has, or all.
    NamedValue Proposed(TargetDevice device, int address) const;

    /// Why there cannot be such a name in a layer, in the place of `former` if that is one; one
    /// sentence, empty if there can. `key` gets what it is wrong in, as the file calls it.
    std::string Fault(const NamedValue& named, const Named& former, NameLayer layer,
                      std::string& key) const;

    /// Makes a name that has no Fault, in the place of `former` if that is one; whether that could
    /// be written, else a box tells.
    bool Put(NamedValue named, const Named& former, NameLayer layer);

    /// Removes names, each from the layer that it is in.
    void Remove(const NameList& names);

    /// Gives a name's bytes in the grid a value of its range, as if they were typed there; the grid
    /// shows them then. Two bytes go together or not at all.
    void EnterValue(const NamedValue& named, int value);

    /// Opens a file beside the user's and the set's, whose names count until another one is opened,
    /// or the program ends. A box tells what is wrong in it.
    void Open(const std::string& path);

    /// Reads a file's names into those of a layer, which asks once about those that clash.
    void ReadInto(NameLayer layer, const std::string& path);

    /// Writes the names that count into a file of their own.
    void SaveAs(const std::string& path);

  private:
    bool Keep(NameLayer layer, NameList names, std::string step);
    void TellNotWritten(const std::string& path);

    Program& program_;
    User& user_;
};

}  // namespace tarnwell
