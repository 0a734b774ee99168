#include "shell/commands.h"

#include <algorithm>

namespace velto {
namespace {

using enum Command;

constexpr std::string_view kFile = "&File";
constexpr std::string_view kView = "&View";
constexpr std::string_view kSettings = "&Settings";
constexpr std::string_view kTools = "&Tools";
constexpr std::string_view kHelp = "&Help";

constexpr CommandRow kCommands[] = {
    {.command = NewConfiguration,
     .menu = kFile,
     .text = "&New Configuration",
     .key = "Ctrl+N",
     .prompt = "Create a new document",
     .icon = "new-configuration"},
    {.command = NewGroup,
     .menu = kFile,
     .text = "New &Group",
     .key = "Ctrl+G",
     .prompt = "Create a new Group ",
     .icon = "new-group"},
    {.command = CopyConfiguration,
     .menu = kFile,
     .text = "&Copy Selected Configuration",
     .key = "Ctrl+C",
     .prompt = "Creates a copy of the selected config",
     .icon = "copy"},
    {.command = Delete,
     .menu = kFile,
     .text = "&Delete Config/Group",
     .key = "Del",
     .prompt = "Delete all groups/configurations attached to the selected item.",
     .icon = "delete",
     .in_tree_only = true},
    {.command = HideEditor,
     .menu = kFile,
     .text = "&Hide Editor",
     .key = "Ctrl+H",
     .prompt = "Hide the editor window",
     .separator_before = true},
    {.command = Exit,
     .menu = kFile,
     .text = "E&xit",
     .tray = "E&xit",
     .prompt = "Quit the application; prompts to save documents"},

    {.command = StatusBar, .menu = kView, .text = "Status &Bar", .toggle = true},
    {.command = ToolBar, .menu = kView, .text = "&ToolBar", .toggle = true},
    {.command = ShowOnStart,
     .menu = kView,
     .text = "&Show Editor On Start",
     .key = "Ctrl+S",
     .prompt = "Toggle show editor on load On/Off",
     .toggle = true},
    {.command = Refresh,
     .menu = kView,
     .text = "&Refresh",
     .key = "Ctrl+R",
     .prompt = "Manually force app to refresh all views"},

    {.command = AltDetect,
     .menu = kSettings,
     .text = "&Use Alternate Disk Detection",
     .key = "Ctrl+O",
     .tray = "Use Alternative Disk Detection",
     .prompt =
         "Switch detection modes (recommended: On for Xevens/sapu's cdr plugins, Off otherwise.)",
     .toggle = true},
    {.command = BypassGui,
     .menu = kSettings,
     .text = "Bypass Epsxe's &Gui",
     .key = "Alt+G",
     .tray = "Bypass Epsxe Gui",
     .prompt = "Hide's epsxe's gui on startup",
     .toggle = true},
    {.command = LogWindow,
     .menu = kSettings,
     .text = "Show &Log Window",
     .key = "Ctrl+D",
     .tray = "Show Log Window",
     .prompt = "Hides epsxe's debug window (requires no gui option)",
     .toggle = true},
    {.command = AutoplayDefault,
     .menu = kSettings,
     .text = "Set &AutoPlay Default",
     .key = "Alt+D",
     .tray = "Set Autoplay Default",
     .prompt = "Choose which action to perform on inserting a cd.",
     .separator_before = true},
    {.command = ProgramLocations,
     .menu = kSettings,
     .text = "&Program Locations",
     .key = "Ctrl+P",
     .tray = "Program Locations",
     .prompt = "Specifies where epsxe can find epsxe.",
     .icon = "program-locations"},
    {.command = ExclusionList, .menu = kSettings, .text = "Plugin &Exclusion List", .key = "Alt+E"},

    {.command = Import,
     .menu = kTools,
     .text = "&Import Batard/Cutor Settings",
     .key = "Alt+I",
     .tray = "Import Game Config",
     .prompt = "Import from Batard/Epsxecutor ",
     .icon = "import"},
    {.command = Export,
     .menu = kTools,
     .text = "&Export Batard/Cutor Settings",
     .key = "Ctrl+E",
     .prompt = "Export to Batard/Epsxecutor ",
     .icon = "export"},
    {.command = TrayIcon,
     .menu = kTools,
     .text = "&Tray Icon Selector",
     .key = "Ctrl+I",
     .tray = "Select Tray Icon",
     .prompt = "Changes the icon displayed next to the clock ",
     .icon = "tray-icon"},
    // The key that its entry shows belongs to the copy.
    {.command = CdImager,
     .menu = kTools,
     .text = "&Cd Imager\tCtrl+C",
     .tray = "Cd Imager",
     .prompt = "Opens the Cd Imager Dialog",
     .icon = "cd-imager"},
    {.command = MagicCfg,
     .menu = kTools,
     .text = "Create &MagicCFG File",
     .key = "Ctrl+M",
     .prompt = "Create a magicCFG file From the selected configuration",
     .icon = "magic-cfg"},

    {.command = HelpTopics,
     .menu = kHelp,
     .text = "&Help Topics",
     .tray = "Help",
     .prompt = "List Help topics",
     .icon = "help"},
    {.command = About,
     .menu = kHelp,
     .text = "&About Velto...",
     .tray = "About Velto",
     .prompt = "Display program information, version number and copyright",
     .separator_before = true},

    {.command = ShowEditor, .tray = "Show Editor"},
};

constexpr std::optional<Command> kSeparator;

constexpr std::optional<Command> kTrayMenu[] = {
    ShowEditor,      kSeparator, AltDetect,        BypassGui, LogWindow, kSeparator,
    AutoplayDefault, Import,     ProgramLocations, TrayIcon,  CdImager,  kSeparator,
    HelpTopics,      About,      kSeparator,       Exit,
};

constexpr std::optional<Command> kToolBarButtons[] = {
    NewConfiguration, NewGroup, CopyConfiguration, Delete,   kSeparator, ProgramLocations, Import,
    Export,           TrayIcon, CdImager,          MagicCfg, kSeparator, HelpTopics,
};

}  // namespace

std::span<const CommandRow> CommandTable() {
    return kCommands;
}

const CommandRow& RowOf(Command command) {
    return *std::find_if(std::begin(kCommands), std::end(kCommands),
                         [&](const CommandRow& row) { return row.command == command; });
}

std::span<const std::optional<Command>> TrayMenu() {
    return kTrayMenu;
}

std::span<const std::optional<Command>> ToolBarButtons() {
    return kToolBarButtons;
}

}  // namespace velto
