// Text as files hold it: 8-bit bytes, CR LF at the end of a line. In memory a line ends in LF.
// A lone LF is read as a line end too; a lone CR, NUL and 0x1A are ordinary bytes.
#pragma once

#include <string>
#include <string_view>

namespace velto::platform {

std::string FromDiskText(std::string_view bytes);  // CR LF becomes LF
std::string ToDiskText(std::string_view text);     // LF becomes CR LF

}  // namespace velto::platform
