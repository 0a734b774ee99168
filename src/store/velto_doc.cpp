#include "store/velto_doc.h"

#include <tuple>
#include <utility>

#include "platform/files.h"
#include "platform/message_box.h"

namespace velto {

CVeltoDoc::CVeltoDoc(std::string folder, Editor& editor)
    : configDir(std::move(folder)), editor_(editor) {}

bool CVeltoDoc::LoadConfig(const std::string& name) {
    if (std::exchange(reselecting, false)) return false;
    const bool gives_up = dirty;
    if (gives_up && !(ConfirmLoss() && AcceptLoss())) return SendBack();
    if (!name.empty() && name != kRootGroup && Read(name)) return false;
    // What was given up mustn't stay in the record of the configuration that is in hand still.
    if (gives_up && loaded_name_ != name && Read(loaded_name_)) UpdatePages();
    return name != kRootGroup;
}

bool CVeltoDoc::Read(const std::string& name) {
    auto opened = OpenConfig(name);
    if (!opened.ok()) {
        platform::Report(
            "Unable to open " + ConfigFolder::FileOf(name) + " in folder " + configDir.path(),
            "File Not Found");
        return false;
    }
    loaded_file_ = std::move(opened).value();
    auto loaded = ReadRecord(
        loaded_file_, [&](const std::string& plugin) { return editor_.PluginDisplayName(plugin); });
    static_cast<ConfigRecord&>(*this) = std::move(loaded.record);
    dirty = false;
    loaded_name_ = name;

    if (loaded.corrupted) {
        platform::Report(
            "One or more errors where detected in this configuration.  Default settings have been "
            "used for the corrupted values.  It is recommended that you review all settings and "
            "change as necessary",
            "File Corrupted", platform::BoxIcon::Warning);
    } else if (IsPortable()) {
        editor_.AdaptPortable(*this, name);
    }
    return true;
}

bool CVeltoDoc::Reload() {
    const bool read = Read(NameInHand());
    UpdatePages();
    return read;
}

bool CVeltoDoc::WarnIfDirty() {
    return !GiveUpChanges() && SendBack();
}

bool CVeltoDoc::OnApply() {
    const auto name = NameInHand();
    if (!MayOverwrite(name)) return false;
    if (!SaveConfig(name, false, name)) return false;
    editor_.EnableApplyAndReset(false);
    return true;
}

// A file that is gone holds nothing that could be lost.
bool CVeltoDoc::MayOverwrite(const std::string& name) const {
    if (!IsInHand(name)) return true;
    const auto present = OpenConfig(name);
    if (!present.ok() || present.value().text() == loaded_file_.text()) return true;
    return platform::ConfirmLoss("The configuration " + name +
                                     " has been changed by another program. Do you want to "
                                     "overwrite it?",
                                 "File changed");
}

bool CVeltoDoc::OnReset() {
    return AcceptLoss() && Reload();
}

bool CVeltoDoc::GiveUpChanges() {
    if (!dirty) return true;
    if (!ConfirmLoss() || !AcceptLoss()) return false;
    // If the file can't be read that has been told, and there is nothing to go back to.
    std::ignore = Reload();
    return true;
}

bool CVeltoDoc::AcceptLoss() {
    const auto removed = platform::Files().Remove(PendingDumpPath());
    if (!removed.ok() && removed.error().kind != platform::ErrorKind::NotFound) {
        platform::Report("Unable to delete " + std::string(kPendingDump) + ": " +
                         removed.error().text);
        return false;
    }
    dirty = false;
    editor_.EnableApplyAndReset(false);
    return true;
}

std::string CVeltoDoc::NameInHand() const {
    if (editor_.SelectedKind() == NodeKind::Group) return loaded_name_;
    auto selected = editor_.GetSelectedConfigName();
    return selected == kRootGroup ? loaded_name_ : selected;
}

bool CVeltoDoc::ConfirmLoss() {
    return platform::ConfirmLoss(
        "Warning: This action will cause your current changes to be lost.  Do you wish to "
        "continue?",
        "Switch view?");
}

bool CVeltoDoc::SendBack() {
    if (editor_.PreviousKind() == NodeKind::Configuration) reselecting = true;
    return true;
}

platform::Result<CConfigFile> CVeltoDoc::OpenConfig(const std::string& name) const {
    const auto found = configDir.Find(name);
    if (!found) {
        return platform::Error{platform::ErrorKind::NotFound, ConfigFolder::FileOf(name),
                               "there is no such file"};
    }
    return CConfigFile::Open(configDir.PathOf(*found));
}

}  // namespace velto
