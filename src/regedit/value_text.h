// One value of a registry key as a line of text: `"name"=form`, or `@=form` for the default value,
// which `""=` names as well.
//
//   "text"         a string          dword:2a       a 32-bit number
//   hex:1,2,ff     binary data       hex(7):61,0    data of the type with that hexadecimal number
//   -              a value to remove, which a merge passes over
//
// Blanks may stand around the `=` and behind `dword:`; behind a form only a comment. A quoted text
// runs to the last quote of its line.
//
// How names and strings are read depends on where the line comes from:
//
// - Plain, as settings are dumped: every character stands for itself. The name ends at the first
//   `"=` that a whole form follows (only if there is none may blanks stand around that `=`). So
//   every name and text comes back but a name of this kind: it has a `"=` in it, and what follows
//   that in the line is itself a whole form. `a"="b` is one, which reads as `a` with the text `b"=`
//   and what follows; so are `a"=`, before a string, and `a"=dword:1;`.
// - Escaped, as exports are written: `\\` and `\"` stand for `\` and `"`. A text in which another
//   backslash or quote stands was written by a program that doesn't escape, and is plain. The name
//   ends at the first such `"=` whose quote isn't escaped. So whatever AppendValueLine writes
//   comes back exactly: a name so written has no quote that isn't escaped.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "platform/registry.h"
#include "regedit/hex_bytes.h"

namespace velto::regedit {

enum class Quoting { Plain, Escaped };

struct ValueLine {
    enum class Kind { Value, Removal, Malformed };
    Kind kind = Kind::Malformed;
    // A list of hex bytes, well-formed or not, that goes on in the next line.
    bool continues = false;
    std::string name;
    platform::RegistryType type = platform::RegistryType::None;
    HexBytes bytes;       // the value's data
    bool is_hex = false;  // they stood there as a list
};

// `line` is without blanks at its ends. More than `limit` bytes of data are malformed. Names are
// not checked.
ValueLine ParseValueLine(std::string_view line, Quoting quoting, std::size_t limit);

// Writes the line, escaped and with its CR LF; long lists of hex bytes are wrapped. The form is the
// most readable one that gives the same type and bytes back.
void AppendValueLine(std::string_view name, const platform::RegistryValue& value, std::string& out);

}  // namespace velto::regedit
