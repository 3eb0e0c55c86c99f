// The types that scripting definitions call by name.
#pragma once

#include <map>
#include <string>

#include "DefinitionSources.h"

namespace cli {

struct ValueType {
    OSType code = typeWildCard;
    UInt16 flags = 0;  // of ValueTerm
};

class DefinitionTypes {
  public:
    explicit DefinitionTypes(Notes& outNotes) : mNotes(outNotes) {}

    // A class, a record, a value or an enumeration of the definition; the first of a name counts.
    void Declare(const std::string& inName, OSType inCode, bool inIsEnumeration);

    // "text", "list of text", "disc". A name that nobody declared is anything, with a note once.
    ValueType Find(const SourceNode& inUser, const std::string& inName);

  private:
    ValueType FindItem(const SourceNode& inUser, const std::string& inName);

    std::map<std::string, ValueType> mDeclared;
    Notes& mNotes;
};

}  // namespace cli
