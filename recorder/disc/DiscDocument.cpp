// Owns the rules about what a disc may hold.
#include "disc/DiscDocument.h"

#include <sys/stat.h>

#include <cerrno>
#include <set>

#include "burn/BurnFailure.h"
#include "burn/SourceTree.h"

namespace recorder {

void DiscDocument::Add(const std::vector<std::string>& inPaths) {
    std::set<std::string> names;
    for (const auto& path : paths) names.insert(LeafName(path));
    for (const auto& path : inPaths) {
        struct stat facts = {};
        if (path.empty() || path[0] != '/')
            throw BurnFailure(paramErr, "\"" + path + "\" is not an absolute path.");
        if (LeafName(path).empty())
            throw BurnFailure(paramErr, "The root folder has no name on a disc.");
        if (stat(path.c_str(), &facts) != 0) throw FailureFromErrno(errno, path);
        if (!names.insert(LeafName(path)).second)
            throw BurnFailure(dupFNErr,
                              "The disc has an item called \"" + LeafName(path) + "\" already.");
    }
    paths.insert(paths.end(), inPaths.begin(), inPaths.end());
}

DiscDocument MakeDocument(OSType inKind) {
    DiscDocument document;
    if (inKind == kHybridDisc)
        document.kind = kHybridDisc;
    else if (inKind != kGenericDisc && inKind != kDataDisc)
        throw BurnFailure(errAECantHandleClass, "This kind of disc cannot be made.");
    return document;
}

}  // namespace recorder
