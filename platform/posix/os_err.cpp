// Owns the one table from errno to result codes.
#include "posix/os_err.h"

#include <Carbon/MacErrors.h>

#include <cerrno>

namespace carbon {

OSErr OSErrFromErrno(int inErrno) {
    switch (inErrno) {
        case 0:
            return noErr;
        case ENOENT:
            return fnfErr;
        case ENOTDIR:
            return dirNFErr;
        case EEXIST:
            return dupFNErr;
        case EACCES:
        case EPERM:
            return afpAccessDenied;
        case EROFS:
            return wPrErr;
        case ENOSPC:
        case EDQUOT:
            return dskFulErr;
        case EMFILE:
        case ENFILE:
            return tmfoErr;
        case ENOTEMPTY:
        case EBUSY:
            return fBsyErr;
        case ENAMETOOLONG:
        case EILSEQ:
            return bdNamErr;
        case EXDEV:
            return diffVolErr;
        case ENOMEM:
            return memFullErr;
        case EINVAL:
            return paramErr;
        case ESTALE:
        case ENODEV:
            return volGoneErr;
        default:
            return ioErr;
    }
}

}  // namespace carbon
