// Resolving: a small library of shelves with numbered books, reached through every key form.
#include <set>

#include "platform/apple_event_manager/Desc.h"

namespace {

// Tokens: 'shlf' holds the shelf's number, 'book' shelf and number, 'valu' a property's long.
// Shelf s has s books; the book's pages are 100 * shelf + number.
constexpr SInt32 kShelves = 3;

std::multiset<std::string> gLive;  // tokens that the library handed out
std::string gFailure;              // key data of the specifier that found nothing
std::vector<std::string> gMarks;
AEDesc gFailed = {typeNull, nullptr};

OSErr MakeToken(DescType inType, std::string_view inBytes, AEDesc* outToken) {
    gLive.insert(std::string(inBytes));
    return AECreateDesc(inType, inBytes.data(), Size(inBytes.size()), outToken);
}

std::string BytesOf(const AEDesc* inDesc) {
    std::string bytes(size_t(AEGetDescDataSize(inDesc)), '\0');
    AEGetDescData(inDesc, bytes.data(), Size(bytes.size()));
    return bytes;
}

SInt32 NumberIn(const std::string& inBytes, size_t inAt = 0) {
    SInt32 number = 0;
    if (inBytes.size() >= inAt + 4) memcpy(&number, inBytes.data() + inAt, 4);
    return EndianS32_BtoN(number);
}

OSErr PositionOf(DescType inForm, const AEDesc* inKey, SInt32 inCount, SInt32* outPosition) {
    if (inForm != formAbsolutePosition) return errAEBadKeyForm;
    if (BytesOf(inKey) == "firs") {
        *outPosition = 1;
    } else {
        Desc number;
        if (AECoerceDesc(inKey, typeSInt32, &number) != noErr) return errAEBadKeyForm;
        *outPosition = NumberIn(number.Bytes());
    }
    if (*outPosition < 1 || *outPosition > inCount) return errAENoSuchObject;
    return noErr;
}

OSErr FindShelf(DescType, const AEDesc* inContainer, DescType inContainerClass, DescType inForm,
                const AEDesc* inKey, AEDesc* outToken, SInt32 inRefCon) {
    EXPECT_EQ(inContainer->descriptorType, DescType(typeNull));
    EXPECT_EQ(inContainerClass, DescType(typeNull));
    EXPECT_EQ(inRefCon, 99);
    SInt32 position = 0;
    const OSErr result = PositionOf(inForm, inKey, kShelves, &position);
    return result == noErr ? MakeToken('shlf', Big(position), outToken) : result;
}

OSErr FindBook(DescType, const AEDesc* inContainer, DescType inContainerClass, DescType inForm,
               const AEDesc* inKey, AEDesc* outToken, SInt32) {
    const std::string container = BytesOf(inContainer);
    if (inForm == formRelativePosition) {
        const SInt32 next = NumberIn(container, 4) + 1;
        if (next > NumberIn(container)) return errAENoSuchObject;
        return MakeToken('book', container.substr(0, 4) + Big(next), outToken);
    }
    EXPECT_EQ(inContainerClass, DescType('shel'));
    if (inForm == formRange) {
        Desc range, start, stop;
        EXPECT_EQ(AEDuplicateDesc(inKey, &range), noErr);
        start = Param(range, keyAERangeStart);
        stop = Param(range, keyAERangeStop);
        return MakeToken(
            'rnge', Big(start.Type()) + start.Bytes() + Big(stop.Type()) + stop.Bytes(), outToken);
    }
    if (inForm == formTest) return MakeToken('test', "left to me", outToken);
    if (inForm == formUniqueID)
        return MakeToken('byid', Big(DescType(inKey->descriptorType)) + BytesOf(inKey), outToken);
    SInt32 position = 0;
    const OSErr result = PositionOf(inForm, inKey, NumberIn(container), &position);
    return result == noErr ? MakeToken('book', container + Big(position), outToken) : result;
}

OSErr FindPages(DescType, const AEDesc* inContainer, DescType, DescType inForm, const AEDesc* inKey,
                AEDesc* outToken, SInt32) {
    EXPECT_EQ(inForm, DescType(formPropertyID));
    if (BytesOf(inKey) != "page") return errAENoSuchObject;
    const std::string book = BytesOf(inContainer);
    return MakeToken('valu', Big(SInt32(100 * NumberIn(book) + NumberIn(book, 4))), outToken);
}

OSErr CountBooks(DescType inType, DescType, const AEDesc* inContainer, SInt32* outCount) {
    EXPECT_EQ(inType, DescType('book'));
    *outCount = NumberIn(BytesOf(inContainer));
    return noErr;
}

OSErr CountNegative(DescType, DescType, const AEDesc*, SInt32* outCount) {
    *outCount = -1;
    return noErr;
}

OSErr CompareNumbers(DescType inOperator, const AEDesc* inLeft, const AEDesc* inRight,
                     Boolean* outHolds) {
    const SInt32 left = NumberIn(BytesOf(inLeft)), right = NumberIn(BytesOf(inRight));
    if (inOperator == DescType(kAEEquals))
        *outHolds = left == right;
    else if (inOperator == DescType(kAEGreaterThan))
        *outHolds = left > right;
    else
        return errAEBadTestKey;
    return noErr;
}

OSErr DisposeToken(AEDesc* ioToken) {
    const auto found = gLive.find(BytesOf(ioToken));
    if (found != gLive.end()) gLive.erase(found);
    return errAEEventNotHandled;
}

OSErr WhereToNote(AEDesc** outPlace) {
    *outPlace = &gFailed;
    return noErr;
}

OSErr GetMarkToken(const AEDesc*, DescType, AEDesc* outToken) {
    gMarks.clear();
    return MakeToken('mark', "marks", outToken);
}
OSErr Mark(const AEDesc* inToken, const AEDesc*, SInt32 inIndex) {
    EXPECT_EQ(size_t(inIndex), gMarks.size() + 1);
    gMarks.push_back(BytesOf(inToken));
    return noErr;
}
OSErr AdjustMarks(SInt32 inStart, SInt32 inStop, const AEDesc*) {
    gMarks = {gMarks.begin() + inStart - 1, gMarks.begin() + inStop};
    return noErr;
}

Desc Object(DescType inClass, const Desc& inContainer, DescType inForm, const Desc& inKey) {
    Desc container, key, object;
    EXPECT_EQ(AEDuplicateDesc(&inContainer, &container), noErr);
    EXPECT_EQ(AEDuplicateDesc(&inKey, &key), noErr);
    EXPECT_EQ(CreateObjSpecifier(inClass, &container, inForm, &key, false, &object), noErr);
    return object;
}
Desc At(DescType inClass, const Desc& inContainer, SInt32 inPosition) {
    return Object(inClass, inContainer, formAbsolutePosition, Long(inPosition));
}
Desc Shelf(SInt32 inNumber) {
    return At('shel', Desc(), inNumber);
}
Desc Pages(const Desc& inBook) {
    return Object(cProperty, inBook, formPropertyID, Code(typeType, 'page'));
}
Desc Examined() {
    return Desc(typeObjectBeingExamined, "");
}
Desc Current() {
    return Desc(typeCurrentContainer, "");
}
Desc Compare(Desc inLeft, DescType inOperator, Desc inRight) {
    Desc comparison;
    EXPECT_EQ(CreateCompDescriptor(inOperator, &inLeft, &inRight, false, &comparison), noErr);
    return comparison;
}
Desc Logic(DescType inOperator, std::vector<const AEDesc*> inTerms) {
    Desc terms = List(), logic;
    for (const AEDesc* term : inTerms) EXPECT_EQ(AEPutDesc(&terms, 0, term), noErr);
    EXPECT_EQ(CreateLogicalDescriptor(&terms, inOperator, false, &logic), noErr);
    return logic;
}
Desc PagesAbove(SInt32 inPages) {
    return Compare(Pages(Examined()), kAEGreaterThan, Long(inPages));
}
std::string Book(SInt32 inShelf, SInt32 inNumber) {
    return Big(inShelf) + Big(inNumber);
}

class Resolving : public testing::Test {
  protected:
    Resolving() {
        EXPECT_EQ(AEObjectInit(), noErr);
        EXPECT_EQ(AEObjectInit(), noErr);
        Install('shel', typeNull, FindShelf, 99);
        Install('book', typeWildCard, FindBook, 0);
        Install(cProperty, typeWildCard, FindPages, 0);
        SetCallbacks(CompareNumbers, CountBooks);
    }
    ~Resolving() override {
        AEDisposeDesc(&gFailed);
        AERemoveObjectAccessor('shel', typeNull, nullptr, false);
        AERemoveObjectAccessor('book', typeWildCard, nullptr, false);
        AERemoveObjectAccessor(cProperty, typeWildCard, nullptr, false);
        EXPECT_TRUE(gLive.empty()) << gLive.size() << " tokens were never disposed";
        gLive.clear();
        AESetObjectCallbacks(nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr);
    }
    static void Install(DescType inClass, DescType inContainer, OSLAccessorUPP inAccessor,
                        SInt32 inRefCon) {
        ASSERT_EQ(AEInstallObjectAccessor(inClass, inContainer, inAccessor, inRefCon, false),
                  noErr);
    }
    static void SetCallbacks(OSLCompareUPP inCompare, OSLCountUPP inCount) {
        ASSERT_EQ(AESetObjectCallbacks(inCompare, inCount, DisposeToken, GetMarkToken, Mark,
                                       AdjustMarks, WhereToNote),
                  noErr);
    }
    // The token's bytes; of a list of tokens those of all of them.
    static std::string Resolved(const Desc& inObject, SInt16 inFlags = kAEIDoMinimum) {
        AEDesc token = {typeNull, nullptr};
        const OSErr result = AEResolve(&inObject, inFlags, &token);
        EXPECT_EQ(result, noErr);
        SInt32 count = 0;
        std::string bytes;
        if (AECountItems(&token, &count) != noErr) bytes = BytesOf(&token);
        for (SInt32 i = 1; i <= count; ++i) {
            Desc item;
            EXPECT_EQ(AEGetNthDesc(&token, i, typeWildCard, nullptr, &item), noErr);
            bytes += item.Bytes();
        }
        EXPECT_EQ(AEDisposeToken(&token), noErr);
        EXPECT_TRUE(token.dataHandle == nullptr);
        return bytes;
    }
    static OSErr Failure(const Desc& inObject, SInt16 inFlags = kAEIDoMinimum) {
        AEDisposeDesc(&gFailed);
        AEDesc token = {typeChar, nullptr};
        const OSErr result = AEResolve(&inObject, inFlags, &token);
        EXPECT_EQ(DescType(token.descriptorType), DescType(typeNull));
        EXPECT_TRUE(token.dataHandle == nullptr);
        return result;
    }
};

}  // namespace

