// What the document asks of the editor around it: its one way upwards.
#pragma once

#include <string>

namespace velto {

class CVeltoDoc;

// Kinds of the tree's nodes.
enum class NodeKind { Group = 0, Configuration = 1, Page = 2 };

// All calls come on the user interface thread.
class Editor {
  public:
    virtual ~Editor() = default;

    // The configuration that the tree's selection belongs to, without and with `.dta`; of a group
    // its own name and an empty file name.
    virtual std::string GetSelectedConfigName() = 0;
    virtual std::string GetSelectedConfigFile() = 0;
    virtual NodeKind SelectedKind() = 0;
    // Of the node that was selected before.
    virtual NodeKind PreviousKind() = 0;
    // False if there is no such node.
    virtual bool SelectByName(const std::string& name, NodeKind kind) = 0;

    // "Apply Settings" and "Reset Settings".
    virtual void EnableApplyAndReset(bool enabled) = 0;
    virtual void RefreshPages() = 0;

    // The display name of the plug-in in this file, whatever its case; empty if there is none.
    virtual std::string PluginDisplayName(const std::string& fileName) = 0;

    // Adapts a portable configuration, which the record holds, to this machine, and saves it
    // under its name.
    virtual void AdaptPortable(CVeltoDoc& document, const std::string& name) = 0;
};

}  // namespace velto
