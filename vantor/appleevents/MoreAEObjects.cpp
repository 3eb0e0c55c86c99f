// Object specifiers: which class, form and key data each kind is made of.
#include "vantor/appleevents/MoreAEObjects.h"

#include "vantor/appleevents/MoreAE.h"
#include "vantor/foundation/BigEndian.h"
#include "vantor/foundation/MoreAssert.h"

namespace {

OSErr CreateFromKey(DescType inClass, const AEDesc* inContainer, DescType inForm, AEDesc* ioKey,
                    Boolean inDisposeInputs, AEDesc* outSpecifier) {
    return CreateObjSpecifier(inClass, const_cast<AEDesc*>(inContainer), inForm, ioKey,
                              inDisposeInputs, outSpecifier);
}

// Makes the key data, then the specifier; the key data goes away in any case.
OSErr CreateSpecifier(DescType inClass, const AEDesc* inContainer, DescType inForm,
                      DescType inKeyType, const void* inKeyData, Size inKeySize,
                      AEDesc* outSpecifier) {
    AEDesc key = {typeNull, nullptr};
    OSErr err = AECreateDesc(inKeyType, inKeyData, inKeySize, &key);
    if (err != noErr) return err;
    err = CreateFromKey(inClass, inContainer, inForm, &key, false, outSpecifier);
    AEDisposeDesc(&key);
    return err;
}

// The same for the three forms that can dispose their inputs.
OSErr CreateElement(DescType inClass, const AEDesc* inContainer, DescType inForm,
                    DescType inKeyType, const void* inKeyData, Size inKeySize,
                    Boolean inDisposeInputs, AEDesc* outSpecifier) {
    AEDesc key;
    MoreAENullDesc(&key);
    OSErr err = AECreateDesc(inKeyType, inKeyData, inKeySize, &key);
    if (err != noErr) return err;
    err = CreateFromKey(inClass, inContainer, inForm, &key, inDisposeInputs, outSpecifier);
    MoreAEDisposeDesc(&key);  // Kept: also when the manager has consumed the key, null by then.
    return err;
}

OSErr MakeAlias(const FSSpec* inSpec, AliasHandle* outAlias) {
    *outAlias = nullptr;
    const OSErr err = NewAlias(nullptr, inSpec, outAlias);
    return err == noErr && *outAlias == nullptr ? OSErr{paramErr} : err;
}

// Makes the alias of a file for as long as `inUse` lasts, which gets it and returns a code.
template <typename Use>
OSErr WithAliasOf(const FSSpec* inSpec, Use inUse) {
    AliasHandle alias;
    OSErr err = MakeAlias(inSpec, &alias);
    if (err != noErr) return err;
    err = inUse(alias);
    DisposeHandle(reinterpret_cast<Handle>(alias));
    return err;
}

// Hands an alias record to `inUse`, which returns a code, locked meanwhile.
template <typename Use>
OSErr WithRecordOf(AliasHandle inAlias, Use inUse) {
    const auto handle = reinterpret_cast<Handle>(inAlias);
    const SInt8 state = HGetState(handle);
    HLock(handle);
    const OSErr err = inUse(*handle);
    HSetState(handle, state);
    return err;
}

}  // namespace

OSErr MoreAEOCreatePropertyObject(DescType pPropertyType, AEDesc* pContainer,
                                  AEDesc* pObjSpecifier) {
    const DescType property = BigEndianFromNative(pPropertyType);
    return CreateSpecifier(cProperty, pContainer, formPropertyID, typeType, &property,
                           sizeof property, pObjSpecifier);
}

OSErr MoreAEOCreateProcessObject(const ProcessSerialNumber* pPSN, AEDesc* pContainer,
                                 AEDesc* pObjSpecifier) {
    const auto psn = BigEndianFromNative(*pPSN);
    // Kept: a property whose key is a serial number.
    return CreateSpecifier(cProperty, pContainer, formPropertyID, typeProcessSerialNumber, &psn,
                           sizeof psn, pObjSpecifier);
}

OSErr MoreAEOCreateSelectionObject(DescType pSelection, AEDesc* pContainer, AEDesc* pObjSpecifier) {
    const DescType ordinal = BigEndianFromNative(pSelection);
    return CreateSpecifier(cObject, pContainer, formAbsolutePosition, typeAbsoluteOrdinal, &ordinal,
                           sizeof ordinal, pObjSpecifier);
}

