// URLs and the File Manager's references to the same files.
#include <Carbon/Files.h>

#include <sys/stat.h>

#include "core_foundation/internal.h"
#include "file_manager/catalog/catalog.h"

namespace carbon {

namespace {

bool IsFolder(const std::string& inPath) {
    struct stat info;
    return stat(inPath.c_str(), &info) == 0 && S_ISDIR(info.st_mode);
}

}  // namespace

}  // namespace carbon

CFURLRef CFURLCreateFromFSRef(CFAllocatorRef, const FSRef* fsRef) {
    std::string path;
    if (!fsRef || carbon::PathFromRef(*fsRef, &path) != noErr) return nullptr;
    return carbon::UrlFromPath(path, carbon::IsFolder(path));
}

Boolean CFURLGetFSRef(CFURLRef url, FSRef* fsRef) {
    const auto path = carbon::PathFromUrl(url);
    return path && carbon::RefFromPath(*path, fsRef) == noErr;
}
