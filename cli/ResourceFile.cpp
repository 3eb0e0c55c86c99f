// Opens whichever fork holds a file's resources.
#include "ResourceFile.h"

#include "Failure.h"

namespace cli {

void RefuseResources(const std::string& inPath, OSErr inError) {
    std::string why = SentenceFor(inError);
    if (inError == eofErr) why = "it has no resources";
    if (inError == mapReadErr) why = "its resources are damaged";
    if (inError == resNotFound) why = "it has no such resource";
    throw Failure(inPath + ": " + why, inError, ExitFor(inError));
}

ResourceFile::ResourceFile(const std::string& inPath) {
    FSRef ref;
    const auto* path = reinterpret_cast<const UInt8*>(inPath.c_str());
    if (const OSStatus error = FSPathMakeRef(path, &ref, nullptr))
        RefuseResources(inPath, OSErr(error));
    mNumber = FSOpenResFile(&ref, fsRdPerm);
    OSErr error = ResError();
    if (error == eofErr) {
        error = FSOpenResourceFile(&ref, 0, nullptr, fsRdPerm, &mNumber);
        // Any file has a data fork, so one without a map in it only has no resources.
        if (error == mapReadErr) error = eofErr;
    }
    if (error != noErr) RefuseResources(inPath, error);
}

}  // namespace cli
