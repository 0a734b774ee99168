// The preparations in front of the editor: first-run setup, registry keys, recovery from a run
// that was cut off, plug-in scan. Each step is told in the start-up log before the next one runs.
//
// No failure stops the sequence. It owns the plug-in catalogue, which outlives it with this
// object.
#pragma once

#include <string>

#include "plugins/plugin_catalogue.h"
#include "store/velto_settings.h"

namespace velto {

// The log's stored path. It is made anew at each start, and complete up to the last step that ran.
inline constexpr const char* kStartupLog = "c:\\veltoStartup.log";

// What the sequence shows while it runs.
class StartupWindow {
  public:
    virtual ~StartupWindow() = default;
    virtual void OnLogLine(const std::string& line) = 0;
    // The user sets the programs' paths. Whether it is cancelled doesn't matter.
    virtual void RunPathsDialog() = 0;
};

class CAppStartup {
  public:
    // `configDir` is a host path without a separator at its end. `window` is not owned, and asked
    // only during Run.
    CAppStartup(std::string configDir, StartupWindow& window);

    void Run();

    CPluginCatalogue& catalogue() { return catalogue_; }

  private:
    void Log(const std::string& message);
    void RunFirstSetup();
    void PrepareRegistry();
    void RecoverLeftovers();
    void RecoverBackups();
    // Whether the file was left in the configuration folder; then `line` is logged.
    bool FindsLeftover(const char* file, const char* line);
    void DeleteLeftover(const char* file);

    std::string config_dir_;
    StartupWindow& window_;
    CVeltoSettings settings_;
    CPluginCatalogue catalogue_;
};

}  // namespace velto