TEST_F(Resolving, GoesFromTheApplicationInwards) {
    EXPECT_EQ(Resolved(Shelf(2)), Big(SInt32(2)));
    EXPECT_EQ(Resolved(At('book', Shelf(3), 2)), Book(3, 2));
    EXPECT_EQ(Resolved(Pages(At('book', Shelf(3), 2))), Big(SInt32(302)));
}

TEST_F(Resolving, PassesOnWhatTheAccessorsReturn) {
    EXPECT_EQ(Failure(Shelf(4)), errAENoSuchObject);
    EXPECT_EQ(Failure(At('book', Shelf(1), 2)), errAENoSuchObject);
    EXPECT_EQ(Failure(Object('shel', Desc(), formName, Text("x"))), errAEBadKeyForm);
    EXPECT_EQ(Failure(At('lamp', Desc(), 1)), errAEAccessorNotFound);
}

TEST_F(Resolving, NotesTheSpecifierThatFoundNothing) {
    const Desc missing = At('book', Shelf(1), 2);
    EXPECT_EQ(Failure(Pages(missing)), errAENoSuchObject);
    Desc noted;
    ASSERT_EQ(AEDuplicateDesc(&gFailed, &noted), noErr);
    EXPECT_EQ(noted.Flat(), missing.Flat());
}

