// Owns the accessors: one step each from a container to what lies in it.
#include "handlers/objects.h"

#include <algorithm>

#include "burn/BurnFailure.h"
#include "disc/RecorderState.h"
#include "handlers/LateReplies.h"
#include "handlers/Values.h"
#include "handlers/comparison.h"
#include "vantor/appleevents/UAppleEventsMgr.h"
#include "vantor/foundation/LException.h"

namespace recorder {
namespace {

constexpr SInt32 kAllElements = -1;  // as a position

RecorderState* sState = nullptr;

// What distinguishes the elements of a class: nothing for the one disc, the identifiers of drives.
const std::vector<std::string>& ElementsOf(DescType inClass) {
    static const std::vector<std::string> sTheDisc = {std::string()};
    return inClass == kDiscClass ? sTheDisc : sState->Drives();
}

void PutElements(DescType inClass, const std::vector<std::string>& inElements,
                 StAEDescriptor& outTokens) {
    ThrowIfError(AECreateList(nullptr, 0, false, outTokens));
    for (const auto& element : inElements) {
        StAEDescriptor token;
        MakeToken({inClass, element}, token);
        ThrowIfError(AEPutDesc(outTokens, 0, token));
    }
}

void FindByPosition(DescType inClass, const AEDesc& inData, StAEDescriptor& outToken) {
    const auto& elements = ElementsOf(inClass);
    const auto count = SInt32(elements.size());
    const SInt32 position = UAppleEventsMgr::GetAbsolutePositionIndex(inData, count);
    if (position == kAllElements) return PutElements(inClass, elements, outToken);
    if (position < 1 || position > count) LException::Throw(errAENoSuchObject);
    MakeToken({inClass, elements[size_t(position - 1)]}, outToken);
}

// One end of a range, from 0: a token of one of the elements, or a position.
size_t PlaceOf(DescType inClass, const std::vector<std::string>& inElements, const AEDesc& inRange,
               AEKeyword inBound) {
    StAEDescriptor bound;
    bound.GetParamDesc(inRange, inBound);
    if (bound.mDesc.descriptorType != inClass) {
        const SInt32 position =
            UAppleEventsMgr::GetAbsolutePositionIndex(bound, SInt32(inElements.size()));
        if (position < 1 || position > SInt32(inElements.size()))
            LException::Throw(errAENoSuchObject);
        return size_t(position - 1);
    }
    const auto found = std::find(inElements.begin(), inElements.end(), ObjectFrom(bound).driveId);
    if (found == inElements.end()) LException::Throw(errAENoSuchObject);
    return size_t(found - inElements.begin());
}

void FindByRange(DescType inClass, const AEDesc& inRange, StAEDescriptor& outTokens) {
    const auto& elements = ElementsOf(inClass);
    const size_t start = PlaceOf(inClass, elements, inRange, keyAERangeStart);
    const size_t stop = PlaceOf(inClass, elements, inRange, keyAERangeStop);
    if (start > stop) LException::Throw(errAEImpossibleRange);
    const auto first = elements.begin() + std::ptrdiff_t(start);
    const auto last = elements.begin() + std::ptrdiff_t(stop);
    PutElements(inClass, std::vector<std::string>(first, last + 1), outTokens);
}

void FindByName(DescType inClass, const AEDesc& inName, StAEDescriptor& outToken) {
    const std::string name = TextFrom(inName);
    if (inClass == kDriveClass) return MakeToken({inClass, sState->DriveNamed(name).id}, outToken);
    if (sState->Disc().volumeName != name) LException::Throw(errAENoSuchObject);
    MakeToken({inClass, {}}, outToken);
}

void FindElements(DescType inClass, DescType inForm, const AEDesc& inData,
                  StAEDescriptor& outToken) {
    const bool hasIdentifiers = inClass == kDriveClass;
    if (inForm == DescType(formAbsolutePosition)) return FindByPosition(inClass, inData, outToken);
    if (inForm == DescType(formRange)) return FindByRange(inClass, inData, outToken);
    if (inForm == DescType(formName) || (inForm == DescType(formUniqueID) && hasIdentifiers))
        return FindByName(inClass, inData, outToken);
    LException::Throw(errAEBadKeyForm);
}

void FindProperty(const AEDesc& inContainer, DescType inForm, const AEDesc& inData,
                  StAEDescriptor& outToken) {
    if (inForm != DescType(formPropertyID)) LException::Throw(errAEBadKeyForm);
    Object object = ObjectFrom(inContainer);
    object.property = CodeFrom(inData);
    MakeToken(object, outToken);
}

// A drive may go, or never have been, while an object is looked for: then there is no such object.
OSErr CodeOfStep(const std::function<void()>& inStep) {
    const OSErr err = CodeOf(inStep, nullptr);
    return err == nsDrvErr ? OSErr(errAENoSuchObject) : err;
}

OSErr Access(DescType inClass, const AEDesc* inContainer, DescType, DescType inForm,
             const AEDesc* inData, AEDesc* outToken, SInt32) {
    StAEDescriptor token;
    const OSErr err = CodeOfStep([&] {
        if (inClass == DescType(cProperty))
            return FindProperty(*inContainer, inForm, *inData, token);
        FindElements(inClass, inForm, *inData, token);
    });
    std::swap(*outToken, token.mDesc);
    return err;
}

OSErr Count(DescType inClass, DescType, const AEDesc* inContainer, SInt32* outCount) {
    return CodeOfStep(
        [&] { *outCount = CountElements(*sState, inClass, ObjectFrom(*inContainer)); });
}

OSErr Compare(DescType inOperator, const AEDesc* inLeft, const AEDesc* inRight, Boolean* outHolds) {
    return CodeOfStep([&] { *outHolds = CompareOperands(*sState, *inLeft, inOperator, *inRight); });
}

Objects ObjectsFrom(const AEDesc& inTokens) {
    Objects objects{{}, true};
    SInt32 count = 0;
    ThrowIfError(AECountItems(&inTokens, &count));
    for (SInt32 i = 1; i <= count; ++i) {
        StAEDescriptor token;
        ThrowIfError(AEGetNthDesc(&inTokens, i, typeWildCard, nullptr, token));
        objects.each.push_back(ObjectFrom(token));
    }
    return objects;
}

}  // namespace

void InstallObjectAccessors(RecorderState& inState) {
    sState = &inState;
    struct Entry {
        DescType wanted, container;
    };
    for (const Entry& entry :
         {Entry{kDiscClass, typeNull}, Entry{kDriveClass, typeNull}, Entry{cProperty, typeNull},
          Entry{cProperty, kDiscClass}, Entry{cProperty, kDriveClass}})
        ThrowIfError(AEInstallObjectAccessor(entry.wanted, entry.container,
                                             NewOSLAccessorUPP(Access), 0, false));
    ThrowIfError(AESetObjectCallbacks(NewOSLCompareUPP(Compare), NewOSLCountUPP(Count), nullptr,
                                      nullptr, nullptr, nullptr, nullptr));
}

Objects ResolveObjects(const AEDesc& inSpecifier) {
    if (inSpecifier.descriptorType == DescType(typeNull)) return {{Object{}}};
    StAEDescriptor token;
    const OSErr err = AEResolve(&inSpecifier, kAEResolveNestedLists, token);
    if (err == errAEAccessorNotFound) LException::Throw(errAENoSuchObject);
    ThrowIfError(err);
    if (token.mDesc.descriptorType == DescType(typeAEList)) return ObjectsFrom(token);
    return {{ObjectFrom(token)}};
}

SInt32 CountElements(RecorderState& inState, DescType inClass, const Object& inContainer) {
    if (inContainer.objectClass != DescType(cApplication) || inContainer.property != 0) return 0;
    if (inClass == kDiscClass) return 1;
    return inClass == kDriveClass ? SInt32(inState.Drives().size()) : 0;
}

}  // namespace recorder
