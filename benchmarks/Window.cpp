// Rows: the window under a user's hands, and a read in real time with its percentage painted.
#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QScrollBar>
#include <QTabWidget>
#include <QTableView>

#include "RealTimePort.h"
#include "Rows.h"
#include "support/TemporaryFolder.h"
#include "support/TestProgram.h"
#include "ui/dialogs/FormCompare.h"
#include "ui/dialogs/FormHistory.h"
#include "ui/dialogs/names/FormNames.h"
#include "ui/window/FormMain.h"

namespace tarnwell::bench {

namespace {

constexpr double kReadAtLimit = 8192 * 9 * 10e-6;

void PaintAll() {
    QApplication::sendPostedEvents();
    QApplication::processEvents();
}

/// A window on a real-time port; its options are the defaults, without the editor's warning.
struct BenchWindow {
    RealTimePort port{BusTime(0)};
    MemoryRegistry registry;
    LinuxPlatform platform;
    FormMain window{{{port, port.TheClock()}, registry, platform, true, "/dev/null/none"}};

    BenchWindow() {
        window.startUp();
        window.program().state.editorWarning = kNoWarning;
        window.show();
        PaintAll();
    }
};

void AddRead(Table& table, BenchWindow& bench) {
    auto* const read = bench.window.findChild<QAction*>(QStringLiteral("mnuEEPRead"));
    table.Add("read, window and painting included (best of 5)", BestOf(5, [&] { read->trigger(); }),
              kReadAtLimit, "8192 x 9 clocks at 10 us");
    table.Add("  bus times violated", static_cast<double>(bench.port.Times().Violations()), 0,
              "none", Unit::Count);
}

void AddEditorPage(Table& table, BenchWindow& bench) {
    auto* const tabs = bench.window.findChild<QTabWidget*>(QStringLiteral("SSTab1"));
    const auto show = [&](Page page) {
        tabs->setCurrentIndex(static_cast<int>(page));
        PaintAll();
    };
    show(Page::Chroma);
    table.Add("editor page: open (first time)", SecondsOf([&] { show(Page::Editor); }), kFrame,
              "a picture at 60 a second");
    double again = 1;
    for (int time = 0; time < 10; ++time) {
        show(Page::Chroma);
        again = std::min(again, SecondsOf([&] { show(Page::Editor); }));
    }
    table.Add("editor page: open (again)", again, kFrame, "a picture at 60 a second");

    auto& bar =
        *bench.window.findChild<QTableView*>(QStringLiteral("DataGrid"))->verticalScrollBar();
    double all = 0;
    double longest = 0;
    for (int value = bar.minimum(); value <= bar.maximum(); ++value) {
        const double one = SecondsOf([&] {
            bar.setValue(value);
            PaintAll();
        });
        all += one;
        longest = std::max(longest, one);
    }
    const int steps = bar.maximum() - bar.minimum() + 1;
    table.Add("editor page: scroll by a row, of " + std::to_string(steps) + " (mean)", all / steps,
              kFrame, "a picture at 60 a second");
    table.Add("editor page: scroll by a row (longest)", longest, kFrame,
              "a picture at 60 a second");
}

/// Every second byte differs, which makes as many rows as there can be.
void AddCompare(Table& table, BenchWindow& bench) {
    Program& program = bench.window.program();
    for (std::size_t address = 0; address < kEepromBytes; address += 2)
        program.buffer[address] ^= 1;
    YesUser user;
    program.compare.Begin();
    program.compare.Choose(Side::Right, Source::Primary);
    FormCompare dialog(
        program, user, [](const std::function<void()>& command) { command(); }, {}, &bench.window);
    dialog.show();
    auto& filter = *dialog.findChild<QCheckBox*>(QStringLiteral("chkSettingsOnly"));
    table.Add("comparison of " + std::to_string(program.compare.Rows().size()) + " rows: shown",
              BestOf(10,
                     [&] {
                         filter.toggle();
                         filter.toggle();
                         PaintAll();
                     }),
              kFrame, "a picture at 60 a second");
}

void AddHistory(Table& table, BenchWindow& bench) {
    const TemporaryFolder folder;
    folder.Write("history.jsonl", LongHistory());
    YesUser user;
    table.Add("history of 10,000 events: shown",
              BestOf(5,
                     [&] {
                         FormHistory dialog(bench.window.program(), user, {.folder = folder.Path()},
                                            {}, &bench.window);
                         dialog.show();
                         PaintAll();
                     }),
              200e-3, "200 ms");
}

void AddNames(Table& table, BenchWindow& bench) {
    const TemporaryFolder folder;
    Program& program = bench.window.program();
    const NamesFile file = ManyNames(folder.Path("names.json"));
    if (!WriteNames(file))
        std::fprintf(stderr, "no names could be written\n");
    program.nameCommands.Open(file.path);
    const auto run = [](const std::function<void()>& command) { command(); };
    const double shown = BestOf(5, [&] {
        FormNames dialog(program, run, &bench.window);
        dialog.show();
        PaintAll();
    });
    table.Add("10,000 names: shown", shown, 100e-3, "100 ms");
    FormNames dialog(program, run, &bench.window);
    dialog.show();
    auto& filter = *dialog.findChild<QLineEdit*>("txtFilter");
    const double search = BestOf(5, [&] {
        filter.setText("name.77");
        PaintAll();
        filter.clear();
    });
    table.Add("10,000 names: filtered by what is typed", search, 100e-3, "100 ms");
    program.nameCommands.Open({});
}

}  // namespace

void AddWindow(Table& table) {
    BenchWindow bench;
    AddRead(table, bench);
    AddEditorPage(table, bench);
    AddCompare(table, bench);
    AddHistory(table, bench);
    AddNames(table, bench);
}

}  // namespace tarnwell::bench