TEST_F(Resolving, RefusesWhatIsNoSpecifier) {
    EXPECT_EQ(Failure(Desc()), errAENotAnObjSpec);
    EXPECT_EQ(Failure(Long(1)), errAENotAnObjSpec);
    EXPECT_EQ(Failure(Record()), errAENotAnObjSpec);
    EXPECT_EQ(Failure(Desc(typeObjectSpecifier, "no record")), errAENotAnObjSpec);
    EXPECT_EQ(Failure(At('book', Text("no container"), 1)), errAENotAnObjSpec);
    for (AEKeyword key : {keyAEDesiredClass, keyAEContainer, keyAEKeyForm, keyAEKeyData}) {
        Desc damaged = Shelf(1);
        ASSERT_EQ(AEDeleteParam(&damaged, key), noErr);
        EXPECT_EQ(Failure(damaged), errAENotAnObjSpec);
        EXPECT_EQ(Failure(At('book', damaged, 1)), errAENotAnObjSpec);
    }
    AEDesc token;
    EXPECT_EQ(AEResolve(nullptr, 0, &token), paramErr);
}

TEST_F(Resolving, KnowsTheCurrentContainerOnlyInRangesAndTheExaminedObjectOnlyInTests) {
    EXPECT_EQ(Failure(At('book', Current(), 1)), errAENoSuchObject);
    EXPECT_EQ(Failure(Pages(Examined())), errAENoSuchObject);
}

