// Values and parameters from text. Throws a BuildFailure or std::bad_alloc.
#pragma once

#include "apple_event_manager/data/access.h"
#include "apple_event_manager/text/build_arguments.h"
#include "apple_event_manager/text/build_syntax.h"

namespace carbon {

inline void ThrowIfFailed(OSErr inResult) {
    if (inResult != noErr) throw BuildFailure{inResult, {aeBuildSyntaxNoErr, 0}};
}

class BuildParser {
  public:
    // Without arguments no `@` is understood.
    BuildParser(std::string_view inText, BuildArguments* ioArguments)
        : mScanner(inText), mArguments(ioArguments) {}

    // The whole text as one value, or as parameters of this event.
    void Whole(AEDesc* outDesc);
    void WholeParameters(Storage& ioEvent);

  private:
    // One more container or pair of parentheses around what is read.
    class Nested {
      public:
        Nested(int& ioDepth, BuildScanner& inScanner) : mDepth(ioDepth) {
            if (mDepth == kMaximumNesting) inScanner.Fail(aeBuildSyntaxBadDesc);
            ++mDepth;
        }
        ~Nested() { --mDepth; }
        Nested(const Nested&) = delete;
        Nested& operator=(const Nested&) = delete;

      private:
        int& mDepth;
    };

    void Value(AEDesc* outDesc);
    void Number(AEDesc* outDesc);
    void Coded(AEDesc* outDesc);
    void Typed(DescType inType, AEDesc* outDesc);
    void Data(DescType inType, AEDesc* outDesc);
    void Coerced(DescType inType, AEDesc* outDesc);
    void List(AEDesc* outDesc);
    void Record(DescType inType, AEDesc* outDesc);
    void Event(OSType inClass, AEDesc* outDesc);
    void Parameters(Storage& ioEvent, char inEnd);
    void Parameter(Storage& ioEvent, std::vector<AEKeyword>& ioOptional);
    AEKeyword Key();
    void Argument(AEDesc* outDesc);
    void TypedArgument(DescType inType, AEDesc* outDesc);
    void NeedArguments();

    BuildScanner mScanner;
    BuildArguments* mArguments;
    int mContainers = 0;
    int mParentheses = 0;
};

}  // namespace carbon
