// A specifier from a stranger, resolved against an application with three elements in everything.
// The first byte is the flags, the rest the flattened specifier.
#include <Carbon/Carbon.h>

#include <cstdlib>

#include "apple_event_manager/internal.h"

namespace {

int gCalls = 0;  // an application with little patience: the sanitizers make every call slow

OSErr Access(DescType, const AEDesc*, DescType, DescType inForm, const AEDesc* inKey,
             AEDesc* outToken, SInt32) {
    constexpr int kMostCalls = 20000;
    if (++gCalls > kMostCalls) return errAEEventFailed;
    UInt8 key[4] = {};
    if (AEGetDescData(inKey, key, sizeof key) != noErr) return errAEBadKeyForm;
    if (inForm == formRelativePosition || key[3] > 3) return errAENoSuchObject;
    return AECreateDesc('toke', key, sizeof key, outToken);
}

OSErr CountThree(DescType, DescType, const AEDesc*, SInt32* outCount) {
    *outCount = 3;
    return noErr;
}

OSErr CompareSizes(DescType inOperator, const AEDesc* inLeft, const AEDesc* inRight,
                   Boolean* outHolds) {
    *outHolds = inOperator == DescType(kAEEquals) &&
                AEGetDescDataSize(inLeft) == AEGetDescDataSize(inRight);
    return noErr;
}

OSErr DisposeToken(AEDesc*) {
    return errAEEventNotHandled;
}

OSErr MarkToken(const AEDesc*, DescType, AEDesc* outToken) {
    return AECreateDesc('mark', "", 0, outToken);
}
OSErr Mark(const AEDesc*, const AEDesc*, SInt32) {
    return noErr;
}
OSErr AdjustMarks(SInt32 inStart, SInt32 inStop, const AEDesc*) {
    if (inStart < 1 || inStop < inStart) std::abort();
    return noErr;
}

bool SetUp() {
    AEInstallObjectAccessor(typeWildCard, typeWildCard, Access, 0, false);
    AESetObjectCallbacks(CompareSizes, CountThree, DisposeToken, MarkToken, Mark, AdjustMarks,
                         nullptr);
    return true;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const UInt8* inData, size_t inSize) {
    static const bool sIsSetUp = SetUp();
    AEDesc specifier = {typeNull, nullptr}, token = {typeNull, nullptr};
    if (!sIsSetUp || inSize == 0) return 0;
    if (carbon::DescFromBytes(carbon::Buffer({inData + 1, inData + inSize}), &specifier) != noErr)
        return 0;
    gCalls = 0;
    const OSErr result = AEResolve(&specifier, SInt16(inData[0]), &token);
    if (result != noErr && token.dataHandle) std::abort();
    AEDisposeToken(&token);
    AEDisposeDesc(&specifier);
    return 0;
}
