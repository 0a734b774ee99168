// The plug-ins of the emulator's plug-in folder, in the order of the file search.
//
// Filled by one scan at each start and never stored. The list owns the loaded state of its
// plug-ins: at rest all are unloaded, and its destructor unloads them. It belongs to one thread.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "plugins/plugin.h"

namespace velto {

// The plug-in folder of the settings as a host path, without "/" at its end; empty if there is
// none. Files of it are loaded by their bare names.
std::string HostPluginFolder();

class CPluginCatalogue {
  public:
    using Log = std::function<void(const std::string& line)>;

    CPluginCatalogue() = default;
    ~CPluginCatalogue() { UnloadAll(); }
    CPluginCatalogue(const CPluginCatalogue&) = delete;
    CPluginCatalogue& operator=(const CPluginCatalogue&) = delete;

    // Replaces the list by the plug-ins among the files `*.dll`, `*.so` and `*.so.*` of the
    // plug-in folder. `log` gets each line before the step that it tells of. A library that is
    // excluded by the settings is never loaded; one that does anything wrong costs a line.
    void ScanPlugins(const Log& log);

    // Display names of the plug-ins of one type, in the order of the list.
    std::vector<std::string> GetPluginNames(std::uint32_t type) const;
    // The file of the last plug-in with exactly this display name; empty if there is none.
    std::string GetPluginFile(const std::string& name) const;

    // All plug-ins with this file or display name, whatever its case.
    std::vector<CPlugin*> FindByFile(std::string_view fileName);
    std::vector<CPlugin*> FindByName(std::string_view name);

    std::vector<CPlugin>& plugins() { return plugins_; }
    void UnloadAll();

  private:
    void ScanFile(const std::string& folder, const std::string& file, const Log& log);

    std::vector<CPlugin> plugins_;
};

}  // namespace velto
