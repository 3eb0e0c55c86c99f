// The suites of a scripting definition as they stand in its files.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "ScriptingDefinition.h"
#include "XmlFile.h"

namespace cli {

struct SourceNode {
    const XmlFile* file;
    const xmlNode* node;

    std::string Kind() const { return reinterpret_cast<const char*>(node->name); }
};

struct SuiteSource {
    SourceNode suite;
    std::vector<SourceNode> items;  // its elements, and those that it includes
};

class DefinitionSources {
  public:
    DefinitionSources(DefinitionFiles& ioFiles, Notes& outNotes)
        : mFiles(ioFiles), mNotes(outNotes) {}

    // Adds the suites of a definition and of those that it includes. Throws a Failure.
    void Add(const std::string& inName, std::string_view inXml);

    const std::vector<SuiteSource>& All() const { return mSuites; }

  private:
    const XmlFile& Parse(const std::string& inName, std::string_view inXml);
    // Nothing, with a note, for a file that is elsewhere.
    const XmlFile* Include(const SourceNode& inNode);
    void AddSuites(const XmlFile& inFile);
    void AddItems(const SourceNode& inParent, std::vector<SourceNode>& ioItems);

    DefinitionFiles& mFiles;
    Notes& mNotes;
    std::vector<std::unique_ptr<XmlFile>> mDocuments;
    std::vector<SuiteSource> mSuites;
    size_t mDepth = 0;
};

}  // namespace cli
