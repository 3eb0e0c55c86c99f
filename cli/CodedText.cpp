// Puts codes in place of the names in a text of people.
#include <algorithm>
#include <string_view>
#include <utility>

#include "Codes.h"
#include "NamedText.h"
#include "TextWalk.h"

namespace cli {
namespace {

size_t CountCharacters(std::string_view inUtf8) {
    return static_cast<size_t>(std::ranges::count_if(inUtf8, IsFirstOfCharacter));
}

class Coding : public TextWalk {
  public:
    Coding(const std::string& inText, const Vocabulary& inWords, const EventTerm* inEvent)
        : TextWalk(inText, inWords, inEvent, 0) {}
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

CodedText WithCodes(const std::string& inText, const Vocabulary& inWords,
                    const EventTerm* inEvent) {
    return Coding(inText, inWords, inEvent).Result();
}

}  // namespace cli
