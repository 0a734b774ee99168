// The editor around a document, as a test sets it.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "store/config_folder.h"
#include "store/editor.h"

namespace velto::test {

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
