// The one document: the configuration in hand, with its load, its save and what may be lost.
//
// Three states matter: clean; edited (`dirty`); and edited with plug-in settings pending, when
// `plugins.tmp` of the configuration folder holds a dump that no configuration has yet. A save, a
// reset or an accepted loss of changes makes the document clean again.
//
// The document belongs to the user interface thread. It owns the record; the editor that it asks
// is not owned and must outlive it. Files are read and written whole, in one go.
#pragma once

#include <string>
#include <string_view>
#include <utility>

#include "platform/files.h"
#include "platform/result.h"
#include "store/config_folder.h"
#include "store/config_record.h"
#include "store/editor.h"
#include "store/velto_settings.h"

namespace velto {

// In the configuration folder: the pending dump of plug-in settings.
inline constexpr const char* kPendingDump = "plugins.tmp";

class CVeltoDoc : public ConfigRecord {
  public:
    // `configDir` is a host path without a separator at its end.
    CVeltoDoc(std::string configDir, Editor& editor);

    // Loads `<name>.dta` into the record, without a change to the file. True tells the tree to go
    // back to the node that was selected before: the user keeps unsaved changes, there is no name,
    // or the file can't be read, which is reported; the record then is as before. False lets it go
    // on.
    bool LoadConfig(const std::string& name);

    // For a selection that leaves a configuration for a node without one: asks about unsaved
    // changes. True as above.
    bool WarnIfDirty();

    // Takes the lines of `<source>.dta`, or a pending dump, and the record to `<destination>.dta`
    // (a name, or a full path without `.dta`). `magic` writes a portable file, which leaves the
    // pending dump, `dirty` and the source as they are. False after a failure, which is reported:
    // then `dirty` and the pending dump stay, and the destination is the old file or the new one,
    // whole.
    bool SaveConfig(const std::string& source, bool magic, const std::string& destination);

    // "Apply Settings": saves the configuration in hand. If its file isn't what was loaded any
    // more, the user is asked first. False if he keeps his changes in hand, or after a failure, as
    // above.
    bool OnApply();

    // "Reset Settings": the configuration in hand as its file has it. False, after a message, as
    // below, or if the file can't be read: then the record stays.
    bool OnReset();

    // For a command that loses unsaved changes: asks, if there are any, and accepts the loss; the
    // record is as its file has it then. False if the command must stop.
    bool GiveUpChanges();

    // The user gives unsaved changes up, pending plug-in settings included. False, after a
    // message, if these can't be removed: then everything stays, or they would reach the next
    // configuration that is saved.
    bool AcceptLoss();

    // Reads the file of the configuration in hand anew, as another program may have changed it. For
    // a record without unsaved changes. False as OnReset.
    bool Reload();

    void UpdatePages() { editor_.RefreshPages(); }

    // The name that a save or a reset means: that of the selected configuration, or, if the
    // selection is a group by now or has a name that is never loaded, of the last one that was.
    std::string NameInHand() const;
    // Whether the record is this configuration's.
    bool IsInHand(const std::string& name) const { return loaded_name_ == name; }
    // Its file as it was read or saved last.
    const CConfigFile& LoadedFile() const { return loaded_file_; }
    // Whether that is a portable file, which can't be launched. Saves keep its mark.
    bool IsPortable() const { return velto::IsPortable(loaded_file_); }
    // The configuration in hand has been renamed, or its file been rewritten, by the editor.
    void FollowRename(const std::string& name) { loaded_name_ = name; }
    void FollowRewrite(CConfigFile file) { loaded_file_ = std::move(file); }

    const ConfigFolder configDir;
    CVeltoSettings settings;
    // The record or the pending plug-in settings differ from the file.
    bool dirty = false;

  private:
    platform::Status Save(const std::string& source, bool magic, const std::string& destination);
    static bool ConfirmLoss();
    bool MayOverwrite(const std::string& name) const;
    // Takes the file into the record. False, after a message, if it can't be read.
    bool Read(const std::string& name);
    // True, for the tree, whose way back then loads nothing.
    bool SendBack();
    platform::Result<CConfigFile> OpenConfig(const std::string& name) const;
    std::string PendingDumpPath() const { return configDir.PathOf(kPendingDump); }

    Editor& editor_;
    std::string loaded_name_;
    CConfigFile loaded_file_;
    // The next load is the echo of the tree's way back after a refusal.
    bool reselecting = false;
};

// The lines of a configuration or a dump that belong to the plug-ins: all behind the first one
// but option lines and comments; banners, which begin with ";#//", are kept. Each has its line
// end. Texts have LF line ends.
std::string CopyPluginLines(std::string_view from);

}  // namespace velto