TEST_F(Resolving, GivesRangesWithTokensAsBounds) {
    Desc start = At('book', Current(), 1), stop = At('book', Current(), 3), range;
    ASSERT_EQ(CreateRangeDescriptor(&start, &stop, false, &range), noErr);
    const Desc books = Object('book', Shelf(3), formRange, range);
    EXPECT_EQ(Resolved(books), "book" + Book(3, 1) + "book" + Book(3, 3));
    EXPECT_EQ(Resolved(books, kAEHandleSimpleRanges),
              "long" + Big(SInt32(1)) + "long" + Big(SInt32(3)));
    EXPECT_EQ(Resolved(books, kAEPassSubDescs).substr(0, 4), "obj ");
    const Desc outside = Object('book', Shelf(2), formRange, range);
    EXPECT_EQ(Failure(outside), errAENoSuchObject);
    EXPECT_EQ(Failure(Object('book', Shelf(2), formRange, Long(1))), errAEImpossibleRange);
}

TEST_F(Resolving, GivesKeyDataThatIsASpecifierAsAToken) {
    const Desc book = Object('book', Shelf(3), formUniqueID, Shelf(2));
    EXPECT_EQ(Resolved(book), "shlf" + Big(SInt32(2)));
    EXPECT_EQ(Resolved(book, kAEPassSubDescs).substr(0, 4), "obj ");
}

TEST_F(Resolving, FindsEveryObjectThatMeetsATest) {
    EXPECT_EQ(Resolved(Object('book', Shelf(3), formTest, PagesAbove(301))),
              Book(3, 2) + Book(3, 3));
    EXPECT_EQ(Resolved(Object('book', Shelf(3), formTest, PagesAbove(302))), Book(3, 3));
    EXPECT_EQ(Failure(Object('book', Shelf(3), formTest, PagesAbove(303))), errAENoSuchObject);
}

