// What the registry takes as a path, a value's name and a value's data.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/registry.h"
#include "platform/result.h"

namespace velto::platform {

// The components from the root on; at least one.
using KeyPath = std::vector<std::string>;

// Malformed, with the path as its subject, unless each component keeps the registry's bounds.
Result<KeyPath> ParseKeyPath(std::string_view path);

// Malformed, with the name as its subject, if either is over the registry's bounds.
Status CheckValue(std::string_view name, const RegistryValue& value);

}  // namespace velto::platform
