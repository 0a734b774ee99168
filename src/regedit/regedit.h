// What the registry editor does: a key out of the registry into a text, and a text into the
// registry. `file` is a host path as it stands. The errors' subject is the file or the key at
// fault.
#pragma once

#include <cstdint>
#include <string>

#include "platform/files.h"
#include "platform/registry.h"
#include "platform/result.h"
#include "regedit/merge_scope.h"

namespace velto::regedit {

struct Merged {
    std::uint64_t skipped = 0;  // lines that couldn't be read (see text_parser.h)
    std::uint64_t outside = 0;  // keys and values outside of the scope, passed over
};

// Adds and overwrites what the text holds within the scope, in one transaction: all of it or, on
// failure, nothing. A text whose first line is unknown is Malformed.
platform::Result<Merged> MergeFile(platform::FileService& files, platform::RegistryStore& store,
                                   const std::string& file, const MergeScope& scope = {});

// Replaces `file` by a text of the key and everything below it, the state of one moment. On
// failure the old file stays, or none; NotFound if there is no such key. `key` may be in any case
// of letters, and end in a backslash.
platform::Status ExportKey(platform::FileService& files, platform::RegistryStore& store,
                           const std::string& file, const std::string& key);

}  // namespace velto::regedit
