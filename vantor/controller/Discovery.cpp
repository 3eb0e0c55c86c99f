// Where the recording application is, whether it will do, and launching it.
#include <cstring>

#include "vantor/appleevents/StAEDescriptor.h"
#include "vantor/appleevents/UAEDesc.h"
#include "vantor/appleevents/UAppleEventsMgr.h"
#include "vantor/controller/CVantor.h"
#include "vantor/controller/ClassicDiscovery.h"
#include "vantor/controller/Protocol.h"
#include "vantor/controller/StCFReference.h"
#include "vantor/foundation/LException.h"
#include "vantor/foundation/StPointer.h"
#include "vantor/process/UProcess.h"

CFStringRef CVantor::sMirelPath = nullptr;
// Stage 0 lies below every real one, so that any 7.0 passes.
const NumVersion CVantor::kMinimumMirelVersion = {7, 0, 0, 0};

namespace {

OSStatus AskLaunchServices(FSRef* outRef, CFURLRef* outURL) {
    constexpr LSRolesMask kAnyRole = 4;
    return LSGetApplicationForInfo('\?\?\?\?', kMirelSignature, nullptr, kAnyRole, outRef, outURL);
}

int Compare(UInt32 inFirst, UInt32 inSecond) {
    if (inFirst == inSecond) return 0;
    return inFirst > inSecond ? 1 : -1;
}

// A final release without a number comes after all numbered ones.
UInt32 RevisionRank(const NumVersion& inVersion) {
    return inVersion.stage == finalStage && inVersion.nonRelRev == 0 ? 0xFFFF : inVersion.nonRelRev;
}

NumVersion VersionFromNumber(UInt32 inNumber) {
    return {static_cast<UInt8>(inNumber >> 24), static_cast<UInt8>(inNumber >> 16),
            static_cast<UInt8>(inNumber >> 8), static_cast<UInt8>(inNumber)};
}

void RememberPath(CFURLRef inURL) {
    if (CVantor::sMirelPath != nullptr) CFRelease(CVantor::sMirelPath);
    CVantor::sMirelPath = nullptr;
    CVantor::sMirelPath = CFURLCopyFileSystemPath(inURL, kCFURLPOSIXPathStyle);
}

bool HasSignature(CFURLRef inURL) {
    UInt32 type = 0, creator = 0;
    return CFBundleGetPackageInfoInDirectory(inURL, &type, &creator) && type == kMirelFileType &&
           creator == kMirelSignature;
}

bool IsNewEnough(CFBundleRef inBundle) {
    NumVersion version = VersionFromNumber(CFBundleGetVersionNumber(inBundle));
    NumVersion minimum = CVantor::kMinimumMirelVersion;
    return CVantor::CompareVersions(&version, &minimum) != -1;
}

bool IsOurEdition(CFBundleRef inBundle) {
    // Looked up once: this is asked for every request.
    static const CFStringRef kNameKey = CFSTR("CFBundleName"), kEdition = CFSTR("Calverin");
    const auto name =
        static_cast<CFStringRef>(CFBundleGetValueForInfoDictionaryKey(inBundle, kNameKey));
    if (name == nullptr || CFGetTypeID(name) != CFStringGetTypeID()) return false;
    return CFStringFind(name, kEdition, kCFCompareCaseInsensitive).location != kCFNotFound;
}

// What is examined is the application that Launch Services names, whatever file was given.
bool IsApplicationValid(const FSSpec& inSpec) {
    FSRef ref;
    if (FSpMakeFSRef(&inSpec, &ref) != noErr) return false;
    CFURLRef answer = nullptr;
    ThrowIfError(AskLaunchServices(&ref, &answer));
    if (answer == nullptr) return false;
    const StCFReference<CFURLRef> url(answer);
    RememberPath(url);
    if (!HasSignature(url)) return false;
    const StCFReference<CFBundleRef> bundle(CFBundleCreate(kCFAllocatorDefault, url));
    return bundle != nullptr && IsNewEnough(bundle) && IsOurEdition(bundle);
}

void FindByLaunchServices(FSSpec& outSpec) {
    FSRef ref;
    ThrowIfError(AskLaunchServices(&ref, nullptr));
    ThrowIfError(FSGetCatalogInfo(&ref, kFSCatInfoNone, nullptr, nullptr, &outSpec, nullptr));
    if (CVantor::IsMirelFileValid(outSpec)) return;
    AskLaunchServices(&ref, nullptr);  // Kept: asked once more, the answer is not used.
    LException::Throw(kMirelInvalid);
}

// An 'oapp' event that says "server", as launch parameters in a block that `outBlock` owns.
void MakeLaunchParameters(StPointerBlock& outBlock) {
    StAEDescriptor event, on(Boolean{true}), parameters;
    UAppleEventsMgr::MakeAppleEvent(kCoreEventClass, kAEOpenApplication, event);
    UAEDesc::AddKeyDesc(event, keyMirelServer, on);
    ThrowIfError(AECoerceDesc(event, typeAppParameters, parameters));
    const Size size = AEGetDescDataSize(parameters);
    outBlock.Adopt(NewPtr(size));
    if (outBlock.Get() == nullptr) LException::Throw(memFullErr);
    ThrowIfError(AEGetDescData(parameters, outBlock.Get(), size));
}

ProcessSerialNumber Launch(FSSpec* inSpec) {
    LaunchParamBlockRec block;
    CVantor::ClearMem(&block, sizeof block);
    block.launchBlockID = extendedBlock;
    block.launchEPBLength =
        32;  // what the record has beyond its first 12 bytes with 32-bit pointers
    block.launchFileFlags = 0x0800;
    block.launchControlFlags = launchContinue | launchNoFileFlags;
    block.launchAppSpec = inSpec;
    block.launchAppParameters = nullptr;
    ThrowIfError(LaunchApplication(&block));
    return block.launchProcessSN;
}

}  // namespace

