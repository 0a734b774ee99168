// The commands of the editor as data: what stands in the menus, in the tray and on the tool bar.
// What they do is registered with CommandHandlers.
#pragma once

#include <optional>
#include <span>
#include <string_view>

namespace velto {

enum class Command {
    NewConfiguration,
    NewGroup,
    CopyConfiguration,
    Delete,
    HideEditor,
    Exit,
    StatusBar,
    ToolBar,
    ShowOnStart,
    Refresh,
    AltDetect,
    BypassGui,
    LogWindow,
    AutoplayDefault,
    ProgramLocations,
    ExclusionList,
    Import,
    Export,
    TrayIcon,
    CdImager,
    MagicCfg,
    HelpTopics,
    About,
    ShowEditor,
};

struct CommandRow {
    Command command{};
    std::string_view menu{};  // the main menu that it stands in; empty: in none
    std::string_view text{};  // its entry there
    std::string_view key{};   // portable text of the shortcut; empty: none
    std::string_view tray{};  // its entry in the tray menu; empty: it isn't there
    std::string_view prompt{};
    std::string_view icon{};  // of the tool bar: a name below ":/icons/"
    bool toggle = false;
    bool separator_before = false;
    bool in_tree_only = false;  // the key works in the tree, and nowhere else
};

// In the order of the menus.
std::span<const CommandRow> CommandTable();
const CommandRow& RowOf(Command command);

// From the top and from the left; nothing stands for a separator.
std::span<const std::optional<Command>> TrayMenu();
std::span<const std::optional<Command>> ToolBarButtons();

}  // namespace velto
