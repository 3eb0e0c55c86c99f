// A parsed XML document that nothing outside it was needed or fetched for.
#pragma once

#include <libxml/tree.h>

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace cli {

class XmlFile {
  public:
    // Throws a Failure with file and line for what is no XML, nests deeper than 256 elements or
    // declares entities.
    XmlFile(const std::string& inName, std::string_view inXml);

    const xmlNode* Root() const;

    // Throws a Failure with file and line.
    [[noreturn]] void Refuse(const xmlNode* inNode, const std::string& inSentence) const;
    std::string Place(const xmlNode* inNode) const;  // "file.sdef:12"

  private:
    struct Free {
        void operator()(xmlDoc* ioDocument) const { xmlFreeDoc(ioDocument); }
    };

    std::string mName;
    std::unique_ptr<xmlDoc, Free> mDocument;
};

bool IsElement(const xmlNode* inNode, const char* inName);

// The value of an attribute; nothing when it is not there.
std::optional<std::string> Attribute(const xmlNode* inNode, const char* inName);
std::string AttributeOr(const xmlNode* inNode, const char* inName, const std::string& inDefault);

// Calls inTake with each child that is an element.
template <typename Take>
void ForEachElement(const xmlNode* inParent, const Take& inTake) {
    for (const xmlNode* node = inParent->children; node != nullptr; node = node->next)
        if (node->type == XML_ELEMENT_NODE) inTake(node);
}

}  // namespace cli
