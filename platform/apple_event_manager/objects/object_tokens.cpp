// The application's callbacks, and the end of tokens.
#include "apple_event_manager/objects/object_model.h"

namespace carbon {
namespace {

bool IsTokenList(const AEDesc& inToken) {
    const Storage* storage = ContainerOf(&inToken);
    return storage && storage->GetKind() == Kind::List;
}

OSErr Dispose(AEDesc* ioToken) {
    const auto callback = Callbacks().disposeToken;
    const OSErr result = callback ? callback(ioToken) : OSErr(errAEEventNotHandled);
    if (result == errAEEventNotHandled) return AEDisposeDesc(ioToken);
    *ioToken = kNullDesc;
    return result;
}

// A list that a test made: every token in it is the application's affair.
OSErr DisposeList(AEDesc* ioTokens) {
    Storage& list = *StorageOf(*ioTokens);
    OSErr first = noErr;
    for (UInt32 i = 0; i < list.Count(); ++i) {
        AEDesc token = DescOf(list.ItemAt(list.PlaceAt(i)));
        const OSErr result = Dispose(&token);
        if (first == noErr) first = result;
    }
    AEDisposeDesc(ioTokens);
    return first;
}

}  // namespace

ObjectCallbacks& Callbacks() {
    static ObjectCallbacks sCallbacks;
    return sCallbacks;
}

void Token::Reset() {
    if (mOwner == Owner::Application) AEDisposeToken(&mDesc);
    if (mOwner == Owner::Us) AEDisposeDesc(&mDesc);
    mDesc = kNullDesc;
    mOwner = Owner::Application;
}

OSErr Token::MoveTo(AEDesc* outDesc) {
    if (mOwner == Owner::Other) return AEDuplicateDesc(&mDesc, outDesc);
    *outDesc = mDesc;
    mDesc = kNullDesc;
    return noErr;
}

}  // namespace carbon

using namespace carbon;

OSErr AEObjectInit(void) {
    return noErr;
}

OSErr AESetObjectCallbacks(OSLCompareUPP myCompareProc, OSLCountUPP myCountProc,
                           OSLDisposeTokenUPP myDisposeTokenProc,
                           OSLGetMarkTokenUPP myGetMarkTokenProc, OSLMarkUPP myMarkProc,
                           OSLAdjustMarksUPP myAdjustMarksProc,
                           OSLGetErrDescUPP myGetErrDescProcPtr) {
    Callbacks() = {myCompareProc, myCountProc,       myDisposeTokenProc, myGetMarkTokenProc,
                   myMarkProc,    myAdjustMarksProc, myGetErrDescProcPtr};
    return noErr;
}

OSErr AEDisposeToken(AEDesc* theToken) {
    if (!theToken) return paramErr;
    if (IsNullDesc(*theToken)) return noErr;
    return Guarded([&] {
        const bool isList = Callbacks().disposeToken && IsTokenList(*theToken);
        return isList ? DisposeList(theToken) : Dispose(theToken);
    });
}
