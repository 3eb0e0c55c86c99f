// Walks the text of values: strings and data stay as they are, codes and names are looked up.
#include "NamedText.h"

#include <algorithm>
#include <cctype>
#include <string_view>
#include <utility>

#include "Codes.h"

namespace cli {
namespace {

constexpr std::string_view kBlanks = " \t\r\n";
constexpr std::string_view kPunctuation = "{}[]():,'\"@$&~\\-";

bool IsOfWord(char inCharacter) {
    const auto byte = static_cast<UInt8>(inCharacter);
    return byte > ' ' && byte != 0x7F && kPunctuation.find(inCharacter) == kPunctuation.npos;
}

bool IsDigit(char inCharacter) {
    return inCharacter >= '0' && inCharacter <= '9';
}

bool IsFirstOfCharacter(char inByte) {
    return (static_cast<UInt8>(inByte) & 0xC0) != 0x80;
}

size_t CountCharacters(std::string_view inUtf8) {
    return static_cast<size_t>(std::ranges::count_if(inUtf8, IsFirstOfCharacter));
}

// The keys of the records that object specifiers are made of; nobody's properties.
bool IsOfObjectModel(OSType inType) {
    return inType == typeObjectSpecifier || inType == typeCompDescriptor ||
           inType == typeLogicalDescriptor || inType == typeRangeDescriptor;
}

// What is open around the place where the walk stands.
struct Opened {
    char bracket;
    OSType type;  // of the code before it, else 0
};

class Walk {
  public:
    Walk(const std::string& inText, const Vocabulary& inWords, const EventTerm* inEvent,
         size_t inDepthOfParameters)
        : mText(inText), mWords(inWords), mEvent(inEvent), mDepth(inDepthOfParameters) {}
    virtual ~Walk() = default;

    void Run() {
        while (mAt < mText.size()) Step();
    }

  protected:
    // Each takes what stands there.
    virtual void QuotedCodeAt(size_t inEnd) = 0;
    virtual void WordAt(size_t inEnd) = 0;
    virtual void BracketsAt(size_t inEnd) = 0;
    virtual void Copy(size_t inEnd) = 0;

    void Took(OSType inCode) { mCode = inCode; }
    char Next(size_t inEnd) const {
        const size_t next = mText.find_first_not_of(kBlanks, inEnd);
        return next != mText.npos ? mText[next] : '\0';
    }
    bool IsKey(size_t inEnd) const { return Next(inEnd) == ':'; }
    bool IsType(size_t inEnd) const { return Next(inEnd) == '(' || Next(inEnd) == '{'; }
    // What the syntax of objects is made of, and no application has names for.
    bool IsOfSyntax(size_t inEnd) const {
        return IsInObjectModel() && (IsKey(inEnd) || IsUnder(keyAEKeyForm));
    }
    bool IsParameter(size_t inEnd) const {
        return mEvent != nullptr && mOpened.size() == mDepth && IsKey(inEnd);
    }
    bool IsInObjectModel() const {
        return !mOpened.empty() && IsOfObjectModel(mOpened.back().type);
    }
    // Which of a specifier's keys the value belongs to.
    bool IsUnder(AEKeyword inKey) const { return mKey == inKey; }
    WordPlace PlaceOf(size_t inEnd) const {
        if (IsKey(inEnd)) return WordPlace::kProperty;
        if (IsType(inEnd)) return WordPlace::kClass;
        if (!mOpened.empty() && mOpened.back().bracket == '(' && IsCodeType(mOpened.back().type))
            return IsUnder(keyAEDesiredClass) ? WordPlace::kClass : WordPlace::kType;
        return WordPlace::kValue;
    }

    const std::string& mText;
    const Vocabulary& mWords;
    const EventTerm* mEvent;
    size_t mAt = 0;
    std::vector<Opened> mOpened;

  private:
    static bool IsCodeType(OSType inType) {
        return inType == typeType || inType == typeProperty || inType == typeKeyword;
    }
    void Step();
    void Punctuation();
    size_t EndOf(char inQuote) const {
        const size_t end = mText.find(inQuote, mAt + 1);
        return end == mText.npos ? mText.size() : end + 1;
    }
    size_t EndOfBrackets(size_t inAt) const;
    size_t EndOfWord() const;

    size_t mDepth;
    OSType mCode = 0;    // the last one, if nothing stands behind it yet
    AEKeyword mKey = 0;  // of the value that the walk is in
};

// 0 for what is no name in angle brackets, such as a comparison.
size_t Walk::EndOfBrackets(size_t inAt) const {
    const auto isLetter = [](char c) { return std::isalpha(static_cast<unsigned char>(c)) != 0; };
    if (inAt + 1 >= mText.size() || mText[inAt] != '<' ||
        !(isLetter(mText[inAt + 1]) || static_cast<UInt8>(mText[inAt + 1]) >= 0x80))
        return 0;
    const size_t end = mText.find_first_of("<>\"\n{}[]", inAt + 1);
    return end != mText.npos && mText[end] == '>' ? end + 1 : 0;
}

size_t Walk::EndOfWord() const {
    size_t end = mAt;
    while (end < mText.size() && IsOfWord(mText[end]) && (end == mAt || EndOfBrackets(end) == 0))
        ++end;
    return end;
}

void Walk::Punctuation() {
    const char character = mText[mAt];
    if (std::string_view("{[(").find(character) != std::string_view::npos)
        mOpened.push_back({character, mCode});
    if (std::string_view("}])").find(character) != std::string_view::npos && !mOpened.empty())
        mOpened.pop_back();
    if (character == ':') mKey = mCode;
    if (character == ',') mKey = 0;
    if (kBlanks.find(character) == kBlanks.npos) mCode = 0;
    Copy(mAt + 1);
}

void Walk::Step() {
    const char character = mText[mAt];
    if (character == '"' || character == '$') return Copy(EndOf(character));
    if (character == '\'') return QuotedCodeAt(EndOf(character));
    if (const size_t end = EndOfBrackets(mAt)) return BracketsAt(end);
    if (IsDigit(character)) return Copy(EndOfWord());
    if (IsOfWord(character)) return WordAt(EndOfWord());
    Punctuation();
}

class Naming : public Walk {
  public:
    Naming(const std::string& inText, const Vocabulary& inWords, const EventTerm* inEvent)
        : Walk(inText, inWords, inEvent, 1) {}
    std::string Result() {
        Run();
        return mResult;
    }

