#include "shell/tree/new_config.h"

#include <tuple>

#include "platform/file_search.h"
#include "platform/files.h"
#include "platform/line_ends.h"
#include "platform/message_box.h"
#include "platform/replace_file.h"
#include "shell/tree/name_rules.h"
#include "store/new_config_file.h"

namespace velto {

bool CNewConfig::OnOk(const std::string& new_name, const std::string& chosen_group) {
    if (!CheckName(new_name)) return false;
    const auto file = new_name + std::string(kConfigEnding);
    const auto written = WriteConfig(file, NewConfigFile(chosen_group).text());
    if (!written.ok()) {
        platform::Report("Unable to create " + file + ": " + written.error().text);
        return false;
    }
    name = new_name;
    group = chosen_group;
    return true;
}

bool CNewConfig::CheckName(const std::string& new_name) const {
    if (!CheckNameGiven(new_name, platform::BoxIcon::Error)) return false;
    if (!CheckCharacters(new_name)) return false;
    const auto file = new_name + std::string(kConfigEnding);
    if (platform::FindFile(configDir, file)) {
        platform::Report("Filename already exists.");
        return false;
    }
    return CheckNotReserved(new_name);
}

platform::Status CNewConfig::WriteConfig(const std::string& file, const std::string& text) const {
    if (!platform::IsFileName(file)) {
        return platform::Error{platform::ErrorKind::Malformed, file, "no name of a file"};
    }
    const auto path = platform::JoinPath(configDir, file);
    auto replacement = platform::FileReplacement::Begin(platform::Files(), path);
    if (!replacement.ok()) return replacement.error();
    auto written = replacement.value()->Write(platform::ToDiskText(text));
    if (written.ok()) written = replacement.value()->Commit();
    if (!written.ok() && replacement.value()->renamed()) {
        std::ignore = platform::Files().Remove(path);
    }
    return written;
}

}  // namespace velto