TEST_F(Resolving, JoinsTermsAndStopsAtTheOneThatDecides) {
    const Desc above1 = PagesAbove(301), above2 = PagesAbove(302);
    const Desc bad = Compare(Examined(), 'what', Long(1));
    auto books = [](Desc inTest) { return Object('book', Shelf(3), formTest, inTest); };
    const Desc not2 = Logic(kAENOT, {&above2});
    EXPECT_EQ(Resolved(books(Logic(kAEAND, {&above1, &not2}))), Book(3, 2));
    EXPECT_EQ(Resolved(books(Logic(kAEOR, {&above2, &not2}))),
              Book(3, 1) + Book(3, 2) + Book(3, 3));
    const Desc never = PagesAbove(999);
    EXPECT_EQ(Failure(books(Logic(kAEAND, {&never, &bad}))), errAENoSuchObject);
    EXPECT_EQ(Failure(books(Logic(kAEOR, {&never, &bad}))), errAEBadTestKey);
    EXPECT_EQ(Failure(books(Logic(kAENOT, {&above1, &above2}))), errAEWrongNumberArgs);
    EXPECT_EQ(Failure(books(Logic(kAEAND, {}))), errAEWrongNumberArgs);
    EXPECT_EQ(Failure(books(Logic('XOR ', {&above1}))), errAENoSuchLogical);
    EXPECT_EQ(Failure(books(Long(1))), errAEBadTestKey);
}

TEST_F(Resolving, PicksByPositionAmongTheObjectsOfATest) {
    const Desc books = Object('book', Shelf(3), formTest, PagesAbove(301));
    EXPECT_EQ(Resolved(At('book', books, 1)), Book(3, 2));
    EXPECT_EQ(Resolved(At('book', books, -1)), Book(3, 3));
    EXPECT_EQ(Failure(At('book', books, 3)), errAENoSuchObject);
    EXPECT_EQ(Failure(At('book', books, 0)), errAENoSuchObject);
    auto ordinal = [&](OSType inOrdinal) {
        return Object('book', books, formAbsolutePosition, Code(typeAbsoluteOrdinal, inOrdinal));
    };
    EXPECT_EQ(Resolved(ordinal(kAEFirst)), Book(3, 2));
    EXPECT_EQ(Resolved(ordinal(kAEMiddle)), Book(3, 2));
    EXPECT_EQ(Resolved(ordinal(kAELast)), Book(3, 3));
    EXPECT_EQ(Resolved(ordinal(kAEAll)), Book(3, 2) + Book(3, 3));
    EXPECT_EQ(Resolved(ordinal(kAEAny)).substr(0, 4), Big(SInt32(3)));
    EXPECT_EQ(Failure(ordinal('what')), errAENoSuchObject);
    EXPECT_EQ(Resolved(Pages(At('book', books, 2))), Big(SInt32(303)));
}

TEST_F(Resolving, TakesWhoseWithPositionOrRange) {
    auto whose = [](const Desc& inIndex) {
        const Desc test = PagesAbove(300);
        Desc record = Record(), key;
        EXPECT_EQ(AEPutParamDesc(&record, keyAEIndex, &inIndex), noErr);
        EXPECT_EQ(AEPutParamDesc(&record, keyAETest, &test), noErr);
        EXPECT_EQ(AECoerceDesc(&record, typeWhoseDescriptor, &key), noErr);
        return Object('book', Shelf(3), formWhose, key);
    };
    auto range = [](SInt32 inStart, SInt32 inStop) {
        const Desc start = Long(inStart), stop = Long(inStop);
        Desc record = Record(), range;
        EXPECT_EQ(AEPutParamDesc(&record, keyAEWhoseRangeStart, &start), noErr);
        EXPECT_EQ(AEPutParamDesc(&record, keyAEWhoseRangeStop, &stop), noErr);
        EXPECT_EQ(AECoerceDesc(&record, typeWhoseRange, &range), noErr);
        return range;
    };
    EXPECT_EQ(Resolved(whose(Long(2))), Book(3, 2));
    EXPECT_EQ(Resolved(whose(range(2, -1))), Book(3, 2) + Book(3, 3));
    EXPECT_EQ(Failure(whose(range(3, 2))), errAEImpossibleRange);
    EXPECT_EQ(Failure(whose(range(1, 4))), errAENoSuchObject);
    EXPECT_EQ(Failure(Object('book', Shelf(3), formWhose, Long(1))), errAEBadTestKey);
}

