// Owns the table from errno to result codes.
#include "burn/BurnFailure.h"

#include <cerrno>
#include <cstring>

namespace recorder {

SInt32 CodeFromErrno(int inErrno) {
    switch (inErrno) {
        case 0:
            return noErr;
        case ENOSPC:
        case EDQUOT:
            return dskFulErr;
        case ENOENT:
        case ENOTDIR:
            return fnfErr;
        case EEXIST:
            return dupFNErr;
        case EACCES:
        case EPERM:
            return afpAccessDenied;
        case EROFS:
            return wPrErr;
        case EBUSY:
            return fBsyErr;
        case ENAMETOOLONG:
            return bdNamErr;
        case EMFILE:
        case ENFILE:
            return tmfoErr;
        case ENOMEM:
            return memFullErr;
        default:
            return ioErr;
    }
}

BurnFailure FailureFromErrno(int inErrno, const std::string& inWhat) {
    return {CodeFromErrno(inErrno), inWhat + ": " + std::strerror(inErrno) + "."};
}

}  // namespace recorder
