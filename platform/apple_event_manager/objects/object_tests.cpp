// Objects that meet a test: examines the elements one by one, with the application's callbacks.
#include "apple_event_manager/big_endian.h"
#include "apple_event_manager/objects/object_model.h"

namespace carbon {
namespace {

bool CanMark() {
    const ObjectCallbacks& callbacks = Callbacks();
    return callbacks.getMarkToken && callbacks.mark && callbacks.adjustMarks;
}

// What a test level asks for: the test, and which of the objects that meet it.
struct Question {
    std::optional<Item> test;
    std::optional<Item> index;
};

Question QuestionOf(const SpecifierLevel& inLevel) {
    if (inLevel.form == formTest) return {inLevel.keyData, std::nullopt};
    return {ItemWithKey(inLevel.keyData, keyAETest), ItemWithKey(inLevel.keyData, keyAEIndex)};
}

bool IsPositionAmong(const SpecifierLevel& inLevel, DescType inClass) {
    return inLevel.form == formAbsolutePosition && inLevel.desiredClass == inClass;
}

}  // namespace

bool Resolver::CanTest() const {
    const bool canStep = Callbacks().count || Has(kAEUseRelativeIterators);
    return !Has(kAEIDoWhose) && Callbacks().compare && canStep;
}

OSErr Resolver::ResolveTest(const Levels& inLevels, size_t* ioAt, const ObjectPlace& inPlace,
                            Token& outToken) {
    const SpecifierLevel& level = inLevels[(*ioAt)++];
    Question question = QuestionOf(level);
    if (!question.test) return errAEBadTestKey;
    const bool isFollowed = !question.index && *ioAt < inLevels.size() &&
                            IsPositionAmong(inLevels[*ioAt], level.desiredClass);
    if (isFollowed) question.index = inLevels[(*ioAt)++].keyData;
    Matches matches;
    const OSErr result = FindMatches(level.desiredClass, *question.test, inPlace, matches);
    if (result != noErr) return result;
    if (matches.count == 0) return errAENoSuchObject;
    if (question.index) return Select(*question.index, matches, outToken);
    outToken.Take(matches.token);
    return noErr;
}

OSErr Resolver::FindMatches(DescType inClass, const Item& inTest, const ObjectPlace& inPlace,
                            Matches& outMatches) {
    Cursor cursor;
    Token element;
    OSErr result = Begin(inClass, inPlace, cursor, outMatches);
    if (result == noErr) result = NextElement(cursor, Token(), element);
    while (result == noErr && !cursor.isDone) {
        bool holds = false;
        Token next;
        result = Holds(inTest, {element.Get(), inClass}, &holds);
        if (result == noErr) result = NextElement(cursor, element, next);
        if (result == noErr && holds) result = AddMatch(outMatches, element);
        element.Take(next);
    }
    return result;
}

OSErr Resolver::Begin(DescType inClass, const ObjectPlace& inPlace, Cursor& outCursor,
                      Matches& outMatches) const {
    outCursor = {inClass, inPlace, 0, 0, Has(kAEUseRelativeIterators), false};
    outMatches.areMarked = Has(kAEIDoMarking) && CanMark();
    AEDesc* matches = outMatches.token.Out();
    const OSErr result = outMatches.areMarked
                             ? Callbacks().getMarkToken(inPlace.token, inPlace.objectClass, matches)
                             : AECreateList(nullptr, 0, false, matches);
    if (result != noErr || outCursor.isRelative) return result;
    const OSErr counted =
        Callbacks().count(inClass, inPlace.objectClass, inPlace.token, &outCursor.count);
    return counted == noErr && outCursor.count < 0 ? OSErr(errAENegativeCount) : counted;
}

OSErr Resolver::NextElement(Cursor& ioCursor, const Token& inPrevious, Token& outElement) {
    ++ioCursor.index;
    if (ioCursor.isRelative) return StepElement(ioCursor, inPrevious, outElement);
    ioCursor.isDone = ioCursor.index > ioCursor.count;
    if (ioCursor.isDone) return noErr;
    UInt8 bytes[sizeof(SInt32)];
    WriteBigEndian(bytes, ioCursor.index);
    const TemporaryDesc key({typeSInt32, Kind::Leaf, bytes});
    return Call(ioCursor.elementClass, ioCursor.container, formAbsolutePosition, *key, outElement);
}

OSErr Resolver::StepElement(Cursor& ioCursor, const Token& inPrevious, Token& outElement) {
    UInt8 bytes[sizeof(DescType)];
    OSErr result = noErr;
    if (ioCursor.index == 1) {
        WriteBigEndian(bytes, UInt32(kAEFirst));
        const TemporaryDesc key({typeAbsoluteOrdinal, Kind::Leaf, bytes});
        result =
            Call(ioCursor.elementClass, ioCursor.container, formAbsolutePosition, *key, outElement);
    } else {
        WriteBigEndian(bytes, UInt32(kAENext));
        const TemporaryDesc key({typeEnumerated, Kind::Leaf, bytes});
        result = Call(ioCursor.elementClass, {inPrevious.Get(), ioCursor.elementClass},
                      formRelativePosition, *key, outElement);
    }
    ioCursor.isDone = result == errAENoSuchObject;
    return ioCursor.isDone ? OSErr(noErr) : result;
}

// Puts the object into the list, or lets the application mark it.
OSErr Resolver::AddMatch(Matches& ioMatches, Token& ioElement) {
    ++ioMatches.count;
    if (ioMatches.areMarked)
        return Callbacks().mark(ioElement.Get(), ioMatches.token.Get(), ioMatches.count);
    Storage& list = *StorageOf(*ioMatches.token.Get());
    const Item element = ItemOf(*ioElement.Get());
    if (!Storage::FitsNesting(element)) return errAENoSuchObject;
    list.Append(typeWildCard, element);
    ioElement.Forget();
    return noErr;
}

OSErr Resolver::Holds(const Item& inTest, const ObjectPlace& inExamined, bool* outHolds) {
    const auto outer = mExamined;
    mExamined = inExamined;
    const OSErr result = Evaluate(inTest, outHolds);
    mExamined = outer;
    return result;
}

OSErr Resolver::Evaluate(const Item& inTest, bool* outHolds) {
    if (!Charge(inTest.content.size())) return errAEEventFailed;
    if (inTest.type == typeCompDescriptor) return EvaluateComparison(inTest, outHolds);
    if (inTest.type == typeLogicalDescriptor) return EvaluateLogic(inTest, outHolds);
    return errAEBadTestKey;
}

OSErr Resolver::EvaluateComparison(const Item& inTest, bool* outHolds) {
    const auto comparison = CodeWithKey(inTest, keyAECompOperator);
    const auto left = ItemWithKey(inTest, keyAEObject1), right = ItemWithKey(inTest, keyAEObject2);
    if (!comparison || !left || !right) return errAEBadTestKey;
    Token leftToken, rightToken;
    OSErr result = Operand(*left, leftToken);
    if (result == noErr) result = Operand(*right, rightToken);
    Boolean holds = false;
    if (result == noErr)
        result = Callbacks().compare(*comparison, leftToken.Get(), rightToken.Get(), &holds);
    *outHolds = holds;
    return result;
}

// A term that decides ends the evaluation, as in C.
OSErr Resolver::EvaluateLogic(const Item& inTest, bool* outHolds) {
    const auto logic = CodeWithKey(inTest, keyAELogicalOperator);
    const auto terms = ItemWithKey(inTest, keyAELogicalTerms);
    if (!logic || !terms || terms->kind != Kind::List) return errAEBadTestKey;
    if (*logic != kAEAND && *logic != kAEOR && *logic != kAENOT) return errAENoSuchLogical;
    const Section section = ItemsOf(terms->kind, terms->content);
    if (section.count == 0 || (*logic == kAENOT && section.count != 1)) return errAEWrongNumberArgs;
    UInt32 at = section.begin;
    for (UInt32 i = 0; i < section.count; ++i) {
        const Item term = ReadItem(terms->content, at);
        at += term.FormSize();
        if (const OSErr result = Evaluate(term, outHolds); result != noErr) return result;
        if (*outHolds != (*logic == kAEAND)) break;
    }
    if (*logic == kAENOT) *outHolds = !*outHolds;
    return noErr;
}

OSErr Resolver::Operand(const Item& inOperand, Token& outToken) {
    if (IsSpecifier(inOperand)) return Resolve(inOperand, outToken);
    if (inOperand.type == typeObjectBeingExamined && mExamined)
        outToken.Borrow(*mExamined->token);
    else
        outToken.Hold(inOperand);
    return noErr;
}

}  // namespace carbon
