#include "shell/tree/copy_config.h"

#include <string>

#include "platform/files.h"
#include "platform/line_ends.h"
#include "platform/message_box.h"
#include "platform/replace_file.h"
#include "store/config_folder.h"

namespace velto {
namespace {

constexpr std::size_t kTooLong = 245;  // bytes, with `.dta`

// Each line of the copy has its line end, also the last one.
platform::Status Copy(const ConfigFolder& folder, const std::string& name) {
    const auto opened = CConfigFile::Open(folder.PathOf(folder.Spelled(name)));
    if (!opened.ok()) return opened.error();
    const auto target = folder.Target("A copy of " + name);
    if (!target.ok()) return target.error();
    auto text = opened.value().text();
    if (!text.empty() && text.back() != '\n') text += '\n';
    return platform::ReplaceFile(platform::Files(), target.value(), platform::ToDiskText(text));
}

}  // namespace

bool OnCopyConfig(const CVeltoDoc& document, const CEpsxeTree& tree) {
    if (tree.GetSelectedItem().kind() != NodeKind::Configuration) {
        platform::Report("No Config selected", "No cfg");
        return false;
    }
    const auto file = tree.GetSelectedConfigFile();
    if (file.size() >= kTooLong) {
        platform::Report("Filenme too large", "name too large");
        return false;
    }
    const auto copied = Copy(document.configDir, tree.GetSelectedConfigName());
    if (copied.ok()) return true;
    platform::Report("Unable to copy " + file + ": " + copied.error().text);
    return false;
}

}  // namespace velto
