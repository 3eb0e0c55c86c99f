// The words of one application: names for codes and codes for names.
#pragma once

#include <Carbon/Carbon.h>

#include <map>
#include <string>
#include <vector>

#include "Terminology.h"

namespace cli {

// Where a code or a name stands; says which words are looked at, and which first.
enum class WordPlace {
    kClass,     // the class of an object; the type of a record
    kProperty,  // a property; the key of a record
    kType,      // a value of type 'type'
    kValue,     // a value of type 'enum'
};

class Vocabulary {
  public:
    Vocabulary() = default;  // no words at all
    // `inWhose` is the application in sentences.
    Vocabulary(const std::string& inWhose, Suites inSuites);
    // No words, with the sentence that says why.
    explicit Vocabulary(const std::string& inWhyEmpty) : mWhyEmpty(inWhyEmpty) {}
    Vocabulary(Vocabulary&&) = default;
    Vocabulary& operator=(Vocabulary&&) = default;

    bool IsEmpty() const { return mSuites.empty(); }

    // Null when the application has no such event.
    const EventTerm* FindEvent(AEEventClass inClass, AEEventID inID) const;
    // By its name in any case. Null when there is none; throws a Failure when there are several.
    const EventTerm* FindEvent(const std::string& inName) const;
    [[noreturn]] void RefuseEvent(const std::string& inName) const;

    // Empty when the application has no name for it, or one that cannot be shown behind a code.
    std::string NameOf(WordPlace inPlace, OSType inCode) const;

    // What a person calls a class, a property or a value. Quotes make it a code, angle brackets a
    // name. Else it is a code that the application knows there, a name that it knows there, any
    // other code, in this order. `inOwner`, if not 0, is the class whose properties come first.
    // Throws a Failure that tells the names nearest to it.
    OSType CodeFor(WordPlace inPlace, const std::string& inWord, OSType inOwner = 0) const;

    // The same for a parameter of an event.
    OSType CodeForParameter(const EventTerm& inEvent, const std::string& inWord) const;

  private:
    enum class Kind { kClass, kProperty, kEnumerator, kComparison };
    struct Word {
        Kind kind;
        OSType code, owner;  // owner: the class of a property, the enumeration of a value
        std::string name;
    };
    using Kinds = std::vector<Kind>;

    OSType CodeOfName(WordPlace inPlace, const std::string& inName, OSType inOwner) const;

    static const Kinds& KindsAt(WordPlace inPlace);
    void Add(Kind inKind, OSType inOwner, const std::string& inName, OSType inCode);
    bool Knows(WordPlace inPlace, OSType inCode) const;
    std::vector<const Word*> Named(Kind inKind, const std::string& inName) const;
    OSType OnlyOne(const std::string& inName, const std::vector<const Word*>& inWords) const;
    std::string Described(const Word& inWord) const;
    [[noreturn]] void Refuse(const std::string& inName, const char* inWhat,
                             const std::vector<std::string>& inNames) const;

    std::string mWhose, mWhyEmpty = "the program has no dictionary of names";
    Suites mSuites;
    std::vector<Word> mWords;
    std::map<std::pair<Kind, OSType>, std::string> mNames;
    std::map<std::pair<AEEventClass, AEEventID>, const EventTerm*> mEvents;
};

// The name of a parameter of an event, which may be null; empty when it has none.
std::string NameOfParameter(const EventTerm* inEvent, AEKeyword inKey);

// The words of the program that a word of the command line means, running or installed, or of a
// running one. No words when it has no dictionary; one that is damaged is complained of on standard
// error, for codes do without names.
Vocabulary VocabularyOf(const std::string& inTarget);
Vocabulary VocabularyOf(const ProcessSerialNumber& inTarget);

}  // namespace cli
