#include "shell/tree/group_rewrite.h"

#include <algorithm>

#include "platform/files.h"
#include "platform/line_ends.h"
#include "platform/replace_file.h"
#include "platform/waiting.h"
#include "store/option_table.h"

namespace velto {
namespace {

using End = GroupRewrite::End;
using platform::Status;

bool Holds(const TreeNode& group, const std::string& file) {
    const auto name = ConfigFolder::NameOf(file);
    return std::any_of(group.children.begin(), group.children.end(), [&](const auto& child) {
        return child->kind == NodeKind::Configuration && child->text == name;
    });
}

Status Add(platform::ReplacementBatch& batch, const ConfigFolder& folder, const std::string& file,
           const TreeNode& group, const std::string& to) {
    const auto path = folder.PathOf(file);
    const auto opened = CConfigFile::Open(path);
    if (!opened.ok()) {
        const bool gone = opened.error().kind == platform::ErrorKind::NotFound;
        return gone || !Holds(group, file) ? Status() : opened.status();
    }
    const auto text = WithGroup(opened.value(), group.text, to);
    return text ? batch.Add(path, platform::ToDiskText(*text)) : Status();
}

}  // namespace

std::optional<std::string> WithGroup(const CConfigFile& file, const std::string& from,
                                     const std::string& to) {
    const std::string_view key = RowOf(Key::fileGroup).name;
    if (file.ReadEntry(key) != from) return {};
    const std::string_view text = file.text();
    std::size_t begin = 0;
    for (int line = file.FindEntryLine(key); line > 0; --line) begin = text.find('\n', begin) + 1;
    const auto end = text.find('\n', begin);

    CConfigFile rewritten;
    rewritten.WriteText(text.substr(0, begin));
    rewritten.WriteEntry(key, to);
    if (end != std::string_view::npos) rewritten.WriteText(text.substr(end + 1));
    return rewritten.text();
}

GroupRewrite RewriteGroup(const ConfigFolder& folder, const TreeNode& group,
                          const std::string& to) {
    const auto wait = platform::Waiting().Begin({"Renaming group " + group.text, true});
    const auto listed = folder.List();
    if (!listed.ok()) {
        // Files that can't be seen now would keep the old name.
        return {End::Refused, platform::NameOf(folder.path()), listed.error().text};
    }
    const auto& files = listed.value();
    platform::ReplacementBatch batch(platform::Files());
    for (std::size_t i = 0; i < files.size(); ++i) {
        if (!wait->Continue({{i, files.size()}})) return {End::Stopped};
        const auto added = Add(batch, folder, files[i], group, to);
        if (!added.ok()) return {End::Refused, files[i], added.error().text};
    }
    if (!wait->Continue({{files.size(), files.size()}})) return {End::Stopped};
    const auto done = batch.Commit();
    if (done.ok()) return {};
    return {batch.renamed() == 0 ? End::Refused : End::Broken,
            platform::NameOf(done.error().subject), done.error().text};
}

}  // namespace velto
