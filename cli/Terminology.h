// What an application calls its events, classes and values: the content of 'aete' resources.
#pragma once

#include <Carbon/Carbon.h>

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

// The suites of an application: a path of its bundle or file, the PID of a running one, a signature
// or a name. Throws a Failure when there is no such application, or none of its words.
Suites TerminologyOf(const std::string& inApplication);

}  // namespace cli
