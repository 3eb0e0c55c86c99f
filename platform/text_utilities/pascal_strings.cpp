// Owns the conversion between Pascal strings, C strings and numbers in decimal.
#include <Carbon/NumberFormatting.h>
#include <Carbon/TextUtils.h>

#include <charconv>
#include <cstring>

namespace carbon {
namespace {

constexpr size_t kLongest = 255;

bool IsSign(UInt8 inCharacter) {
    return inCharacter == '-' || inCharacter == '+';
}

// Kept: no character is refused; its low four bits are its digit, and the sum wraps.
UInt32 SumOfDigits(ConstStr255Param inString, unsigned inFirst) {
    UInt32 sum = 0;
    for (unsigned i = inFirst; i <= inString[0]; ++i) sum = sum * 10 + (inString[i] & 0x0FU);
    return sum;
}

}  // namespace
}  // namespace carbon

using namespace carbon;

void NumToString(SInt32 theNum, Str255 theString) {
    char* const digits = reinterpret_cast<char*>(theString) + 1;
    const auto result = std::to_chars(digits, digits + kLongest, theNum);
    theString[0] = UInt8(result.ptr - digits);
}

void StringToNum(ConstStr255Param theString, SInt32* theNum) {
    const bool hasSign = theString[0] > 0 && IsSign(theString[1]);
    const UInt32 sum = SumOfDigits(theString, hasSign ? 2 : 1);
    *theNum = SInt32(hasSign && theString[1] == '-' ? 0U - sum : sum);
}

void CopyCStringToPascal(const char* src, Str255 dst) {
    const size_t length = src ? strnlen(src, kLongest) : 0;
    if (length) std::memmove(dst + 1, src, length);
    dst[0] = UInt8(length);
}

void c2pstrcpy(Str255 dst, const char* src) {
    CopyCStringToPascal(src, dst);
}

void CopyPascalStringToC(ConstStr255Param src, char* dst) {
    const size_t length = src ? src[0] : 0;
    if (length) std::memmove(dst, src + 1, length);
    dst[length] = '\0';
}

void p2cstrcpy(char* dst, ConstStr255Param src) {
    CopyPascalStringToC(src, dst);
}
