// Reading formats.
#include "core_foundation/strings/format_directive.h"

#include <algorithm>
#include <climits>

namespace carbon {

namespace {

// Arguments are named by numbers up to this; wider fields are not written.
constexpr int kMostArguments = 1024;
constexpr int kWidestField = 255;

class Parser {
  public:
    explicit Parser(std::u16string_view inFormat) : mFormat(inFormat) {}

    // The directive at the '%' at inStart.
    Directive Parse(size_t inStart) {
        mAt = inStart + 1;
        mDirective = {};
        mDirective.start = inStart;
        ReadPosition();
        ReadFlags();
        ReadNumber(&mDirective.width);
        if (Take(u'.')) {
            mDirective.precision.value = 0;
            ReadNumber(&mDirective.precision);
        }
        ReadSize();
        ReadLetter();
        mDirective.end = mAt;
        return mDirective;
    }

  private:
    bool IsAtEnd() const { return mAt == mFormat.size(); }
    bool IsAtDigit() const { return !IsAtEnd() && mFormat[mAt] >= u'0' && mFormat[mAt] <= u'9'; }

    bool Take(char16_t inUnit) {
        if (IsAtEnd() || mFormat[mAt] != inUnit) return false;
        ++mAt;
        return true;
    }

    int ReadDigits() {
        int number = 0;
        while (IsAtDigit()) number = std::min(number * 10 + (mFormat[mAt++] - u'0'), 100000);
        return number;
    }

    // "2$" in front of a directive or after a '*': an argument by its number.
    int ReadArgumentNumber() {
        const size_t before = mAt;
        const int number = ReadDigits();
        if (number >= 1 && number <= kMostArguments && Take(u'$')) return number - 1;
        mAt = before;
        return -1;
    }

    void ReadPosition() { mDirective.argument = ReadArgumentNumber(); }

    void ReadFlags() {
        for (; !IsAtEnd(); ++mAt) {
            switch (mFormat[mAt]) {
                case u'-':
                    mDirective.left = true;
                    break;
                case u'+':
                    mDirective.plus = true;
                    break;
                case u' ':
                    mDirective.space = true;
                    break;
                case u'0':
                    mDirective.zero = true;
                    break;
                case u'#':
                    break;
                default:
                    return;
            }
        }
    }

    void ReadNumber(FormatNumber* outNumber) {
        if (Take(u'*')) {
            const int named = ReadArgumentNumber();
            outNumber->argument = named >= 0 ? named : mNextArgument++;
        } else if (IsAtDigit()) {
            outNumber->value = std::min(ReadDigits(), kWidestField);
        }
    }

    void ReadSize() {
        while (Take(u'h')) ++mDirective.shortness;
        while (Take(u'l')) ++mLength;
        if (Take(u'q')) mLength = 2;
    }

    void ReadLetter() {
        const int length = mLength;
        mLength = 0;
        if (IsAtEnd()) return;
        mDirective.letter = mFormat[mAt++];
        mDirective.type = TypeOf(mDirective.letter, length);
        if (mDirective.type != ArgumentType::kNone && mDirective.argument < 0) {
            mDirective.argument = mNextArgument++;
        }
    }

    static ArgumentType TypeOf(char16_t inLetter, int inLength) {
        constexpr std::u16string_view kIntegers = u"dDiuUxXoO", kReals = u"eEfgG",
                                      kPointers = u"@sSPp", kCharacters = u"cC";
        if (kReals.find(inLetter) != kReals.npos) return ArgumentType::kDouble;
        if (kPointers.find(inLetter) != kPointers.npos) return ArgumentType::kPointer;
        if (kCharacters.find(inLetter) != kCharacters.npos) return ArgumentType::kInt;
        if (kIntegers.find(inLetter) == kIntegers.npos) return ArgumentType::kNone;
        return inLength == 0   ? ArgumentType::kInt
               : inLength == 1 ? ArgumentType::kLong
                               : ArgumentType::kLongLong;
    }

    std::u16string_view mFormat;
    size_t mAt = 0;
    int mLength = 0, mNextArgument = 0;
    Directive mDirective;
};

void Note(std::vector<ArgumentType>* ioTypes, int inArgument, ArgumentType inType) {
    if (inArgument < 0) return;
    const auto index = static_cast<size_t>(inArgument);
    // An argument nobody prints still has to be stepped over; it counts as an int.
    if (ioTypes->size() <= index) ioTypes->resize(index + 1, ArgumentType::kInt);
    (*ioTypes)[index] = inType;
}

}  // namespace

std::vector<Directive> ParseFormat(std::u16string_view inFormat) {
    std::vector<Directive> directives;
    Parser parser(inFormat);
    for (size_t at = inFormat.find(u'%'); at != inFormat.npos;) {
        directives.push_back(parser.Parse(at));
        at = inFormat.find(u'%', directives.back().end);
    }
    return directives;
}

std::vector<ArgumentType> ArgumentTypes(const std::vector<Directive>& inDirectives) {
    std::vector<ArgumentType> types;
    for (const Directive& directive : inDirectives) {
        Note(&types, directive.width.argument, ArgumentType::kInt);
        Note(&types, directive.precision.argument, ArgumentType::kInt);
        if (directive.type != ArgumentType::kNone) Note(&types, directive.argument, directive.type);
    }
    return types;
}

}  // namespace carbon
