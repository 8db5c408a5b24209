// Prints one table of what the program does beside what is possible. Nothing here passes or fails.
#include <QApplication>
#include <cstring>

#include "Rows.h"

int main(int argc, char** argv) {
    using namespace tarnwell::bench;
    const bool quick = argc == 2 && std::strcmp(argv[1], "--quick") == 0;
    if (argc > 1 && !quick) {
        std::fprintf(stderr,
                     "Usage: %s [--quick]  (--quick writes 256 bytes, not a whole device)\n",
                     argv[0]);
        return EXIT_FAILURE;
    }
    const QApplication application(argc, argv);
    Table table;
    AddStartUp(table);
    AddCommandLine(table);
    AddWindow(table);
    AddArchives(table);
    AddSets(table);
    AddWire(table, quick ? Length::Quick : Length::Whole);
    table.Print();
}