TEST_F(Resolving, StepsFromOneElementToTheNextWhenAskedTo) {
    SetCallbacks(CompareNumbers, nullptr);
    EXPECT_EQ(
        Resolved(Object('book', Shelf(3), formTest, PagesAbove(301)), kAEUseRelativeIterators),
        Book(3, 2) + Book(3, 3));
}

TEST_F(Resolving, LeavesTestsToTheAccessorThatWantsThemOrWithoutCallbacks) {
    const Desc books = Object('book', Shelf(3), formTest, PagesAbove(301));
    EXPECT_EQ(Resolved(books, kAEIDoWhose), "left to me");
    SetCallbacks(nullptr, CountBooks);
    EXPECT_EQ(Resolved(books), "left to me");
    SetCallbacks(CompareNumbers, nullptr);
    EXPECT_EQ(Resolved(books), "left to me");
}

TEST_F(Resolving, MarksMatchesWhenAskedTo) {
    const Desc books = Object('book', Shelf(3), formTest, PagesAbove(300));
    EXPECT_EQ(Resolved(books, kAEIDoMarking), "marks");
    EXPECT_EQ(gMarks, (std::vector{Book(3, 1), Book(3, 2), Book(3, 3)}));
    EXPECT_EQ(Resolved(At('book', books, 2), kAEIDoMarking), "marks");
    EXPECT_EQ(gMarks, (std::vector{Book(3, 2)}));
}

TEST_F(Resolving, AsksEachContainerOfAListWhenAskedTo) {
    const Desc books = Object('book', Shelf(3), formTest, PagesAbove(301));
    EXPECT_EQ(Resolved(Pages(books), kAEResolveNestedLists), Big(SInt32(302)) + Big(SInt32(303)));
}

TEST_F(Resolving, RefusesANegativeCount) {
    SetCallbacks(CompareNumbers, CountNegative);
    EXPECT_EQ(Failure(Object('book', Shelf(3), formTest, PagesAbove(1))), errAENegativeCount);
}

TEST_F(Resolving, GivesUpOnTestsThatMultiply) {
    // Each level asks for every book whose pages equal those of a book found by the level below.
    Desc test = PagesAbove(0);
    for (int depth = 0; depth < 4; ++depth) {
        Desc last = At('book', Object('book', Shelf(3), formTest, test), -1);
        const Desc equal = Compare(Pages(last), kAEEquals, Long(303));
        Desc terms = List(), both;
        for (int i = 0; i < 20; ++i) ASSERT_EQ(AEPutDesc(&terms, 0, &equal), noErr);
        ASSERT_EQ(CreateLogicalDescriptor(&terms, kAEAND, false, &both), noErr);
        test = std::move(both);
    }
    EXPECT_EQ(Failure(Object('book', Shelf(3), formTest, test)), errAEEventFailed);
}

TEST_F(Resolving, RefusesASpecifierWithThousandsOfKeys) {
    Desc crowded = Shelf(1);
    for (UInt32 i = 0; i < 100; ++i)
        ASSERT_EQ(AEPutParamPtr(&crowded, i, typeTrue, nullptr, 0), noErr);
    EXPECT_EQ(Failure(crowded), errAENotAnObjSpec);
}

