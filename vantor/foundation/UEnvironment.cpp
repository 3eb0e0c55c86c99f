// Features of the system, and symbols of loaded libraries.
#include "vantor/foundation/UEnvironment.h"

namespace {

constexpr SInt32 kAppearance100 = 0x0100, kBeforeAppearance110 = 0x010F;

}  // namespace

SEnvironInfo UEnvironment::sEnvironInfo;

void UEnvironment::InitEnvironment() {
    static_cast<void>(Gestalt(gestaltSystemVersion, &sEnvironInfo.systemVersion));
    SetFeature(kFeatureAppearance,
               HasGestaltAttribute(gestaltAppearanceAttr, gestaltAppearanceExists));
    sEnvironInfo.appearanceVersion = 0;
    // Kept: without an answer the two version bits stay as they were.
    if (HasFeature(kFeatureAppearance) &&
        Gestalt(gestaltAppearanceVersion, &sEnvironInfo.appearanceVersion) == noErr) {
        SetFeature(kFeatureAppearance101, sEnvironInfo.appearanceVersion > kAppearance100);
        SetFeature(kFeatureAppearance110, sEnvironInfo.appearanceVersion > kBeforeAppearance110);
    }
    SetFeature(kFeatureAppearanceCompat,
               HasGestaltAttribute(gestaltAppearanceAttr, gestaltAppearanceCompatMode));
    SetFeature(kFeatureWindowMgr,
               HasGestaltAttribute(gestaltWindowMgrAttr, gestaltWindowMgrPresentBit));
    SetFeature(kFeatureAquaMenuLayout,
               HasGestaltAttribute(gestaltMenuMgrAttr, gestaltMenuMgrAquaLayoutBit));
}

void UEnvironment::SetFeature(UInt32 inMask, UInt8 inOn) {
    if (inOn)
        sEnvironInfo.features |= inMask;
    else
        sEnvironInfo.features &= ~inMask;
}

bool UEnvironment::HasGestaltAttribute(UInt32 inSelector, UInt32 inBit) {
    SInt32 answer = 0;
    if (Gestalt(inSelector, &answer) != noErr) return false;
    return inBit < 32 && (UInt32(answer) >> inBit & 1) != 0;
}

bool UEnvironment::IsAppearanceRunning() {
    return HasFeature(kFeatureAppearance) && !HasFeature(kFeatureAppearanceCompat);
}

Ptr UEnvironment::GetSharedLibSymbol(ConstStr63Param inLibraryName, ConstStr255Param inSymbolName) {
    CFragConnectionID connection = nullptr;
    Ptr address = nullptr;
    if (GetSharedLibrary(inLibraryName, kPowerPCCFragArch, kFindCFrag, &connection, nullptr,
                         nullptr) == noErr)
        static_cast<void>(FindSymbol(connection, inSymbolName, &address, nullptr));
    return address;
}
