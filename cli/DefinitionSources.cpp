// Follows what a scripting definition includes, within bounds.
#include "DefinitionSources.h"

namespace cli {
namespace {

constexpr size_t kDeepest = 8, kMostFiles = 64;

bool IsInclude(const xmlNode* inNode) {
    return IsElement(inNode, "include");
}

// Counts how deep the including goes.
class Deeper {
  public:
    explicit Deeper(size_t& ioDepth) : mDepth(ioDepth) { ++mDepth; }
    ~Deeper() { --mDepth; }
    Deeper(const Deeper&) = delete;
    Deeper& operator=(const Deeper&) = delete;

  private:
    size_t& mDepth;
};

}  // namespace

void DefinitionSources::Add(const std::string& inName, std::string_view inXml) {
    AddSuites(Parse(inName, inXml));
}

const XmlFile& DefinitionSources::Parse(const std::string& inName, std::string_view inXml) {
    const XmlFile& file = *mDocuments.emplace_back(std::make_unique<XmlFile>(inName, inXml));
    if (!IsElement(file.Root(), "dictionary"))
        file.Refuse(file.Root(), "a scripting definition begins with <dictionary>");
    return file;
}

const XmlFile* DefinitionSources::Include(const SourceNode& inNode) {
    const std::string reference = AttributeOr(inNode.node, "href", "");
    if (mDepth > kDeepest || mDocuments.size() >= kMostFiles)
        inNode.file->Refuse(inNode.node, "too much is included");
    const std::string place = inNode.file->Place(inNode.node);
    const auto xml = mFiles.Read(reference);
    if (!xml) {
        mNotes.push_back(place + ": '" + reference + "' is not among the application's files");
        return nullptr;
    }
    if (AttributeOr(inNode.node, "xpointer", "").find('[') != std::string::npos)
        mNotes.push_back(place + ": all of '" + reference + "' is included, not a part");
    return &Parse(reference, *xml);
}

void DefinitionSources::AddSuites(const XmlFile& inFile) {
    const Deeper deeper(mDepth);
    ForEachElement(inFile.Root(), [&](const xmlNode* inChild) {
        const SourceNode node{&inFile, inChild};
        if (IsInclude(inChild)) {
            if (const XmlFile* const file = Include(node)) AddSuites(*file);
        } else if (IsElement(inChild, "suite")) {
            SuiteSource source{node, {}};
            AddItems(node, source.items);
            mSuites.push_back(std::move(source));
        }
    });
}

// Into a suite goes what the suites of an included file hold.
void DefinitionSources::AddItems(const SourceNode& inParent, std::vector<SourceNode>& ioItems) {
    const Deeper deeper(mDepth);
    ForEachElement(inParent.node, [&](const xmlNode* inChild) {
        const SourceNode node{inParent.file, inChild};
        if (!IsInclude(inChild)) return ioItems.push_back(node);
        const XmlFile* const file = Include(node);
        if (file == nullptr) return;
        ForEachElement(file->Root(), [&](const xmlNode* inSuite) {
            if (IsElement(inSuite, "suite")) AddItems({file, inSuite}, ioItems);
        });
    });
}

}  // namespace cli
