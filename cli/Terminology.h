// What an application calls its events, classes and values: the content of 'aete' resources and of
// scripting definitions.
#pragma once

#include <Carbon/Carbon.h>

#include <optional>
#include <span>
#include <string>
#include <vector>

namespace cli {

struct Term {
    std::string name, description;  // UTF-8
    OSType code = 0;
};

// The type of a value and what is said about it.
struct ValueTerm {
    enum : UInt16 { kOptional = 0x8000, kList = 0x4000, kEnumerated = 0x2000, kWritable = 0x1000 };

    OSType type = typeNull;
    std::string description;
    UInt16 flags = 0;

    bool Is(UInt16 inFlag) const { return (flags & inFlag) != 0; }
};

// A parameter or a property: `value.description` is that of the term.
struct NamedValue {
    std::string name;
    OSType code = 0;
    ValueTerm value;
};

struct EventTerm : Term {  // `code` is the event's ID
    AEEventClass eventClass = 0;
    ValueTerm reply, direct;
    std::vector<NamedValue> parameters;
};

struct ElementTerm {
    OSType elementClass = 0;
    std::vector<OSType> forms;
};

struct ClassTerm : Term {
    std::vector<NamedValue> properties;
    std::vector<ElementTerm> elements;
};

struct Enumeration {
    OSType code = 0;
    std::vector<Term> values;
    std::string name;  // empty where an 'aete' tells of it
};

struct Suite : Term {
    std::vector<EventTerm> events;
    std::vector<ClassTerm> classes;
    std::vector<Term> comparisons;
    std::vector<Enumeration> enumerations;
};

using Suites = std::vector<Suite>;

// Reads one 'aete' resource. Throws a Failure when it ends too early.
Suites ReadTerminology(std::span<const UInt8> inResource);

// Sentences about what was left out of a dictionary.
using Notes = std::vector<std::string>;

// The suites of a bundle or file: those of its 'aete' resources or, where it has none, of its
// scripting definition. Throws a Failure when they are damaged or the file cannot be read; nothing
// when it has no dictionary.
std::optional<Suites> ReadTerminologyOf(const std::string& inPath, Notes& outNotes);

// The suites of an application: a path of its bundle or file, the PID of a running one, a signature
// or a name. Throws a Failure when there is no such application, or none of its words.
Suites TerminologyOf(const std::string& inApplication, Notes& outNotes);

}  // namespace cli
