// The whole program with a user who agrees to everything and picks one file.
#pragma once

#include "support/TestProgram.h"

namespace tarnwell {

class YesUser final : public User {
  public:
    std::string file;
    std::string lastBox;

    Answer ShowBox(const Box& box) override {
        lastBox = box.text;
        const bool asksYesNo =
            box.style == BoxStyle::YesNoQuestion || box.style == BoxStyle::YesNoExclamation;
        return asksYesNo ? Answer::Yes : Answer::Ok;
    }
    std::optional<std::string> AskText(const TextRequest& request) override {
        return std::string(request.answer);
    }
    std::optional<std::string> AskFile(const FileRequest& /*request*/) override { return file; }
    void Beep() override {}
    void KeepPainting() override {}
};

struct QuietProgram {
    TestSurroundings outside;
    ManualTimer timer;
    YesUser user;
    MemoryRegistry registry;
    Program program;

    static constexpr const char* kNoFolder = "/dev/null/none";

    /// Without a folder that can be made, it writes without backups.
    QuietProgram(Port& port, Clock& clock, const std::string& backupFolder = kNoFolder,
                 BusTrace& trace = NoBusTrace())
        : program({{port, clock, trace},
                   outside,
                   timer,
                   user,
                   outside,
                   outside,
                   outside,
                   outside,
                   outside,
                   registry,
                   outside,
                   backupFolder}) {
        program.StartUp(outside);
        program.i2c.ApplyPortOptions();
    }
};

}  // namespace tarnwell
