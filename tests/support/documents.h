// Configurations as tests write them, and the editor around a document.
#pragma once

#include <algorithm>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "store/config_file.h"
#include "store/config_folder.h"
#include "store/editor.h"
#include "store/option_table.h"

namespace velto::test {

// A file of this version in which every key that its generation carries has a value, but those
// left out; `options` come first and so win. Plug-in lines as given.
inline std::string ConfigText(std::string_view version,
                              const std::vector<std::string>& options = {},
                              const std::vector<Key>& left_out = {},
                              std::string_view plugin_lines = "") {
    std::string text = "REGEDIT4\r\n";
    for (const auto& option : options) text.append("; ").append(option).append("\r\n");
    for (const auto& row : OptionTable()) {
        if (row.key == Key::magicCFG || !Carries(GenerationOf(version), row)) continue;
        if (std::find(left_out.begin(), left_out.end(), row.key) != left_out.end()) continue;
        text.append("; ").append(row.name).append(" = ");
        text.append(row.key == Key::fileVersion ? version : row.standard);
        text.append(" \r\n");
    }
    return text.append(plugin_lines);
}

// Has what a test sets.
class FakeEditor : public Editor {
  public:
    std::string GetSelectedConfigName() override { return selected; }
    std::string GetSelectedConfigFile() override {
        return kind == NodeKind::Group ? "" : ConfigFolder::FileOf(selected);
    }
    NodeKind SelectedKind() override { return kind; }
    NodeKind PreviousKind() override { return previous; }
    bool SelectByName(const std::string& name, NodeKind to) override {
        selected = name;
        kind = to;
        return true;
    }
    void EnableApplyAndReset(bool on) override { enabled = on; }
    void RefreshPages() override { ++refreshes; }
    std::string PluginDisplayName(const std::string& fileName) override {
        return display_names[fileName];
    }
    void AdaptPortable(CVeltoDoc&, const std::string& name) override { adapted.push_back(name); }

    std::string selected;
    NodeKind kind = NodeKind::Configuration;
    NodeKind previous = NodeKind::Configuration;
    bool enabled = false;
    int refreshes = 0;
    std::map<std::string, std::string> display_names;
    std::vector<std::string> adapted;
};

}  // namespace velto::test
