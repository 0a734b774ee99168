#include "platform/linux/system_error.h"

#include <system_error>
#include <utility>

namespace velto::platform {
namespace {

ErrorKind KindOf(int number) {
    switch (number) {
        case ENOENT:
        case ENOTDIR:
        case ENAMETOOLONG:
            return ErrorKind::NotFound;
        case EEXIST:
            return ErrorKind::AlreadyExists;
        case EACCES:
        case EPERM:
        case EROFS:
            return ErrorKind::Denied;
        case EISDIR:
        case ENOEXEC:
        case ELOOP:
            return ErrorKind::Unsuitable;
        case ENOSPC:
        case EDQUOT:
            return ErrorKind::Full;
        case EFBIG:
        case E2BIG:
            return ErrorKind::TooLarge;
        default:
            return ErrorKind::Other;
    }
}

}  // namespace

Error SystemError(std::string subject, int number) {
    return {KindOf(number), std::move(subject), std::generic_category().message(number)};
}

}  // namespace velto::platform
