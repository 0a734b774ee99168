#include "shell/tree/group_rewrite.h"

#include "platform/file_search.h"
#include "platform/files.h"
#include "platform/line_ends.h"
#include "platform/replace_file.h"
#include "store/key_table.h"

namespace velto {

using End = GroupRewrite::End;
using platform::Files;

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

GroupRewrite RewriteGroup(const std::string& folder, const std::string& from, const std::string& to,
                          const GroupRewriteAsks& asks) {
    const auto names = platform::FindNamesEndingIn(folder, kConfigEnding);
    if (names.empty()) {
        // Files that can't be seen now would keep the old name.
        const auto listed = Files().List(folder);
        if (!listed.ok()) {
            return {End::Refused, platform::NameOf(folder), listed.error().text};
        }
    }
    platform::ReplacementBatch batch(Files());
    for (std::size_t i = 0; i < names.size(); ++i) {
        if (!asks.progress(i, names.size())) return {End::Stopped};
        const auto path = platform::JoinPath(folder, names[i]);
        const auto file = CConfigFile::Open(path);
        if (!file.ok()) {
            const bool gone = file.error().kind == platform::ErrorKind::NotFound;
            if (gone || !asks.belongs(names[i])) continue;
            return {End::Refused, names[i], file.error().text};
        }
        const auto text = WithGroup(file.value(), from, to);
        if (!text) continue;
        const auto added = batch.Add(path, platform::ToDiskText(*text));
        if (!added.ok()) return {End::Refused, names[i], added.error().text};
    }
    if (!asks.progress(names.size(), names.size())) return {End::Stopped};
    const auto done = batch.Commit();
    if (done.ok()) return {};
    return {batch.renamed() == 0 ? End::Refused : End::Broken,
            platform::NameOf(done.error().subject), done.error().text};
}

}  // namespace velto
