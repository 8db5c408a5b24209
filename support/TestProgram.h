// The whole program on the simulated television, with a scripted user instead of a window.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <deque>
#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "port/simulated/SimulatedTelevision.h"
#include "program/NoWindow.h"
#include "program/Program.h"
#include "support/TemporaryFolder.h"

namespace tarnwell {

using testing::AllOf, testing::AnyOf, testing::Contains, testing::ContainsRegex, testing::Each,
    testing::ElementsAre, testing::EndsWith, testing::FieldsAre, testing::Gt, testing::HasSubstr,
    testing::IsEmpty, testing::IsSupersetOf, testing::Le, testing::MatchesRegex, testing::Not,
    testing::Optional, testing::Pointee, testing::Pointwise, testing::SizeIs, testing::StartsWith;

/// How the question ends that names what does not fit a write.
inline constexpr std::string_view kAllTheSame = "Write to the EEProm all the same?";

/// Answers from a queue and keeps what was shown. A question without an answer fails the test.
class ScriptedUser final : public User {
  public:
    std::vector<Box> boxes;
    std::vector<FileRequest> fileRequests;
    std::deque<Answer> answers;
    std::deque<std::optional<std::string>> texts;
    std::deque<std::optional<std::string>> files;
    std::function<void(const Box&)> onBox;
    std::function<void()> onPainting;
    bool ignoresDoubts = false;  ///< says Yes to what does not fit, which is not kept
    int beeps = 0;
    int paintings = 0;
    int stopsAt = 0;  ///< at this painting the user wants to stop

    Answer ShowBox(const Box& box) override {
        if (ignoresDoubts && box.text.ends_with(kAllTheSame))
            return Answer::Yes;
        boxes.push_back(box);
        if (onBox)
            onBox(box);
        const bool tells = box.style == BoxStyle::Critical || box.style == BoxStyle::Exclamation ||
                           box.style == BoxStyle::Information;
        return tells ? Answer::Ok : Next(answers, Answer::No, box.text);
    }
    std::optional<std::string> AskText(const TextRequest& request) override {
        return Next(texts, std::optional<std::string>{}, std::string(request.prompt));
    }
    std::optional<std::string> AskFile(const FileRequest& request) override {
        fileRequests.push_back(request);
        return Next(files, std::optional<std::string>{}, std::string(request.title));
    }
    void Beep() override { ++beeps; }
    bool KeepPainting() override {
        ++paintings;
        if (onPainting)
            onPainting();
        return paintings != stopsAt;
    }

    /// "title|text" of each box since the last call.
    std::vector<std::string> TakeBoxes() {
        std::vector<std::string> taken;
        for (const Box& box : boxes)
            taken.push_back(box.title + "|" + box.text);
        boxes.clear();
        return taken;
    }

  private:
    template <typename T>
    static T Next(std::deque<T>& queue, T otherwise, const std::string& question) {
        if (queue.empty()) {
            ADD_FAILURE() << "no answer to: " << question;
            return otherwise;
        }
        T answer = std::move(queue.front());
        queue.pop_front();
        return answer;
    }
};

/// Agrees to everything and picks one file.
class YesUser : public User {
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
    bool KeepPainting() override { return true; }
};

class MemoryRegistry final : public mRegistry {
  public:
    std::map<std::string, std::map<std::string, std::string>, std::less<>> keys;
    int flushes = 0;

