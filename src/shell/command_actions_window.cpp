#include "shell/command_actions_window.h"

#include <QIcon>
#include <QKeySequence>

#include "widgets/owned.h"
#include "widgets/text.h"

namespace velto {
namespace {

QIcon IconOf(const CommandRow& row) {
    return row.icon.empty() ? QIcon() : QIcon(":/icons/" + FromBytes(row.icon) + ".svg");
}

QAction* MakeAction(QWidget& owner, const CommandRow& row,
                    const std::function<void(Command)>& run) {
    auto* const action = MakeOwned<QAction>(IconOf(row), FromBytes(row.text), &owner);
    action->setStatusTip(FromBytes(row.prompt).trimmed());
    // What stands behind a tab is a key that the entry shows, and no part of its name.
    action->setIconText(FromBytes(row.text).section('\t', 0, 0).remove('&'));
    action->setShortcut(QKeySequence(FromBytes(row.key), QKeySequence::PortableText));
    action->setCheckable(row.toggle);
    QObject::connect(action, &QAction::triggered, &owner,
                     [run, command = row.command] { run(command); });
    return action;
}

}  // namespace

CommandActions::CommandActions(QWidget& owner, const std::function<void(Command)>& run) {
    for (const auto& row : CommandTable()) {
        if (row.menu.empty()) continue;
        auto* const action = MakeAction(owner, row, run);
        actions_.emplace(row.command, action);
        if (row.in_tree_only) {
            action->setShortcutContext(Qt::WidgetShortcut);
        } else {
            owner.addAction(action);
        }
    }
}

void CommandActions::FillMenuBar(QMenuBar& bar) const {
    QMenu* menu = nullptr;
    for (const auto& row : CommandTable()) {
        if (row.menu.empty()) continue;
        const auto title = FromBytes(row.menu);
        if (menu == nullptr || menu->title() != title) menu = bar.addMenu(title);
        if (row.separator_before) menu->addSeparator();
        menu->addAction(&(*this)[row.command]);
    }
}

void CommandActions::FillToolBar(QToolBar& bar) const {
    for (const auto& command : ToolBarButtons()) {
        if (!command) {
            bar.addSeparator();
            continue;
        }
        bar.addAction(&(*this)[*command]);
        auto* const button = bar.widgetForAction(&(*this)[*command]);
        button->setFocusPolicy(Qt::TabFocus);
        button->setAccessibleName((*this)[*command].iconText());
    }
}

void CommandActions::FillTrayMenu(QMenu& menu, const std::function<void(Command)>& run,
                                  const std::function<bool(Command)>& is_on) {
    for (const auto& command : TrayMenu()) {
        if (!command) {
            menu.addSeparator();
            continue;
        }
        const auto& row = RowOf(*command);
        auto* const action = menu.addAction(FromBytes(row.tray));
        action->setCheckable(row.toggle);
        QObject::connect(action, &QAction::triggered, &menu,
                         [run, one = row.command] { run(one); });
        if (!row.toggle) continue;
        QObject::connect(&menu, &QMenu::aboutToShow, action,
                         [action, is_on, one = row.command] { action->setChecked(is_on(one)); });
    }
}

}  // namespace velto
