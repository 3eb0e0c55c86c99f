// What the object model's files share: accessors, callbacks, tokens with an owner, the resolver.
#pragma once

#include <Carbon/AEObjects.h>
#include <Carbon/AERegistry.h>

#include "apple_event_manager/data/access.h"

namespace carbon {

struct ObjectCallbacks {
    OSLCompareUPP compare = nullptr;
    OSLCountUPP count = nullptr;
    OSLDisposeTokenUPP disposeToken = nullptr;
    OSLGetMarkTokenUPP getMarkToken = nullptr;
    OSLMarkUPP mark = nullptr;
    OSLAdjustMarksUPP adjustMarks = nullptr;
    OSLGetErrDescUPP getErrDesc = nullptr;
};
ObjectCallbacks& Callbacks();

// A token that is disposed as the application wants it; or one that somebody else owns.
class Token {
  public:
    Token() = default;
    ~Token() { Reset(); }
    Token(const Token&) = delete;
    Token& operator=(const Token&) = delete;

    const AEDesc* Get() const { return &mDesc; }
    AEDesc* Out() {
        Reset();
        return &mDesc;
    }
    void Borrow(const AEDesc& inDesc) {
        Reset();
        mDesc = inDesc;
        mOwner = Owner::Other;
    }
    // A plain value where a token might be.
    void Hold(const Item& inValue) {
        Reset();
        MakeDesc(inValue, &mDesc);
        mOwner = Owner::Us;
    }
    void Take(Token& ioOther) {
        Reset();
        std::swap(mDesc, ioOther.mDesc);
        std::swap(mOwner, ioOther.mOwner);
    }
    // Somebody else has the object now, in a copy of the descriptor.
    void Forget() { AEDisposeDesc(&mDesc); }
    // For a result that leaves us: a borrowed token is copied.
    OSErr MoveTo(AEDesc* outDesc);

  private:
    enum class Owner { Application, Us, Other };
    void Reset();

    AEDesc mDesc = kNullDesc;
    Owner mOwner = Owner::Application;
};

// An object while its parts are looked for: its token and the class it was asked for as.
struct ObjectPlace {
    const AEDesc* token;
    DescType objectClass;
};

// One level of a specifier; key data and container lie in the specifier's bytes.
struct SpecifierLevel {
    DescType desiredClass;
    DescType form;
    Item keyData;
    Item container;
    Item whole;
};

// Resolves one specifier with everything inside it. Specifiers come from other processes: their
// nesting is bounded by the form of descriptors, their work by a number of calls.
class Resolver {
  public:
    explicit Resolver(SInt16 inFlags) : mFlags(inFlags) {}

    OSErr Resolve(const Item& inSpecifier, Token& outToken);

  private:
    static constexpr SInt64 kMostWork = 1 << 20;  // calls and KiB of key data

    // Objects that a test found: a list of tokens, or a mark token of the application's.
    struct Matches {
        Token token;
        SInt32 count = 0;
        bool areMarked = false;
    };
    // Where a test is among the elements: by position, or from one to the next.
    struct Cursor {
        DescType elementClass;
        ObjectPlace container;
        SInt32 index = 0;
        SInt32 count = 0;
        bool isRelative = false;
        bool isDone = false;
    };
    // The tokens live as long as the record that holds their copies.
    struct Range {
        Token bounds[2];
        TemporaryDesc record;
    };
    using Levels = std::vector<SpecifierLevel>;

    bool Has(SInt16 inFlag) const { return (mFlags & inFlag) != 0; }
    bool Charge(size_t inBytes);

    // object_resolve.cpp
    OSErr StartOf(const Item& inContainer, Token& outToken, DescType* outClass) const;
    OSErr ResolveLevel(const Levels& inLevels, size_t* ioAt, const ObjectPlace& inPlace,
                       Token& outToken);
    OSErr CallWithKeyData(const SpecifierLevel& inLevel, const ObjectPlace& inPlace,
                          Token& outToken);
    OSErr CallForEach(const SpecifierLevel& inLevel, const ObjectPlace& inPlace,
                      const AEDesc& inKeyData, Token& outToken);
    OSErr Call(DescType inClass, const ObjectPlace& inPlace, DescType inForm,
               const AEDesc& inKeyData, Token& outToken);
    OSErr MakeRange(const SpecifierLevel& inLevel, const ObjectPlace& inPlace, Range& outRange);
    OSErr ResolveBound(const SpecifierLevel& inLevel, const Item& inBound,
                       const ObjectPlace& inPlace, Token& outToken);

    // object_tests.cpp
    bool CanTest() const;
    OSErr ResolveTest(const Levels& inLevels, size_t* ioAt, const ObjectPlace& inPlace,
                      Token& outToken);
    OSErr FindMatches(DescType inClass, const Item& inTest, const ObjectPlace& inPlace,
                      Matches& outMatches);
    OSErr Begin(DescType inClass, const ObjectPlace& inPlace, Cursor& outCursor,
                Matches& outMatches) const;
    OSErr NextElement(Cursor& ioCursor, const Token& inPrevious, Token& outElement);
    OSErr StepElement(Cursor& ioCursor, const Token& inPrevious, Token& outElement);
    OSErr AddMatch(Matches& ioMatches, Token& ioElement);
    OSErr Holds(const Item& inTest, const ObjectPlace& inExamined, bool* outHolds);
    OSErr Evaluate(const Item& inTest, bool* outHolds);
    OSErr EvaluateComparison(const Item& inTest, bool* outHolds);
    OSErr EvaluateLogic(const Item& inTest, bool* outHolds);
    OSErr Operand(const Item& inOperand, Token& outToken);

    // object_selection.cpp
    static OSErr Select(const Item& inIndex, Matches& ioMatches, Token& outToken);
    static OSErr SelectSpan(SInt32 inFirst, SInt32 inLast, bool inIsOne, Matches& ioMatches,
                            Token& outToken);

    SInt16 mFlags;
    SInt64 mWorkLeft = kMostWork;
    std::optional<ObjectPlace> mCurrentContainer;
    std::optional<ObjectPlace> mExamined;
    bool mHasNotedError = false;
};

// Reading records inside a specifier.
std::optional<Item> ItemWithKey(const Item& inRecord, AEKeyword inKey);
std::optional<DescType> CodeWithKey(const Item& inRecord, AEKeyword inKey);
bool IsSpecifier(const Item& inItem);

}  // namespace carbon