TEST_F(Resolving, CallsOneAccessorByClassAndTypeOfToken) {
    const Desc application, one = Long(1);
    Desc key = Long(2);
    AEDesc token;
    EXPECT_EQ(
        AECallObjectAccessor('shel', &application, typeNull, formAbsolutePosition, &one, &token),
        noErr);
    EXPECT_EQ(DescType(token.descriptorType), DescType('shlf'));
    EXPECT_EQ(AEDisposeToken(&token), noErr);
    EXPECT_EQ(AECallObjectAccessor('shel', &one, 'long', formAbsolutePosition, &one, &token),
              errAEAccessorNotFound);
    EXPECT_TRUE(token.dataHandle == nullptr);
    EXPECT_EQ(AECallObjectAccessor('shel', nullptr, typeNull, formAbsolutePosition, &one, &token),
              paramErr);
}

namespace {

std::string gCalled;

OSErr NoteCall(DescType, const AEDesc*, DescType, DescType, const AEDesc*, AEDesc*,
               SInt32 inRefCon) {
    gCalled += Big(inRefCon);
    return errAEEventNotHandled;
}

}  // namespace

TEST(ObjectAccessor, ExactPairsGoBeforeWildCardsAndTheApplicationBeforeTheSystem) {
    struct {
        DescType desiredClass, container;
        SInt32 refCon;
        Boolean isSystem;
    } const entries[] = {
        {typeWildCard, typeWildCard, '4sys', true},  {'docu', 'toke', '1sys', true},
        {typeWildCard, typeWildCard, '4   ', false}, {typeWildCard, 'toke', '3   ', false},
        {'docu', typeWildCard, '2   ', false},       {'docu', 'toke', '1   ', false}};
    for (const auto& entry : entries)
        ASSERT_EQ(AEInstallObjectAccessor(entry.desiredClass, entry.container, NoteCall,
                                          entry.refCon, entry.isSystem),
                  noErr);
    const Desc container('toke', "x"), key = Long(1);
    Desc token;
    EXPECT_EQ(AECallObjectAccessor('docu', &container, 'capp', formAbsolutePosition, &key, &token),
              errAEEventNotHandled);
    EXPECT_EQ(gCalled, "1   2   3   4   1sys4sys");
    for (const auto& entry : entries)
        EXPECT_EQ(
            AERemoveObjectAccessor(entry.desiredClass, entry.container, NoteCall, entry.isSystem),
            noErr);
}

TEST(ObjectAccessor, IsFoundAndRemovedOnlyUnderItsOwnPair) {
    OSLAccessorUPP accessor = nullptr;
    SInt32 refCon = 0;
    ASSERT_EQ(AEInstallObjectAccessor('docu', 'toke', NoteCall, 5, false), noErr);
    ASSERT_EQ(AEInstallObjectAccessor('docu', 'toke', NoteCall, 6, false), noErr);
    EXPECT_EQ(AEGetObjectAccessor('docu', 'toke', &accessor, &refCon, false), noErr);
    EXPECT_EQ(accessor, NoteCall);
    EXPECT_EQ(refCon, 6);
    EXPECT_EQ(AEGetObjectAccessor('docu', 'toke', nullptr, nullptr, true), errAEAccessorNotFound);
    EXPECT_EQ(AEGetObjectAccessor('docu', typeWildCard, nullptr, nullptr, false),
              errAEAccessorNotFound);
    EXPECT_EQ(AERemoveObjectAccessor('docu', 'toke', FindShelf, false), errAEAccessorNotFound);
    EXPECT_EQ(AERemoveObjectAccessor('docu', 'toke', NoteCall, false), noErr);
    EXPECT_EQ(AERemoveObjectAccessor('docu', 'toke', nullptr, false), errAEAccessorNotFound);
    EXPECT_EQ(AEInstallObjectAccessor('docu', 'toke', nullptr, 0, false), paramErr);
}
