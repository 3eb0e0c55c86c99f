// Names in the build and print syntax: 'simM'<simulation mode>. Either half is enough for a reader.
#pragma once

#include <string>
#include <vector>

#include "Failure.h"
#include "Vocabulary.h"

namespace cli {

// What AEPrintDescToHandle printed, with names behind the codes that have some. The keys at the
// first level of braces are parameters of `inEvent`, which may be null.
std::string WithNames(const std::string& inPrinted, const Vocabulary& inWords,
                      const EventTerm* inEvent);

struct CodedText {
    std::string text;
    std::vector<size_t> places;  // for each character, and the end, where it stood before

    size_t PlaceOf(size_t inCharacter) const {
        return places[inCharacter < places.size() ? inCharacter : places.size() - 1];
    }
};

// A name in a text that nobody knows.
class UnknownName : public Failure {
  public:
    UnknownName(const Failure& inFailure, size_t inPlace) : Failure(inFailure), mPlace(inPlace) {}
    size_t Place() const { return mPlace; }  // in characters

  private:
    size_t mPlace;
};

// The text, in UTF-8, with codes in place of names: each word is one or the other as Vocabulary has
// it. Angle brackets behind a code say nothing new. Keys outside of all brackets are parameters of
// `inEvent`, which may be null. Throws an UnknownName.
CodedText WithCodes(const std::string& inText, const Vocabulary& inWords, const EventTerm* inEvent);

}  // namespace cli
