#include "ui/window/CellMenu.h"

#include <QMenu>

namespace tarnwell {

void popUpCellMenu(QWidget& window, Program& program, int cell, const QPoint& place,
                   const CellMenuStarts& starts) {
    auto* menu = new QMenu(&window);
    menu->setObjectName(QStringLiteral("mnuCell"));
    menu->setAttribute(Qt::WA_DeleteOnClose);
    const auto add = [&](const char* name, const char* caption, bool enabled,
                         const std::function<void()>& command) {
        QAction* item = menu->addAction(QLatin1String(caption));
        item->setObjectName(QLatin1String(name));
        item->setEnabled(enabled);
        QObject::connect(item, &QAction::triggered, &window, command);
    };
    const auto run = [&](const std::function<void()>& command) {
        return [command, start = starts.run] { start(command); };
    };
    CellCommands& commands = program.cellCommands;
    add("mnuCellEdit", "&Edit", true, starts.edit);
    add("mnuCellRevert", "&Revert", commands.CanRevert(cell),
        run([&commands, cell] { commands.Revert(cell); }));
    add("mnuCellCopy", "&Copy to All Formats", commands.CanCopy(cell),
        run([&commands, cell] { commands.CopyToAllFormats(cell); }));
    add("mnuCellShow", "&Show in Data Editor", commands.HasPlace(),
        run([&program, cell] { program.editorPage.ShowByte(Cell(cell).address); }));
    menu->popup(place);
}

}  // namespace tarnwell