  private:
    void Copy(size_t inEnd) override {
        mResult.append(mText, mAt, inEnd - mAt);
        mAt = inEnd;
    }
    void WordAt(size_t inEnd) override { Copy(inEnd); }
    void BracketsAt(size_t inEnd) override { Copy(inEnd); }
    void QuotedCodeAt(size_t inEnd) override;
    std::string NameOf(OSType inCode, size_t inEnd) const;

    std::string mResult;
};

std::string Naming::NameOf(OSType inCode, size_t inEnd) const {
    if (IsParameter(inEnd)) return NameOfParameter(mEvent, inCode);
    if (IsOfSyntax(inEnd)) return {};
    return mWords.NameOf(PlaceOf(inEnd), inCode);
}

void Naming::QuotedCodeAt(size_t inEnd) {
    const std::string text = mText.substr(mAt, inEnd - mAt);
    if (!IsCode(text)) return Copy(inEnd);
    const OSType code = CodeNamed(text);
    const std::string name = NameOf(code, inEnd);
    Copy(inEnd);
    Took(code);
    if (!name.empty()) mResult += '<' + name + '>';
}

class Coding : public Walk {
  public:
    Coding(const std::string& inText, const Vocabulary& inWords, const EventTerm* inEvent)
        : Walk(inText, inWords, inEvent, 0) {}
    CodedText Result() {
        Run();
        mResult.places.push_back(mPlace);
        return std::move(mResult);
    }

  private:
    void Copy(size_t inEnd) override;
    void Skip(size_t inEnd) {
        mPlace += CountCharacters(std::string_view(mText).substr(mAt, inEnd - mAt));
        mAt = inEnd;
    }
    void QuotedCodeAt(size_t inEnd) override;
    void WordAt(size_t inEnd) override;
    void BracketsAt(size_t inEnd) override;
    void Replace(const std::string& inName, size_t inEnd);
    OSType CodeOf(const std::string& inName, size_t inEnd) const;

    CodedText mResult;
    size_t mPlace = 0;
    size_t mEndOfCode = std::string::npos;  // just behind a code
};

void Coding::Copy(size_t inEnd) {
    for (; mAt < inEnd; ++mAt)
        if (IsFirstOfCharacter(mText[mAt])) {
            mResult.places.push_back(mPlace++);
            mResult.text += mText[mAt];
        } else {
            mResult.text += mText[mAt];
        }
}

void Coding::QuotedCodeAt(size_t inEnd) {
    const std::string text = mText.substr(mAt, inEnd - mAt);
    Copy(inEnd);
    if (IsCode(text)) Took(CodeNamed(text));
    mEndOfCode = inEnd;
}

OSType Coding::CodeOf(const std::string& inName, size_t inEnd) const {
    return IsParameter(inEnd) ? mWords.CodeForParameter(*mEvent, inName)
                              : mWords.CodeFor(PlaceOf(inEnd), inName);
}

// A word that is its own code stays.
void Coding::Replace(const std::string& inWord, size_t inEnd) try {
    const OSType code = CodeOf(inWord, inEnd);
    const std::string text = QuotedCode(code);
    if (IsCode(inWord) && CodeNamed(inWord) == code) {
        Copy(inEnd);
    } else {
        mResult.text += text;
        mResult.places.insert(mResult.places.end(), CountCharacters(text), mPlace);
        Skip(inEnd);
    }
    Took(code);
} catch (const Failure& failure) {
    throw UnknownName(failure, mPlace);
}

// Without a dictionary everything is a code; a type such as long( is one always.
void Coding::WordAt(size_t inEnd) {
    const std::string word = mText.substr(mAt, inEnd - mAt);
    const bool isCode = IsCode(word);
    if (!mWords.IsEmpty() && !(isCode && (IsType(inEnd) || IsOfSyntax(inEnd)))) {
        Replace(word, inEnd);
    } else {
        Copy(inEnd);
        if (isCode) Took(CodeNamed(word));
    }
    mEndOfCode = inEnd;
}

void Coding::BracketsAt(size_t inEnd) {
    if (mEndOfCode == mAt) return Skip(inEnd);
    Replace(mText.substr(mAt, inEnd - mAt), inEnd);
}

}  // namespace

std::string WithNames(const std::string& inPrinted, const Vocabulary& inWords,
                      const EventTerm* inEvent) {
    return inWords.IsEmpty() ? inPrinted : Naming(inPrinted, inWords, inEvent).Result();
}

CodedText WithCodes(const std::string& inText, const Vocabulary& inWords,
                    const EventTerm* inEvent) {
    return Coding(inText, inWords, inEvent).Result();
}

}  // namespace cli
