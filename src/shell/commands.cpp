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
    {NewConfiguration, kFile, "&New Configuration", "Ctrl+N", "", "Create a new document",
     "new-configuration"},
    {NewGroup, kFile, "New &Group", "Ctrl+G", "", "Create a new Group ", "new-group"},
    {CopyConfiguration, kFile, "&Copy Selected Configuration", "Ctrl+C", "",
     "Creates a copy of the selected config", "copy"},
    {Delete, kFile, "&Delete Config/Group", "Del", "",
     "Delete all groups/configurations attached to the selected item.", "delete", false, false,
     true},
    {HideEditor, kFile, "&Hide Editor", "Ctrl+H", "", "Hide the editor window", "", false, true},
    {Exit, kFile, "E&xit", "", "E&xit", "Quit the application; prompts to save documents"},

    {StatusBar, kView, "Status &Bar", "", "", "", "", true},
    {ToolBar, kView, "&ToolBar", "", "", "", "", true},
    {ShowOnStart, kView, "&Show Editor On Start", "Ctrl+S", "", "Toggle show editor on load On/Off",
     "", true},
    {Refresh, kView, "&Refresh", "Ctrl+R", "", "Manually force app to refresh all views"},

    {AltDetect, kSettings, "&Use Alternate Disk Detection", "Ctrl+O",
     "Use Alternative Disk Detection",
     "Switch detection modes (recommended: On for Xevens/sapu's cdr plugins, Off otherwise.)", "",
     true},
    {BypassGui, kSettings, "Bypass Epsxe's &Gui", "Alt+G", "Bypass Epsxe Gui",
     "Hide's epsxe's gui on startup", "", true},
    {LogWindow, kSettings, "Show &Log Window", "Ctrl+D", "Show Log Window",
     "Hides epsxe's debug window (requires no gui option)", "", true},
    {AutoplayDefault, kSettings, "Set &AutoPlay Default", "Alt+D", "Set Autoplay Default",
     "Choose which action to perform on inserting a cd.", "", false, true},
    {ProgramLocations, kSettings, "&Program Locations", "Ctrl+P", "Program Locations",
     "Specifies where epsxe can find epsxe.", "program-locations"},
    {ExclusionList, kSettings, "Plugin &Exclusion List", "Alt+E", "", ""},

    {Import, kTools, "&Import Batard/Cutor Settings", "Alt+I", "Import Game Config",
     "Import from Batard/Epsxecutor ", "import"},
    {Export, kTools, "&Export Batard/Cutor Settings", "Ctrl+E", "", "Export to Batard/Epsxecutor ",
     "export"},
    {TrayIcon, kTools, "&Tray Icon Selector", "Ctrl+I", "Select Tray Icon",
     "Changes the icon displayed next to the clock ", "tray-icon"},
    // The key that its entry shows belongs to the copy.
    {CdImager, kTools, "&Cd Imager\tCtrl+C", "", "Cd Imager", "Opens the Cd Imager Dialog",
     "cd-imager"},
    {MagicCfg, kTools, "Create &MagicCFG File", "Ctrl+M", "",
     "Create a magicCFG file From the selected configuration", "magic-cfg"},

    {HelpTopics, kHelp, "&Help Topics", "", "Help", "List Help topics", "help"},
    {About, kHelp, "&About Velto...", "", "About Velto",
     "Display program information, version number and copyright", "", false, true},

    {ShowEditor, "", "", "", "Show Editor", ""},
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
