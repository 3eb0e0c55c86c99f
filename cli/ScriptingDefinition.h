// Scripting definitions: what an application's .sdef file calls its events, classes and values.
#pragma once

#include <string>
#include <string_view>

#include "Terminology.h"

namespace cli {

// Gives the text of another file of the same application that a definition includes, or nothing.
class DefinitionFiles {
  public:
    virtual ~DefinitionFiles() = default;
    virtual std::optional<std::string> Read(const std::string& inReference) = 0;
};

// Reads one definition; `inName` stands before the line in what it complains of. Entities are
// refused, nothing is fetched, and includes end at a depth of 8 and a number of 64. Throws a
// Failure. What the file leaves open (a type that nobody defines, a file that is elsewhere) becomes
// a note: the rest is still of use.
Suites ReadScriptingDefinition(const std::string& inName, std::string_view inXml,
                               DefinitionFiles& ioFiles, Notes& outNotes);

}  // namespace cli
