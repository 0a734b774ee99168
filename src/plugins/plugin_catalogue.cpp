#include "plugins/plugin_catalogue.h"

#include <algorithm>

#include "platform/ascii.h"
#include "platform/file_search.h"
#include "platform/files.h"
#include "platform/libraries.h"
#include "platform/stored_path.h"
#include "store/velto_settings.h"

namespace velto {
namespace {

bool IsLibraryName(std::string_view file) {
    const auto name = platform::Lower(file);
    return name.ends_with(".dll") || name.ends_with(".so") ||
           name.find(".so.") != std::string::npos;
}

std::vector<std::string> LibrariesIn(const std::string& folder) {
    if (folder.empty()) return {};
    auto files = platform::FindFilesEndingIn(folder, "");
    std::erase_if(files, [](const std::string& file) { return !IsLibraryName(file); });
    return files;
}

}  // namespace

std::string HostPluginFolder() {
    return platform::HostPath(CVeltoSettings().GetPluginFolder());
}

void CPluginCatalogue::ScanPlugins(const Log& log) {
    UnloadAll();
    plugins_.clear();
    const auto folder = HostPluginFolder();
    const auto files = LibrariesIn(folder);
    if (files.empty()) {
        log("No plugins files (*.dll) found");
        return;
    }
    {
        const CVeltoSettings settings;
        const auto scan = platform::Libraries().BeginScan(folder, CPlugin::IdentityFunctions());
        for (const auto& file : files) {
            log("Scanning file: " + platform::JoinPath(folder, file));
            if (settings.IsExcluded(file)) {
                log("That file is excluded. Continuing");
            } else {
                ScanFile(folder, file, log);
            }
        }
    }
    // The scan has ended the program that they were loaded in.
    UnloadAll();
}

void CPluginCatalogue::ScanFile(const std::string& folder, const std::string& file,
                                const Log& log) {
    CPlugin plugin;
    if (!plugin.Load(file, folder)) {
        log("Cannot load " + platform::JoinPath(folder, file));
        return;
    }
    if (plugin.Identify()) {
        plugins_.push_back(plugin);
        return;
    }
    log(platform::JoinPath(folder, file) + " is not a valid psemu plugin");
    plugin.Unload();
}

std::vector<std::string> CPluginCatalogue::GetPluginNames(std::uint32_t type) const {
    std::vector<std::string> names;
    for (const auto& plugin : plugins_) {
        if (plugin.type == type) names.push_back(plugin.name);
    }
    return names;
}

std::string CPluginCatalogue::GetPluginFile(const std::string& name) const {
    const auto last = std::find_if(plugins_.rbegin(), plugins_.rend(),
                                   [&](const CPlugin& plugin) { return plugin.name == name; });
    return last == plugins_.rend() ? std::string() : last->fileName;
}

std::vector<CPlugin*> CPluginCatalogue::FindByFile(std::string_view fileName) {
    std::vector<CPlugin*> found;
    for (auto& plugin : plugins_) {
        if (platform::EqualsIgnoringCase(plugin.fileName, fileName)) found.push_back(&plugin);
    }
    return found;
}

std::vector<CPlugin*> CPluginCatalogue::FindByName(std::string_view name) {
    std::vector<CPlugin*> found;
    for (auto& plugin : plugins_) {
        if (platform::EqualsIgnoringCase(plugin.name, name)) found.push_back(&plugin);
    }
    return found;
}

void CPluginCatalogue::UnloadAll() {
    for (auto& plugin : plugins_) plugin.Unload();
}

}  // namespace velto
