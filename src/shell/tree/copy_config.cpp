#include "shell/tree/copy_config.h"

#include <string>

#include "platform/file_search.h"
#include "platform/files.h"
#include "platform/line_ends.h"
#include "platform/message_box.h"
#include "platform/replace_file.h"

namespace velto {
namespace {

using platform::Files;

constexpr std::size_t kTooLong = 245;  // bytes, with `.dta`

// The path of a file of the folder, in the spelling found there.
std::string PathIn(const std::string& folder, const std::string& file) {
    return platform::JoinPath(folder, platform::FindFile(folder, file).value_or(file));
}

// Each line of the copy has its line end, also the last one.
platform::Status Copy(const std::string& source, const std::string& target) {
    const auto opened = CConfigFile::Open(source);
    if (!opened.ok()) return opened.error();
    auto text = opened.value().text();
    if (!text.empty() && text.back() != '\n') text += '\n';
    return platform::ReplaceFile(Files(), target, platform::ToDiskText(text));
}

}  // namespace

bool OnCopyConfig(CVeltoDoc& document, CEpsxeTree& tree) {
    if (CEpsxeTree::NodeKind(tree.GetSelectedItem()) != NodeKind::Configuration) {
        platform::Report("No Config selected", "No cfg");
        return false;
    }
    const auto file = tree.GetSelectedConfigFile();
    if (file.size() >= kTooLong) {
        platform::Report("Filenme too large", "name too large");
        return false;
    }
    const auto source = FileOf(document.configDir, *tree.GetSelectedItem().node);
    const auto copied = Copy(platform::JoinPath(document.configDir, source),
                             PathIn(document.configDir, "A copy of " + file));
    if (copied.ok()) return true;
    platform::Report("Unable to copy " + file + ": " + copied.error().text);
    return false;
}

}  // namespace velto
