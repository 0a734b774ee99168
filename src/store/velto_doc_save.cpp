#include <optional>
#include <utility>

#include "platform/files.h"
#include "platform/line_ends.h"
#include "platform/message_box.h"
#include "platform/replace_file.h"
#include "store/velto_doc.h"

namespace velto {
namespace {

using platform::ErrorKind;
using platform::Files;
using platform::Result;
using platform::Status;

// The file of a full path without its ending, or of a name in the folder.
Result<std::string> PathIn(const ConfigFolder& folder, const std::string& name) {
    return name.starts_with('/') ? ConfigFolder::FileOf(name) : folder.Target(name);
}

// The file's text with LF line ends; nothing if there is no such file.
Result<std::optional<std::string>> ReadIfThere(const std::string& path) {
    auto bytes = platform::ReadWhole(Files(), path, kLargestConfigFile);
    if (bytes.ok()) return std::optional(platform::FromDiskText(bytes.value()));
    if (bytes.error().kind == ErrorKind::NotFound) return std::optional<std::string>();
    return bytes.error();
}

}  // namespace

std::string CopyPluginLines(std::string_view from) {
    std::string lines;
    auto begin = from.find('\n');
    while (begin != std::string_view::npos && ++begin < from.size()) {
        const auto end = from.find('\n', begin);
        const auto line = from.substr(begin, end - begin);
        if (!line.starts_with(';') || line.starts_with(";#//")) lines.append(line) += '\n';
        begin = end;
    }
    return lines;
}

bool CVeltoDoc::SaveConfig(const std::string& source, bool magic, const std::string& destination) {
    const auto saved = Save(source, magic, destination);
    if (saved.ok()) {
        if (!magic) dirty = false;
        return true;
    }
    platform::Report("Unable to save settings to " + ConfigFolder::FileOf(destination) +
                         " in folder " + configDir.path(),
                     "File Not Found");
    return false;
}

// The source is never moved, and the pending dump goes only when the destination holds it: at any
// moment both files are whole and no plug-in setting is without a file.
Status CVeltoDoc::Save(const std::string& source, bool magic, const std::string& destination) {
    const auto from = PathIn(configDir, source);
    const auto to = PathIn(configDir, destination);
    if (!from.ok()) return from.error();
    if (!to.ok()) return to.error();
    const auto pending = ReadIfThere(PendingDumpPath());
    if (!pending.ok()) return pending.error();
    auto lines = pending.value();
    if (!lines) {
        auto old = ReadIfThere(from.value());
        if (!old.ok()) return old.error();
        lines = std::move(old).value();
    }

    auto file = WriteRecord(*this, CopyPluginLines(lines.value_or("")), magic || IsPortable());
    const auto text = platform::ToDiskText(file.text());
    // No load would take it.
    if (text.size() > kLargestConfigFile) {
        return platform::Error{platform::ErrorKind::TooLarge, to.value(), "it is too large"};
    }
    auto replaced = platform::ReplaceFile(Files(), to.value(), text);
    if (!replaced.ok() || magic) return replaced;
    // What was written, not what stands there by now: another program may have been quicker.
    if (IsInHand(destination)) loaded_file_ = std::move(file);
    if (!pending.value()) return replaced;
    return Files().Remove(PendingDumpPath());
}

}  // namespace velto
