// A walk through the text of values, as it is built from and printed to.
#pragma once

#include <string>
#include <vector>

#include "Vocabulary.h"

namespace cli {

// Finds the codes, words and names in angle brackets, and knows what may stand in their places.
// Texts and data are only copied.
class TextWalk {
  public:
    TextWalk(const std::string& inText, const Vocabulary& inWords, const EventTerm* inEvent,
             size_t inDepthOfParameters)
        : mText(inText), mWords(inWords), mEvent(inEvent), mDepth(inDepthOfParameters) {}
    virtual ~TextWalk() = default;

    void Run() {
        while (mAt < mText.size()) Step();
    }

  protected:
    // Each takes what stands between mAt and the end.
    virtual void QuotedCodeAt(size_t inEnd) = 0;
    virtual void WordAt(size_t inEnd) = 0;
    virtual void BracketsAt(size_t inEnd) = 0;
    virtual void Copy(size_t inEnd) = 0;

    void Took(OSType inCode) { mCode = inCode; }
    bool IsKey(size_t inEnd) const { return Next(inEnd) == ':'; }
    bool IsType(size_t inEnd) const { return Next(inEnd) == '(' || Next(inEnd) == '{'; }
    // What the syntax of objects is made of, and no application has names for.
    bool IsOfSyntax(size_t inEnd) const {
        return IsInObjectModel() && (IsKey(inEnd) || IsUnder(keyAEKeyForm));
    }
    bool IsParameter(size_t inEnd) const {
        return mEvent != nullptr && mOpened.size() == mDepth && IsKey(inEnd);
    }
    WordPlace PlaceOf(size_t inEnd) const;

    const std::string& mText;
    const Vocabulary& mWords;
    const EventTerm* mEvent;
    size_t mAt = 0;

  private:
    // What is open around the place where the walk stands.
    struct Opened {
        char bracket;
        OSType type;  // of the code before it, else 0
    };

    void Step();
    void Punctuation();
    char Next(size_t inEnd) const;  // that is no blank; 0 at the end
    bool IsInObjectModel() const;
    // Which of a specifier's keys the value belongs to.
    bool IsUnder(AEKeyword inKey) const { return mKey == inKey; }
    size_t EndOf(char inQuote) const;
    size_t EndOfBrackets(size_t inAt) const;
    size_t EndOfWord() const;

    size_t mDepth;
    std::vector<Opened> mOpened;
    OSType mCode = 0;    // the last one, if nothing stands behind it yet
    AEKeyword mKey = 0;  // of the value that the walk is in
};

// Of the characters of UTF-8, each the first.
bool IsFirstOfCharacter(char inByte);

}  // namespace cli
