// Configurations as tests write them.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "store/config_file.h"
#include "store/option_table.h"

namespace velto::test {

// A file of this version in which every key that its generation carries has a value, but those
// left out; `options` come first and so win. Plug-in lines as given.
inline std::string ConfigText(std::string_view version,
                              const std::vector<std::string>& options = {},
                              const std::vector<Key>& left_out = {},
                              std::string_view plugin_lines = "") {
    std::string text = "REGEDIT4\r\n";
    for (const auto& option : options) text.append("; ").append(option).append("\r\n");
    for (const auto& row : OptionTable()) {
        if (row.key == Key::magicCFG || !Carries(GenerationOf(version), row)) continue;
        if (std::find(left_out.begin(), left_out.end(), row.key) != left_out.end()) continue;
        text.append("; ").append(row.name).append(" = ");
        text.append(row.key == Key::fileVersion ? version : row.standard);
        text.append(" \r\n");
    }
    return text.append(plugin_lines);
}

}  // namespace velto::test
