#include <optional>
#include <utility>

#include "platform/file_search.h"
#include "platform/files.h"
#include "platform/line_ends.h"
#include "platform/message_box.h"
#include "platform/replace_file.h"
#include "store/velto_doc.h"

namespace velto {
namespace {

using platform::ErrorKind;
using platform::Files;
using platform::JoinPath;
using platform::Result;
using platform::Status;

// A full path as it is; a name in the spelling that the folder has for it.
Result<std::string> PathIn(const std::string& folder, const std::string& file) {
    if (file.starts_with('/')) return file;
    if (!platform::IsFileName(file)) {
        return platform::Error{ErrorKind::Malformed, file, "no name of a file"};
    }
    return JoinPath(folder, platform::FindFile(folder, file).value_or(file));
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
    const auto file = destination + std::string(kConfigEnding);
    const auto saved = Save(source + std::string(kConfigEnding), magic, file);
    if (saved.ok()) {
        if (!magic) dirty = false;
        return true;
    }
    platform::Report("Unable to save settings to " + file + " in folder " + configDir,
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

    const auto text =
        platform::ToDiskText(WriteRecord(*this, CopyPluginLines(lines.value_or("")), magic).text());
    // No load would take it.
    if (text.size() > kLargestConfigFile) {
        return platform::Error{platform::ErrorKind::TooLarge, to.value(), "it is too large"};
    }
    auto replaced = platform::ReplaceFile(Files(), to.value(), text);
    if (!replaced.ok() || magic || !pending.value()) return replaced;
    return Files().Remove(PendingDumpPath());
}

}  // namespace velto
