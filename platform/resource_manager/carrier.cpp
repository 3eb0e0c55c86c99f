// Owns the open fork behind a resource file, and putting a new one in its place.
#include "resource_manager/carrier.h"

#include <Carbon/MacErrors.h>
#include <fcntl.h>
#include <sys/statvfs.h>

#include <cerrno>

#include "file_manager/catalog/catalog.h"
#include "file_manager/metadata/metadata.h"

namespace carbon {

namespace {

OSErr OpenOnce(const FSSpec& inSpec, ForkKind inKind, SInt8 inPermission, SInt16* outNumber) {
    const auto open = inKind == ForkKind::kData ? HOpenDF : HOpenRF;
    const OSErr error = open(inSpec.vRefNum, inSpec.parID, inSpec.name, inPermission, outNumber);
    if (error != noErr) *outNumber = -1;  // with opWrErr it is somebody else's
    return error;
}

// With fsCurPerm for writing if it can be. What is to be written is read first, so fsWrPerm alone
// would not do.
OSErr OpenFork(const FSSpec& inSpec, ForkKind inKind, SInt8* ioPermission, SInt16* outNumber) {
    const SInt8 wanted = *ioPermission;
    if (wanted == fsCurPerm || wanted == fsWrPerm) *ioPermission = fsRdWrPerm;
    OSErr error = OpenOnce(inSpec, inKind, *ioPermission, outNumber);
    if (error == noErr || wanted != fsCurPerm) return error;
    *ioPermission = fsRdPerm;
    return OpenOnce(inSpec, inKind, fsRdPerm, outNumber);
}

}  // namespace

OSErr ForkCarrier::Open(const FSSpec& inSpec, ForkKind inKind, SInt8 inPermission,
                        std::unique_ptr<ForkCarrier>* outCarrier) {
    std::unique_ptr<ForkCarrier> carrier(new ForkCarrier);
    carrier->mKind = inKind;
    OSErr error = FSpMakeFSRef(&inSpec, &carrier->mFile);
    if (error == noErr) error = OpenFork(inSpec, inKind, &inPermission, &carrier->mNumber);
    if (error != noErr) return error;
    carrier->mIsWritable = inPermission != fsRdPerm;
    *outCarrier = std::move(carrier);
    return noErr;
}

ForkCarrier::~ForkCarrier() {
    if (mRenewed != -1) FSClose(mRenewed);
    if (mNumber != -1) FSClose(mNumber);
}

bool ForkCarrier::Carries(const FSRef& inFile, ForkKind inKind) const {
    return mKind == inKind && FSCompareFSRefs(&mFile, &inFile) == noErr;
}

OSErr ForkCarrier::Read(std::vector<UInt8>* outBytes) const {
    SInt32 length = 0;
    if (const OSErr error = GetEOF(mNumber, &length)) return error;
    outBytes->resize(size_t(length));
    return length > 0 ? FSRead(mNumber, &length, outBytes->data()) : OSErr(noErr);
}

OSErr ForkCarrier::Replace(const std::vector<UInt8>& inBytes) {
    std::string path;
    if (const OSErr error = PathFromRef(mFile, &path)) return error;
    return mKind == ForkKind::kData ? ReplaceData(path, inBytes)
                                    : ReplaceResourceFork(path, inBytes);
}

// The file that `mNumber` has open is no longer the one at the path; other programs are kept from
// writing to that one by opening it too.
OSErr ForkCarrier::ReplaceData(const std::string& inPath, const std::vector<UInt8>& inBytes) {
    if (const OSErr error = ReplaceFile(inPath, inBytes)) return error;
    FSSpec spec;
    OSErr error = RefFromPath(inPath, &mFile);
    if (error == noErr) error = SpecFromPath(inPath, &spec);
    if (mRenewed != -1) FSClose(mRenewed);
    mRenewed = -1;
    if (error == noErr) OpenOnce(spec, mKind, fsRdWrPerm, &mRenewed);
    return error;
}

UInt64 ForkCarrier::FreeBytes() const {
    std::string path;
    struct statvfs status;
    if (PathFromRef(mFile, &path) != noErr || statvfs(path.c_str(), &status) != 0)
        return ~UInt64{0};  // the update will tell
    return UInt64{status.f_bavail} * status.f_frsize;
}

}  // namespace carbon
