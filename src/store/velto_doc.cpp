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
    if (!GiveUpChanges()) return SendBack();
    if (name.empty()) return true;
    if (name == kRootGroup) return false;

    const auto opened = OpenConfig(name);
    if (!opened.ok()) {
        platform::Report(
            "Unable to open " + ConfigFolder::FileOf(name) + " in folder " + configDir.path(),
            "File Not Found");
        return true;
    }
    const auto& file = opened.value();
    auto loaded = ReadRecord(
        file, [&](const std::string& plugin) { return editor_.PluginDisplayName(plugin); });
    static_cast<ConfigRecord&>(*this) = std::move(loaded.record);
    dirty = false;
    loaded_name_ = name;

    if (loaded.corrupted) {
        platform::Report(
            "One or more errors where detected in this configuration.  Default settings have been "
            "used for the corrupted values.  It is recommended that you review all settings and "
            "change as necessary",
            "File Corrupted", platform::BoxIcon::Warning);
    } else if (IsPortable(file)) {
        editor_.AdaptPortable(*this, name);
    }
    return false;
}

bool CVeltoDoc::WarnIfDirty() {
    if (!dirty) return false;
    if (ConfirmLoss() && OnReset()) return false;
    return SendBack();
}

bool CVeltoDoc::OnApply() {
    const auto name = NameInHand();
    if (!SaveConfig(name, false, name)) return false;
    editor_.EnableApplyAndReset(false);
    return true;
}

bool CVeltoDoc::OnReset() {
    const auto name = NameInHand();
    if (!AcceptLoss()) return false;
    LoadConfig(name);
    UpdatePages();
    return true;
}

bool CVeltoDoc::GiveUpChanges() {
    return !dirty || (ConfirmLoss() && AcceptLoss());
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
