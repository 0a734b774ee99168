// Which keys a merge may write. A text that comes from a stranger mustn't reach all of the
// registry, so whoever starts the registry editor for one names its keys; by hand everything is
// merged.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/result.h"

namespace velto::regedit {

class MergeScope {
  public:
    // Everything.
    MergeScope() = default;
    // Paths of keys with `;` between, from their roots on: each stands for itself and all below it,
    // with a "\" at its end for what is below it alone. A path behind a "-" takes its keys out
    // again. Malformed if the text is anything else.
    static platform::Result<MergeScope> Read(std::string_view text);

    // In any case of letters.
    bool Allows(std::string_view path) const;

  private:
    static bool Holds(const std::vector<std::string>& keys, std::string_view path);

    bool everything_ = true;
    std::vector<std::string> keys_;
    std::vector<std::string> without_;
};

}  // namespace velto::regedit