int CVantor::CompareVersions(NumVersion* inFirst, NumVersion* inSecond) {
    int order = Compare(inFirst->majorRev, inSecond->majorRev);
    if (order == 0) order = Compare(inFirst->minorAndBugRev, inSecond->minorAndBugRev);
    if (order == 0) order = Compare(inFirst->stage, inSecond->stage);
    if (order == 0) order = Compare(RevisionRank(*inFirst), RevisionRank(*inSecond));
    return order;
}

void CVantor::ClearMem(void* outData, SInt32 inSize) {
    if (inSize > 0) std::memset(outData, 0, static_cast<std::size_t>(inSize));
}

void CVantor::FindMirel(FSSpec& outSpec) {
    RunningOnX() ? FindByLaunchServices(outSpec) : FindOnClassicVolumes(outSpec);
}

Boolean CVantor::IsMirelFileValid(FSSpec& inSpec) {
    try {
        return RunningOnX() ? IsApplicationValid(inSpec) : IsClassicFileValid(inSpec);
    } catch (...) {
        return false;  // Kept: whatever went wrong, this is not an application we can drive.
    }
}

Boolean CVantor::IsMirelValid(ProcessSerialNumber inPSN) {
    SProcessInfo info;
    UProcess::GetInfo(inPSN, info);
    return IsMirelFileValid(info.mAppSpec);
}

Boolean CVantor::IsMirelRunning(ProcessSerialNumber* outPSN) {
    try {
        const ProcessSerialNumber psn = UProcess::GetPSN(kMirelSignature, kMirelFileType);
        if (outPSN != nullptr) *outPSN = psn;  // Kept: also for one that proves invalid.
        if (!IsMirelValid(psn)) LException::Throw(kMirelInvalid);
        return true;
    } catch (const LException& exception) {
        if (exception.GetErrorCode() != procNotFound) throw;
        return false;
    }
}

ProcessSerialNumber CVantor::LaunchMirel(unsigned char inPrepareParameters) {
    ProcessSerialNumber psn;
    if (IsMirelRunning(&psn)) return psn;
    FSSpec spec;
    FindMirel(spec);
    // Kept: the parameters are made, and the launch goes out without them.
    StPointerBlock parameters(nullptr, false);
    if (inPrepareParameters) MakeLaunchParameters(parameters);
    return Launch(&spec);
}

ProcessSerialNumber CVantor::GetMirelPSN() {
    ProcessSerialNumber psn;
    return IsMirelRunning(&psn) ? psn : LaunchMirel(true);
}

CFStringRef CVantor::GetMirelPath() {
    return sMirelPath;
}
