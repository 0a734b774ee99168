#include "shell/tree/new_config.h"

#include <tuple>

#include "platform/files.h"
#include "platform/line_ends.h"
#include "platform/message_box.h"
#include "platform/replace_file.h"
#include "shell/tree/name_rules.h"
#include "store/new_config_file.h"

namespace velto {

bool CNewConfig::OnOk(const std::string& new_name, const std::string& chosen_group) {
    if (!CheckName(new_name)) return false;
    const auto written = WriteConfig(new_name, NewConfigFile(chosen_group).text());
    if (!written.ok()) {
        platform::Report("Unable to create " + ConfigFolder::FileOf(new_name) + ": " +
                         written.error().text);
        return false;
    }
    name = new_name;
    group = chosen_group;
    return true;
}

bool CNewConfig::CheckName(const std::string& new_name) const {
    if (!CheckNameGiven(new_name, platform::BoxIcon::Error)) return false;
    if (!CheckCharacters(new_name)) return false;
    if (configDir.Find(new_name)) {
        platform::Report("Filename already exists.");
        return false;
    }
    return CheckNotReserved(new_name);
}

platform::Status CNewConfig::WriteConfig(const std::string& new_name,
                                         const std::string& text) const {
    const auto path = configDir.Target(new_name);
    if (!path.ok()) return path.error();
    auto replacement = platform::FileReplacement::Begin(platform::Files(), path.value());
    if (!replacement.ok()) return replacement.error();
    auto written = replacement.value()->Write(platform::ToDiskText(text));
    if (written.ok()) written = replacement.value()->Commit();
    if (!written.ok() && replacement.value()->renamed()) {
        std::ignore = platform::Files().Remove(path.value());
    }
    return written;
}

}  // namespace velto
