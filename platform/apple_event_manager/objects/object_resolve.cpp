// Walks a specifier from the outermost container to the object it means.
#include <algorithm>

#include "apple_event_manager/big_endian.h"
#include "apple_event_manager/objects/object_model.h"

namespace carbon {

std::optional<Item> ItemWithKey(const Item& inRecord, AEKeyword inKey) {
    constexpr UInt32 kMostKeys =
        16;  // a specifier has four; who sends thousands wants to waste time
    if (!inRecord.IsKeyed()) return std::nullopt;
    const Section section = ItemsOf(inRecord.kind, inRecord.content);
    if (section.count > kMostKeys) return std::nullopt;
    UInt32 at = section.begin;
    for (UInt32 i = 0; i < section.count; ++i) {
        const Item item = ReadItem(inRecord.content, at + section.keySize);
        if (ReadBigEndian<UInt32>(inRecord.content.data() + at) == inKey) return item;
        at += section.keySize + item.FormSize();
    }
    return std::nullopt;
}

std::optional<DescType> CodeWithKey(const Item& inRecord, AEKeyword inKey) {
    const auto item = ItemWithKey(inRecord, inKey);
    if (!item || item->IsContainer() || item->content.size() != sizeof(DescType))
        return std::nullopt;
    return ReadBigEndian<UInt32>(item->content.data());
}

bool IsSpecifier(const Item& inItem) {
    return inItem.kind == Kind::Record && inItem.type == typeObjectSpecifier;
}

namespace {

std::optional<SpecifierLevel> ReadLevel(const Item& inSpecifier) {
    const auto desiredClass = CodeWithKey(inSpecifier, keyAEDesiredClass);
    const auto form = CodeWithKey(inSpecifier, keyAEKeyForm);
    const auto keyData = ItemWithKey(inSpecifier, keyAEKeyData);
    const auto container = ItemWithKey(inSpecifier, keyAEContainer);
    if (!desiredClass || !form || !keyData || !container) return std::nullopt;
    return SpecifierLevel{*desiredClass, *form, *keyData, *container, inSpecifier};
}

// The levels from the outermost inwards; empty when one of them is no specifier.
std::vector<SpecifierLevel> ReadLevels(const Item& inSpecifier) {
    std::vector<SpecifierLevel> levels;
    for (Item item = inSpecifier; IsSpecifier(item); item = levels.back().container) {
        const auto level = ReadLevel(item);
        if (!level) return {};
        levels.push_back(*level);
    }
    std::reverse(levels.begin(), levels.end());
    return levels;
}

// Tells the application, if it wants to know, which specifier found no object.
void NoteFailure(const Item& inSpecifier) {
    AEDesc* place = nullptr;
    const auto getErrDesc = Callbacks().getErrDesc;
    if (getErrDesc && getErrDesc(&place) == noErr && place) *place = DescOf(inSpecifier);
}

bool IsPositionInContainer(const Item& inBound, DescType inClass) {
    const auto level = IsSpecifier(inBound) ? ReadLevel(inBound) : std::nullopt;
    return level && level->desiredClass == inClass && level->form == formAbsolutePosition &&
           level->container.type == typeCurrentContainer;
}

}  // namespace

OSErr Resolver::Resolve(const Item& inSpecifier, Token& outToken) {
    const Levels levels = ReadLevels(inSpecifier);
    if (levels.empty()) return errAENotAnObjSpec;
    Token container;
    DescType containerClass = typeNull;
    OSErr result = StartOf(levels[0].container, container, &containerClass);
    for (size_t at = 0; at < levels.size() && result == noErr;) {
        Token found;
        const size_t asked = at;
        result = ResolveLevel(levels, &at, {container.Get(), containerClass}, found);
        if (result != noErr && !mHasNotedError) NoteFailure(levels[asked].whole);
        mHasNotedError = result != noErr;
        containerClass = levels[asked].desiredClass;
        container.Take(found);
    }
    if (result == noErr) outToken.Take(container);
    return result;
}

// The application, or the object that a range or a test is about.
OSErr Resolver::StartOf(const Item& inContainer, Token& outToken, DescType* outClass) const {
    if (inContainer.IsContainer()) return errAENotAnObjSpec;
    if (inContainer.type == typeNull) return noErr;
    const bool isCurrent = inContainer.type == typeCurrentContainer;
    if (!isCurrent && inContainer.type != typeObjectBeingExamined) return errAENotAnObjSpec;
    const auto& place = isCurrent ? mCurrentContainer : mExamined;
    if (!place) return errAENoSuchObject;
    outToken.Borrow(*place->token);
    *outClass = place->objectClass;
    return noErr;
}

// Moves `ioAt` past the levels it took: a position among the objects of a test goes with the test.
OSErr Resolver::ResolveLevel(const Levels& inLevels, size_t* ioAt, const ObjectPlace& inPlace,
                             Token& outToken) {
    const SpecifierLevel& level = inLevels[*ioAt];
    const bool isTest = level.form == formTest || level.form == formWhose;
    if (isTest && CanTest()) return ResolveTest(inLevels, ioAt, inPlace, outToken);
    ++*ioAt;
    return CallWithKeyData(level, inPlace, outToken);
}

// Key data goes to the accessor with objects in the place of specifiers, unless it wants those.
OSErr Resolver::CallWithKeyData(const SpecifierLevel& inLevel, const ObjectPlace& inPlace,
                                Token& outToken) {
    if (!Has(kAEPassSubDescs) && IsSpecifier(inLevel.keyData)) {
        Token object;
        const OSErr result = Resolve(inLevel.keyData, object);
        return result == noErr ? CallForEach(inLevel, inPlace, *object.Get(), outToken) : result;
    }
    if (!Has(kAEPassSubDescs) && inLevel.form == formRange) {
        Range range;
        const OSErr result = MakeRange(inLevel, inPlace, range);
        return result == noErr ? CallForEach(inLevel, inPlace, *range.record, outToken) : result;
    }
    if (!Charge(inLevel.keyData.content.size())) return errAEEventFailed;
    const TemporaryDesc keyData(inLevel.keyData);
    return CallForEach(inLevel, inPlace, *keyData, outToken);
}

OSErr Resolver::CallForEach(const SpecifierLevel& inLevel, const ObjectPlace& inPlace,
                            const AEDesc& inKeyData, Token& outToken) {
    Storage* containers = ContainerOf(inPlace.token);
    const bool isList = containers && containers->GetKind() == Kind::List;
    if (!isList || !Has(kAEResolveNestedLists))
        return Call(inLevel.desiredClass, inPlace, inLevel.form, inKeyData, outToken);
    Matches found;
    OSErr result = AECreateList(nullptr, 0, false, found.token.Out());
    for (UInt32 i = 0; i < containers->Count() && result == noErr; ++i) {
        const TemporaryDesc container(containers->ItemAt(containers->PlaceAt(i)));
        Token element;
        result = Call(inLevel.desiredClass, {&*container, inPlace.objectClass}, inLevel.form,
                      inKeyData, element);
        if (result == noErr) result = AddMatch(found, element);
    }
    if (result == noErr) outToken.Take(found.token);
    return result;
}

bool Resolver::Charge(size_t inBytes) {
    mWorkLeft -= 1 + SInt64(inBytes / 1024);
    return mWorkLeft >= 0;
}

OSErr Resolver::Call(DescType inClass, const ObjectPlace& inPlace, DescType inForm,
                     const AEDesc& inKeyData, Token& outToken) {
    if (!Charge(0)) return errAEEventFailed;
    return AECallObjectAccessor(inClass, inPlace.token, inPlace.objectClass, inForm, &inKeyData,
                                outToken.Out());
}

OSErr Resolver::MakeRange(const SpecifierLevel& inLevel, const ObjectPlace& inPlace,
                          Range& outRange) {
    const AEKeyword keys[] = {keyAERangeStart, keyAERangeStop};
    auto record = Storage::Empty(Kind::Record, typeRangeDescriptor);
    for (size_t i = 0; i < std::size(keys); ++i) {
        const auto bound = ItemWithKey(inLevel.keyData, keys[i]);
        if (!bound) return errAEImpossibleRange;
        const OSErr result = ResolveBound(inLevel, *bound, inPlace, outRange.bounds[i]);
        if (result != noErr) return result;
        const Item resolved = ItemOf(*outRange.bounds[i].Get());
        if (!Storage::FitsNesting(resolved)) return errAEImpossibleRange;
        record->Append(keys[i], resolved);
    }
    *outRange.record.Get() = {typeRangeDescriptor, HandleOf(std::move(record))};
    return noErr;
}

OSErr Resolver::ResolveBound(const SpecifierLevel& inLevel, const Item& inBound,
                             const ObjectPlace& inPlace, Token& outToken) {
    if (!Charge(inBound.content.size())) return errAEEventFailed;
    const bool isPosition = IsPositionInContainer(inBound, inLevel.desiredClass);
    if (!IsSpecifier(inBound) || (isPosition && Has(kAEHandleSimpleRanges))) {
        outToken.Hold(isPosition ? *ItemWithKey(inBound, keyAEKeyData) : inBound);
        return noErr;
    }
    const auto outer = mCurrentContainer;
    mCurrentContainer = inPlace;
    const OSErr result = Resolve(inBound, outToken);
    mCurrentContainer = outer;
    return result;
}

}  // namespace carbon

using namespace carbon;

OSErr AEResolve(const AEDesc* objectSpecifier, SInt16 callbackFlags, AEDesc* theToken) {
    if (!objectSpecifier) return Making(theToken, [] { return OSErr(paramErr); });
    // A copy: the handler that gave the specifier may dispose or change it under an accessor.
    return Making(theToken, [&] {
        const TemporaryDesc specifier(ItemOf(*objectSpecifier));
        Token token;
        const OSErr result = Resolver(callbackFlags).Resolve(ItemOf(*specifier), token);
        return result == noErr ? token.MoveTo(theToken) : result;
    });
}
