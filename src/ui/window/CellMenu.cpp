#include "ui/window/CellMenu.h"

#include <QMenu>

#include "ui/looks/Text.h"

namespace tarnwell {

void popUpCellMenu(QWidget& window, Program& program, int cell, const QPoint& place,
                   const CellMenuStarts& starts) {
    auto* menu = new QMenu(&window);
    menu->setObjectName(QStringLiteral("mnuCell"));
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->setToolTipsVisible(true);
    const auto add = [&](const char* name, const char* caption,
                         const std::function<void()>& command) -> QAction& {
        QAction* item = menu->addAction(QLatin1String(caption));
        item->setObjectName(QLatin1String(name));
        QObject::connect(item, &QAction::triggered, &window, command);
        return *item;
    };
    const auto run = [&](const std::function<void()>& command) {
        return [command, start = starts.run] { start(command); };
    };
    CellCommands& commands = program.cellCommands;
    const bool primary = commands.HasPlace();
    constexpr const char* kSecondary = "The settings are those of the primary EEPROM";
    add("mnuCellEdit", "&Edit", starts.edit);
    allow(add("mnuCellRevert", "&Revert", run([&commands, cell] { commands.Revert(cell); })),
          commands.CanRevert(cell),
          !primary                       ? kSecondary
          : program.cells.LastRead(cell) ? "The value is the one that was read last"
                                         : "No value was read yet");
    allow(add("mnuCellCopy", "&Copy to All Formats",
              run([&commands, cell] { commands.CopyToAllFormats(cell); })),
          commands.CanCopy(cell),
          primary ? "For a value in its range, of a setting with several formats" : kSecondary);
    allow(add("mnuCellShow", "&Show in Data Editor",
              run([&program, cell] { program.editorPage.ShowByte(Cell(cell).address); })),
          primary, kSecondary);
    menu->popup(place);
}

}  // namespace tarnwell
