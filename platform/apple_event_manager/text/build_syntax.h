// The smallest pieces of the text that values are built from: numbers, codes, texts and bytes.
#pragma once

#include <Carbon/AEHelpers.h>

#include <string_view>
#include <vector>

namespace carbon {

// What ends the building of a value. Thrown inside the builder alone.
struct BuildFailure {
    OSStatus result;
    AEBuildError error;
};

class BuildScanner {
  public:
    explicit BuildScanner(std::string_view inText) : mText(inText) {}

    // The next character that is no blank; 0 at the end.
    char Peek();
    // Takes that character if it is this one.
    bool Take(char inCharacter);
    // Where that character stands.
    UInt32 Position();

    bool IsAtNumber();
    bool IsAtCode();

    // Each stands at the first character of its kind.
    SInt64 Number();
    OSType Code();
    std::string_view Text();
    std::vector<UInt8> Hex();

    [[noreturn]] void Fail(AEBuildErrorCode inCode) { FailAt(inCode, Position()); }
    [[noreturn]] static void FailAt(AEBuildErrorCode inCode, UInt32 inPosition);

  private:
    std::string_view UntilQuote(char inQuote, AEBuildErrorCode inIfMissing);
    OSType QuotedCode();
    UInt8 HexDigit();

    std::string_view mText;
    size_t mAt = 0;
};

}  // namespace carbon
