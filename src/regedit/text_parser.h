// Registry text, shown to a visitor key by key and value by value.
//
// The first line is `REGEDIT4` or `Windows Registry Editor Version 5.00`. Then come key lines,
// `[HKEY_CURRENT_USER\Software\Example]`, each with its value lines (see value_text.h), and
// comments, whose first character is `;`. Behind a comment that begins with `;#//` names and
// strings are plain. A list of hex bytes may go on over several lines, with comments between.
// Strings in the hex bytes of UTF-16 text of version 5 are UTF-16 and become UTF-8 like the text;
// all other bytes are kept.
//
// A malformed line is skipped, and so is what no registry could store: a bad name, a key of an
// unknown root or too deep, a value that is too large; its neighbours are not.
// Values below a key line that was skipped are passed over with it. `[-key]` and `"name"=-`, which
// would remove something, are passed over.
#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/files.h"
#include "platform/registry.h"
#include "platform/result.h"

namespace velto::regedit {

// The number of lines skipped; a value on several lines counts as one, and what is passed over
// isn't counted. Malformed if the first line is unknown: then the visitor has been shown nothing.
// Other failures are those of the reader and the visitor, and end the parse.
//
// The visitor is shown each key line, whether values follow or not, in the text's spelling.
platform::Result<std::uint64_t> ParseRegistryText(platform::FileReader& reader,
                                                  platform::RegistryVisitor& visitor);

}  // namespace velto::regedit
