// What the system says of a call that failed, as an Error.
#pragma once

#include <cerrno>
#include <string>

#include "platform/result.h"

namespace velto::platform {

// The kind and text of an errno value.
Error SystemError(std::string subject, int number = errno);

}  // namespace velto::platform