OSErr MoreAEOCreateObjSpecifierFormUniqueID(DescType pDesiredClass, const AEDesc* pContainer,
                                            SInt32 pUniqueID, Boolean pDisposeInputs,
                                            AEDesc* pObjSpecifier) {
    MoreAssertQ(pContainer != nil);
    MoreAssertQ(pObjSpecifier != nil);
    const SInt32 id = BigEndianFromNative(pUniqueID);
    return CreateElement(pDesiredClass, pContainer, formUniqueID, typeSInt32, &id, sizeof id,
                         pDisposeInputs, pObjSpecifier);
}

OSErr MoreAEOCreateObjSpecifierFormAbsPos(DescType pDesiredClass, const AEDesc* pContainer,
                                          SInt32 pAbsolutePosition, Boolean pDisposeInputs,
                                          AEDesc* pObjSpecifier) {
    MoreAssertQ(pContainer != nil);
    MoreAssertQ(pObjSpecifier != nil);
    const SInt32 position = BigEndianFromNative(pAbsolutePosition);
    return CreateElement(pDesiredClass, pContainer, formAbsolutePosition, typeSInt32, &position,
                         sizeof position, pDisposeInputs, pObjSpecifier);
}

OSErr MoreAEOCreateObjSpecifierFormName(DescType pDesiredClass, const AEDesc* pContainer,
                                        ConstStr255Param pKeyData, Boolean pDisposeInputs,
                                        AEDesc* pObjSpecifier) {
    MoreAssertQ(pContainer != nil);
    MoreAssertQ(pObjSpecifier != nil);
    MoreAssertQ(pKeyData != nil);
    if (pKeyData == nullptr) return paramErr;
    return CreateElement(pDesiredClass, pContainer, formName, typeChar, pKeyData + 1, pKeyData[0],
                         pDisposeInputs, pObjSpecifier);
}

OSErr MoreAEOCreateAliasObject(AliasHandle pAlias, AEDesc* pContainer, AEDesc* pObjSpecifier) {
    AEDesc key = {typeNull, nullptr};
    OSErr err = MoreAEOCreateAliasDesc(pAlias, &key);
    if (err != noErr) return err;
    // Kept: an alias as an absolute position.
    err = CreateFromKey(typeAlias, pContainer, formAbsolutePosition, &key, false, pObjSpecifier);
    AEDisposeDesc(&key);
    return err;
}

OSErr MoreAEOCreateAliasObjectFromFSSpec(const FSSpec* pFSSpec, AEDesc* pContainer,
                                         AEDesc* pObjSpecifier) {
    return WithAliasOf(pFSSpec, [=](AliasHandle inAlias) {
        return MoreAEOCreateAliasObject(inAlias, pContainer, pObjSpecifier);
    });
}

OSErr MoreAEOCreateAliasDesc(AliasHandle pAlias, AEDesc* pAliasDesc) {
    return WithRecordOf(pAlias, [=](const char* inRecord) {
        const Size size = GetHandleSize(reinterpret_cast<Handle>(pAlias));
        return AECreateDesc(typeAlias, inRecord, size, pAliasDesc);
    });
}

OSErr MoreAEOCreateAliasDescFromFSSpec(const FSSpec* pFSSpec, AEDesc* pAliasDesc) {
    return WithAliasOf(
        pFSSpec, [=](AliasHandle inAlias) { return MoreAEOCreateAliasDesc(inAlias, pAliasDesc); });
}

OSErr MoreAEOAddAliasParameterFromFSSpec(const FSSpec* pFSSpec, AEKeyword pKeyword,
                                         AppleEvent* pAppleEvent) {
    return WithAliasOf(pFSSpec, [=](AliasHandle inAlias) {
        return WithRecordOf(inAlias, [=](const char* inRecord) {
            // Kept: the size is the record's own, where the descriptors above have the handle's.
            return AEPutParamPtr(pAppleEvent, pKeyword, typeAlias, inRecord, GetAliasSize(inAlias));
        });
    });
}

OSErr MoreAEOCreatePositionList(Point pPosition, AEDescList* pList) {
    const SInt16 horizontal = BigEndianFromNative(pPosition.h);
    const SInt16 vertical = BigEndianFromNative(pPosition.v);
    OSErr err = AECreateList(nullptr, 0, false, pList);
    // Kept: the type says four bytes, the items have two; horizontal comes first.
    if (err == noErr) err = AEPutPtr(pList, 0, typeSInt32, &horizontal, sizeof horizontal);
    if (err == noErr) err = AEPutPtr(pList, 0, typeSInt32, &vertical, sizeof vertical);
    return err;
}
