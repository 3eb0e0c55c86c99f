// Owns the rules about what a disc may hold.
#include "disc/DiscDocument.h"

#include <sys/stat.h>

#include <cerrno>

#include "burn/BurnFailure.h"
#include "burn/SourceTree.h"
#include "burn/disc_names.h"

namespace recorder {

namespace {

void CheckIsThere(const std::string& inPath) {
    struct stat facts = {};
    if (inPath.empty() || inPath[0] != '/' || HasZero(inPath))
        throw BurnFailure(paramErr, "\"" + inPath + "\" is not an absolute path.");
    if (LeafName(inPath).empty())
        throw BurnFailure(paramErr, "The root folder has no name on a disc.");
    if (stat(inPath.c_str(), &facts) != 0) throw FailureFromErrno(errno, inPath);
}

}  // namespace

void DiscDocument::Add(const std::vector<std::string>& inPaths) {
    std::set<std::string> added;
    for (const auto& path : inPaths) {
        CheckIsThere(path);
        const std::string name = LeafName(path);
        if (names.contains(name) || !added.insert(name).second)
            throw BurnFailure(dupFNErr, "The disc has an item called \"" + name + "\" already.");
    }
    paths.insert(paths.end(), inPaths.begin(), inPaths.end());
    names.merge(added);
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