    bool CreateRegKey(std::string_view keyPath) override {
        keys.try_emplace(std::string(keyPath));
        return true;
    }
    void SetRegValue(std::string_view keyPath, std::string_view name,
                     std::string_view value) override {
        if (const auto key = keys.find(keyPath); key != keys.end())
            key->second[std::string(name)] = value;
    }
    std::string QueryRegValue(std::string_view keyPath, std::string_view name) override {
        const auto key = keys.find(keyPath);
        return key == keys.end() ? "" : std::map(key->second)[std::string(name)];
    }
    void Flush() override { ++flushes; }
};

class ManualTimer final : public Timer {
  public:
    std::optional<std::chrono::milliseconds> running;
    void Start(std::chrono::milliseconds interval) override { running = interval; }
    void Stop() override { running.reset(); }
};

/// Everything outside the program that a window and a desktop would be.
class TestSurroundings : public NoWindow,
                         public Screen,
                         public Platform,
                         public Calendar,
                         public WindowSetUp {
  public:
    std::vector<Shown> changes;
    std::vector<std::string> steps;
    OsVersionInfo version{148, 5, 2};
    bool versionKnown = true;
    std::string systemFolder = "/lib/modules/test";
    bool warnAgain = true;
    std::function<void()> onFormEdit;
    std::vector<std::string> existing;
    std::vector<std::string> started;
    bool startsSucceed = true;
    std::string modulePath;
    std::string timestamp = "20261117-212101";

    void Changed(Shown what) override { changes.push_back(what); }

    void TurnToEditor() override { steps.emplace_back("editor page"); }
    bool ShowWarningAgain() override {
        steps.emplace_back("warning dialog");
        return warnAgain;
    }

    void ShowCell(int cell) override { steps.push_back("cell " + std::to_string(cell)); }
    void ShowFormEdit() override {
        if (onFormEdit)
            onFormEdit();
    }

    bool GetVersionExA(OsVersionInfo& info) override {
        info = version;
        return versionKnown;
    }
    int SHGetFolderPathA(int, PathBuffer& path) override {
        std::ranges::copy(systemFolder, path.begin());
        return systemFolder.empty() ? -1 : 0;
    }

    std::string ProgramFolder() const override { return "/program"; }
    bool Exists(const std::string& path) const override {
        return std::ranges::find(existing, path) != existing.end();
    }
    void OpenInViewer(const std::string& path, std::function<void()> failed) override {
        if (!Start(path))
            failed();
    }
    bool Start(const std::string& path) override {
        started.push_back(path);
        return startsSucceed;
    }
    bool MoveToTrash(const std::string& path) override {
        return std::filesystem::remove_all(path) > 0;
    }
    std::string KernelModulePath(const std::string&) const override { return modulePath; }

    std::string ShortDate() const override { return "11/17/2026"; }
    std::string TimeWithSeconds() const override { return "9:21:01 PM"; }
    std::string Timestamp() const override { return timestamp; }
    std::string ZonedTime() const override { return "2026-11-17T21:21:01+01:00"; }

    void SetUpFileDialog() override { steps.emplace_back("file dialog"); }
    void SyncMenuChecks() override { steps.emplace_back("menu checks"); }
    void SetLayout() override { steps.emplace_back("layout"); }
    void ColourControls() override { steps.emplace_back("colours"); }
    void ApplyPortOptions() override { steps.emplace_back("port options"); }
    void ReleaseBus() override { steps.emplace_back("release"); }
    void SetupGrid() override { steps.emplace_back("grid"); }
    void EnableSettingsButtons() override { steps.emplace_back("buttons"); }
};

/// The program with its options loaded and no window.
template <typename TheUser, typename Outside = TestSurroundings>
struct StartedProgram {
    Outside outside;
    ManualTimer timer;
    TheUser user;
    MemoryRegistry registry;
    StopRequest stop;
    Program program;

    static constexpr const char* kNoFolder = "/dev/null/none";

    /// Without a folder that can be made, whoever agrees to it writes without backups.
    StartedProgram(Port& port, Clock& clock, const std::string& backupFolder = kNoFolder,
                   BusTrace& trace = NoBusTrace(), KernelI2c& kernel = NoKernelI2c())
        : program({{port, clock, trace, stop, kernel},
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
                   backupFolder,
                   backupFolder.substr(0, backupFolder.rfind('/')) + "/names.json"}) {
        program.StartUp(outside);
        program.i2c.ApplyPortOptions();
        outside.steps.clear();
        outside.changes.clear();
    }
};

using QuietProgram = StartedProgram<YesUser>;

struct OwnTelevision {
    TemporaryFolder folder;
    SimulatedTelevision television;
};

/// On a television whose bus answers.
struct TestProgram : OwnTelevision, StartedProgram<ScriptedUser> {
    explicit TestProgram(Simulation simulation = {}, KernelI2c& kernel = NoKernelI2c())
        : OwnTelevision{{}, SimulatedTelevision(simulation)},
          StartedProgram(television, television, folder.Path("backups"), NoBusTrace(), kernel) {}

    std::string Status() const { return std::string(program.statusBar.Text(Panel::Status)); }
    std::string Crc() const { return std::string(program.statusBar.Text(Panel::Crc)); }
    std::string Eep() const { return std::string(program.statusBar.Text(Panel::Eep)); }

    /// Changes a value, and a byte of the grid, in their editors.
    void EditCell(int cell, int value) {
        outside.onFormEdit = [this, value] {
            program.valueEditor.StepTo(value);
            program.valueEditor.Accept();
        };
        program.valueEditor.CellClicked(cell);
    }
    void EditByte(int address, const std::string& text, EditKey key = EditKey::Next) {
        program.cellEditor.MoveTo(GridCell::At(address));
        program.cellEditor.Click();
        program.cellEditor.TextEdited(text);
        program.cellEditor.KeyPressed(key);
    }
    /// Presses Yes or OK at the next questions, as many as are given.
    void WillAnswer(std::initializer_list<Answer> next) {
        user.answers.insert(user.answers.end(), next);
    }
};

}  // namespace tarnwell
