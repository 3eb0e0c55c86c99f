// Owns the accessors: one step each from a container to what lies in it.
#include "objects.h"

#include "notes.h"
#include "vantor/appleevents/MoreAEObjects.h"
#include "vantor/appleevents/UAppleEventsMgr.h"
#include "vantor/appleevents/UExtractFromAEDesc.h"

namespace notebook {
namespace {

constexpr SInt32 kAllElements = -1;  // as a position

// The token of the application is the null descriptor; that of any other object holds its fields.
void MakeToken(const Object& inObject, StAEDescriptor& outToken) {
    outToken.Dispose();
    if (inObject.note == 0 && inObject.property == 0) return;
    const DescType type = inObject.property == 0 ? DescType(kNoteClass) : DescType(cProperty);
    ThrowIfError(AECreateDesc(type, &inObject, sizeof inObject, outToken));
}

// What came with the event may stand where a token does, and claim to be anything.
Object ObjectFrom(const AEDesc& inToken) {
    if (inToken.descriptorType == DescType(typeNull)) return {};
    const bool isToken = inToken.descriptorType == DescType(kNoteClass) ||
                         inToken.descriptorType == DescType(cProperty);
    Object object;
    if (!isToken || AEGetDescDataSize(&inToken) != sizeof object) LException::Throw(errAETypeError);
    ThrowIfError(AEGetDescData(&inToken, &object, sizeof object));
    return object;
}

void FindAll(StAEDescriptor& outTokens) {
    ThrowIfError(AECreateList(nullptr, 0, false, outTokens));
    for (const Note& note : AllNotes()) {
        StAEDescriptor token;
        MakeToken({note.id}, token);
        ThrowIfError(AEPutDesc(outTokens, 0, token));
    }
}

void FindByPosition(const AEDesc& inPosition, StAEDescriptor& outToken) {
    const auto count = SInt32(AllNotes().size());
    const SInt32 index = UAppleEventsMgr::GetAbsolutePositionIndex(inPosition, count);
    if (index == kAllElements) return FindAll(outToken);
    if (index < 1 || index > count) LException::Throw(errAENoSuchObject);
    MakeToken({AllNotes()[size_t(index - 1)].id}, outToken);
}

void FindByName(const std::string& inName, StAEDescriptor& outToken) {
    for (const Note& note : AllNotes())
        if (note.name == inName) return MakeToken({note.id}, outToken);
    LException::Throw(errAENoSuchObject);
}

void FindNote(DescType inForm, const AEDesc& inData, StAEDescriptor& outToken) {
    SInt32 id = 0;
    switch (inForm) {
        case formAbsolutePosition:
            return FindByPosition(inData, outToken);
        case formName:
            return FindByName(TextFrom(inData), outToken);
        case formUniqueID:
            UExtractFromAEDesc::TheSInt32(inData, id);
            return MakeToken({NoteWithID(id).id}, outToken);
        default:
            LException::Throw(errAEBadKeyForm);
    }
}

void FindProperty(const AEDesc& inContainer, const AEDesc& inData, StAEDescriptor& outToken) {
    Object object = ObjectFrom(inContainer);
    object.property = CodeFrom(inData);
    MakeToken(object, outToken);
}

OSErr Find(DescType inClass, const AEDesc* inContainer, DescType, DescType inForm,
           const AEDesc* inData, AEDesc* outToken, SInt32) {
    StAEDescriptor token;
    const OSErr err = CodeOf([&] {
        if (inClass == DescType(cProperty)) return FindProperty(*inContainer, *inData, token);
        FindNote(inForm, *inData, token);
    });
    std::swap(*outToken, token.mDesc);
    return err;
}

// For tests, whose every element is looked at: "every note whose priority is greater than 1".
OSErr Count(DescType inClass, DescType, const AEDesc*, SInt32* outCount) {
    *outCount = inClass == DescType(kNoteClass) ? SInt32(AllNotes().size()) : 0;
    return noErr;
}

void TakeOperand(const AEDesc& inOperand, StAEDescriptor& outValue) {
    if (inOperand.descriptorType == DescType(cProperty))
        return GetValue(ObjectFrom(inOperand), outValue);
    ThrowIfError(AEDuplicateDesc(&inOperand, outValue));
}

OSErr Compare(DescType inOperator, const AEDesc* inLeft, const AEDesc* inRight, Boolean* outHolds) {
    return CodeOf([&] {
        StAEDescriptor left, right;
        TakeOperand(*inLeft, left);
        TakeOperand(*inRight, right);
        *outHolds = UAppleEventsMgr::CompareDescriptors(left, inOperator, right);
    });
}

void GetApplicationProperty(DescType inProperty, StAEDescriptor& outValue) {
    if (inProperty == DescType(pName)) return MakeText("Notebook", outValue);
    if (inProperty == DescType(pVersion)) return MakeText("1.0", outValue);
    LException::Throw(errAENoSuchObject);
}

}  // namespace

void InstallObjectAccessors() {
    const auto find = NewOSLAccessorUPP(Find);
    ThrowIfError(AEInstallObjectAccessor(kNoteClass, typeNull, find, 0, false));
    ThrowIfError(AEInstallObjectAccessor(cProperty, typeNull, find, 0, false));
    ThrowIfError(AEInstallObjectAccessor(cProperty, kNoteClass, find, 0, false));
    ThrowIfError(AESetObjectCallbacks(NewOSLCompareUPP(Compare), NewOSLCountUPP(Count), nullptr,
                                      nullptr, nullptr, nullptr, nullptr));
}

Objects Resolve(const AEDesc& inSpecifier) {
    if (inSpecifier.descriptorType == DescType(typeNull)) return {{Object{}}};
    StAEDescriptor token;
    const OSErr err = AEResolve(&inSpecifier, kAEResolveNestedLists, token);
    if (err == errAEAccessorNotFound) LException::Throw(errAENoSuchObject);
    ThrowIfError(err);
    if (token.mDesc.descriptorType != DescType(typeAEList)) return {{ObjectFrom(token)}};
    Objects objects{{}, true};
    SInt32 count = 0;
    ThrowIfError(AECountItems(token, &count));
    for (SInt32 i = 1; i <= count; ++i) {
        StAEDescriptor item;
        ThrowIfError(AEGetNthDesc(token, i, typeWildCard, nullptr, item));
        objects.each.push_back(ObjectFrom(item));
    }
    return objects;
}

void GetValue(const Object& inObject, StAEDescriptor& outValue) {
    if (inObject.note == 0) return GetApplicationProperty(inObject.property, outValue);
    if (inObject.property != 0)
        return GetProperty(NoteWithID(inObject.note), inObject.property, outValue);
    const StAEDescriptor application;
    ThrowIfError(MoreAEOCreateObjSpecifierFormUniqueID(kNoteClass, application, inObject.note,
                                                       false, outValue));
}

DescType CodeFrom(const AEDesc& inType) {
    DescType code = 0;
    UExtractFromAEDesc::TheData(inType, typeType, &code, sizeof code);
    return EndianU32_BtoN(code);
}

}  // namespace notebook
