#include "store/config_file.h"

#include <algorithm>
#include <utility>

#include "platform/ascii.h"
#include "platform/files.h"
#include "platform/line_ends.h"
#include "platform/message_box.h"

namespace velto {
namespace {

std::string WithoutEach(std::string_view text, std::string_view what) {
    std::string rest;
    while (true) {
        const auto at = text.find(what);
        rest.append(text.substr(0, at));
        if (at == std::string_view::npos) return rest;
        text.remove_prefix(at + what.size());
    }
}

// The line of `text` around the position `at`, without its line end.
std::string_view LineAround(std::string_view text, std::size_t at) {
    const auto begin = text.rfind('\n', at) + 1;
    return text.substr(begin, text.find('\n', at) - begin);
}

}  // namespace

platform::Result<CConfigFile> CConfigFile::Open(const std::string& path) {
    auto bytes = platform::ReadWhole(platform::Files(), path, kLargestConfigFile);
    if (!bytes.ok()) return bytes.error();
    return CConfigFile(platform::FromDiskText(bytes.value()));
}

std::string CConfigFile::ReadEntry(std::string_view key) const {
    const auto mark = std::string("; ").append(key);
    const auto at = text_.find(mark);
    if (at == std::string::npos) return {};
    auto value = WithoutEach(LineAround(text_, at), mark);
    std::erase(value, '=');
    return std::string(platform::Trim(value));
}

void CConfigFile::WriteEntry(std::string_view key, std::string_view value) {
    std::string written(value);
    std::replace_if(
        written.begin(), written.end(), [](char c) { return static_cast<unsigned char>(c) < 0x20; },
        ' ');
    text_.append("; ").append(key).append(" = ").append(written).append("\n");
}

int CConfigFile::FindEntryLine(std::string_view key) const {
    const auto at = text_.find(key);
    if (at == std::string::npos) {
        platform::Report("Unable to read " + std::string(key) + " from this configuration",
                         "Entry not found");
        return -1;
    }
    const auto end = text_.begin() + static_cast<std::ptrdiff_t>(at);
    return static_cast<int>(std::count(text_.begin(), end, '\n'));
}

}  // namespace velto
