// The archive commands of a whole program, with files in a folder of the test's own.
#pragma once

#include <random>

#include "support/TemporaryFolder.h"
#include "support/TestProgram.h"

namespace tarnwell {

class ArchiveCommands : public testing::Test {
  protected:
    const TemporaryFolder folder;
    TestProgram test;
    Program& program = test.program;
    std::mt19937 random{20261117};

    /// The status line after a command whose dialog gives the file `name`, or is cancelled if that
    /// is empty.
    template <typename Archive>
    std::string Run(Archive& archive, void (Archive::*command)(), const std::string& name) {
        program.statusBar.PutStatus("");
        test.user.files = {name.empty() ? std::nullopt : std::optional(folder.Path(name))};
        (archive.*command)();
        return test.Status();
    }

    /// Whether the shell command, run in the folder, succeeds; what it prints is dropped.
    bool Shell(const std::string& command) const {
        return std::system(("cd " + folder.Path() + "; (" + command + ") > log 2>&1").c_str()) == 0;
    }
};

}  // namespace tarnwell
