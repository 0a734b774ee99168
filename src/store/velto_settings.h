// The program's own settings: values of one registry key, read and written one at a time.
//
// Whoever needs a setting makes an object; nothing is cached, so all objects see the same state.
// An object belongs to one thread. No read or write reports a failure: a failed read gives the
// default, a failed write leaves the old value.
//
// Paths are stored as the user's system writes them, and every folder given here ends in that
// path's own separator.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/registry.h"

namespace velto {

inline constexpr std::string_view kSettingsKey = "software\\velto\\Settings";
inline constexpr std::string_view kEmulatorConfigKey = "Software\\epsxe\\config";

class CVeltoSettings {
  public:
    // Opens the settings key, after making it if it isn't there.
    CVeltoSettings();

    // Bytes of a text that can be read back.
    static constexpr std::size_t kLongestText = platform::kTextBuffer - 1;

    // Full path of the emulator's executable, of the two other front ends' tools, and of the tray
    // icon's file. Empty if unset, or longer than that.
    std::string GetEmulatorPath() const { return ReadString("epsxe"); }
    void SetEmulatorPath(std::string_view path) { WriteString("epsxe", path); }
    std::string GetCutorPath() const { return ReadString("cutor"); }
    void SetCutorPath(std::string_view path) { WriteString("cutor", path); }
    std::string GetBatardPath() const { return ReadString("batard"); }
    void SetBatardPath(std::string_view path) { WriteString("batard", path); }
    std::string GetIconFile() const { return ReadString("icon"); }
    void SetIconFile(std::string_view name) { WriteString("icon", name); }

    // Derived from the paths; empty if these are.
    std::string GetEmulatorFolder() const;
    std::string GetBatardFolder() const;
    std::string GetPluginFolder() const;

    // `installerReset` is exactly 1.
    bool IsFirstRunDue() const { return ReadDword("installerReset", 0) == 1; }
    void SetFirstRunDone() { WriteDword("installerReset", 0); }
    // The emulator is started with -nogui.
    bool IsGuiBypassed() const { return ReadDword("nogui", 1) != 0; }
    void SetGuiBypassed(bool on) { WriteDword("nogui", on ? 1 : 0); }
    bool IsShownOnLoad() const { return ReadDword("showOnLoad", 1) != 0; }
    void SetShownOnLoad(bool on) { WriteDword("showOnLoad", on ? 1 : 0); }
    bool IsAltDetect() const { return ReadDword("altdetect", 0) != 0; }
    void SetAltDetect(bool on) { WriteDword("altdetect", on ? 1 : 0); }
    bool IsStatusBarOn() const { return ReadDword("statusBar", 1) != 0; }
    void SetStatusBarOn(bool on) { WriteDword("statusBar", on ? 1 : 0); }
    bool IsToolBarOn() const { return ReadDword("toolBar", 1) != 0; }
    void SetToolBarOn(bool on) { WriteDword("toolBar", on ? 1 : 0); }
    // The value's name has the opposite sense. Nothing in the program switches the question on
    // again.
    bool ShouldConfirmExit() const { return ReadDword("noConfirm", 0) == 0; }
    void SetConfirmOff() { WriteDword("noConfirm", 1); }

    // The action code for a disc without a configuration.
    std::uint32_t GetAutoplayDefault() const { return ReadDword("Autoplay Default", 0); }
    void SetAutoplayDefault(std::uint32_t code) { WriteDword("AutoPlay Default", code); }

    // The main window's, in pixels; 0 for what isn't stored. The position may be negative.
    struct WindowSize {
        std::uint32_t cx;
        std::uint32_t cy;
    };
    struct WindowPos {
        std::int32_t x;
        std::int32_t y;
    };
    WindowSize GetWindowSize() const;
    void SetWindowSize(std::uint32_t cx, std::uint32_t cy);
    WindowPos GetWindowPos() const;
    void SetWindowPos(std::int32_t x, std::int32_t y);

    // Groups of the tree and the parent of each: entry i of one belongs to entry i of the other.
    std::vector<std::string> GetGroups() const { return ReadList("groups"); }
    std::vector<std::string> GetParents() const { return ReadList("parents"); }
    void AddGroup(const std::string& name, const std::string& parent);
    // Every entry with exactly this name and this parent.
    void RemoveGroup(const std::string& name, const std::string& parent);
    void SetGroups(const std::vector<std::string>& groups, const std::vector<std::string>& parents);

    // File names of libraries that a plug-in scan leaves out; compared byte for byte.
    bool IsExcluded(std::string_view fileName) const;
    // True if a list is stored, even an empty one, or can't be read: it isn't known to be missing.
    bool HasExclusionList() const;
    std::vector<std::string> GetExclusionList() const { return ReadList("excluded"); }
    void SetExclusionList(const std::vector<std::string>& entries);

    // Whether the emulator shows its log window: a value of the emulator's own key.
    bool IsLogWindowOn() const;
    void SetLogWindow(bool on);

  private:
    std::string ReadString(std::string_view name) const;
    std::vector<std::string> ReadList(std::string_view name) const;
    bool IsListLost(std::string_view name) const;
    std::uint32_t ReadDword(std::string_view name, std::uint32_t missing) const;
    void WriteString(std::string_view name, std::string_view text);
    void WriteDword(std::string_view name, std::uint32_t number);

    std::unique_ptr<platform::RegistryKey> key_;  // null if it can't be opened
};

}  // namespace velto
