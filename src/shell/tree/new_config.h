// A new configuration: the tests of its name, and the one place that writes a configuration file
// from nothing.
//
// The file starts from fixed values and from the gamepads as the emulator has them at present.
// When OnOk has returned true the file is there; the caller adds the node.
#pragma once

#include <string>
#include <vector>

#include "platform/result.h"
#include "shell/tree/new_group.h"
#include "store/config_folder.h"

namespace velto {

class CNewConfig {
  public:
    explicit CNewConfig(ConfigFolder folder) : configDir(std::move(folder)) {}

    std::vector<std::string> Groups() const { return GroupChoices(settings_); }

    // Takes the user's choice and writes the file, whole. False, after a message, if the name
    // can't be had or the file can't be written: then there is no file.
    bool OnOk(const std::string& new_name, const std::string& chosen_group);

    const ConfigFolder configDir;
    std::string name;
    std::string group;

  private:
    bool CheckName(const std::string& new_name) const;
    platform::Status WriteConfig(const std::string& new_name, const std::string& text) const;

    CVeltoSettings settings_;
};

}  // namespace velto
