// Parses XML with libxml2, which is told to look at nothing but the bytes it is given.
#include "XmlFile.h"

#include <libxml/parser.h>
#include <libxml/parserInternals.h>

#include <climits>

#include "Codes.h"
#include "Failure.h"

namespace cli {
namespace {

struct Complaint {
    int line = 0;
    std::string sentence;  // empty: none
};

std::string Characters(const xmlChar* inText) {
    return inText != nullptr ? reinterpret_cast<const char*>(inText) : "";
}

const xmlChar* Name(const char* inName) {
    return reinterpret_cast<const xmlChar*>(inName);
}

Complaint& ComplaintOf(void* ioContext) {
    return *static_cast<Complaint*>(static_cast<xmlParserCtxt*>(ioContext)->_private);
}

// The first one counts: what follows are its consequences.
void Note(void* ioContext, xmlErrorPtr inError) {
    Complaint& complaint = ComplaintOf(ioContext);
    if (!complaint.sentence.empty() || inError->level < XML_ERR_ERROR) return;
    complaint.line = inError->line;
    complaint.sentence = inError->message != nullptr ? inError->message : "this is no XML";
    while (complaint.sentence.ends_with('\n')) complaint.sentence.pop_back();
}

// A few lines of them can stand for any amount of text.
void RefuseEntity(void* ioContext, const xmlChar*, int, const xmlChar*, const xmlChar*, xmlChar*) {
    Complaint& complaint = ComplaintOf(ioContext);
    if (complaint.sentence.empty())
        complaint = {xmlSAX2GetLineNumber(ioContext), "entities may not be declared here"};
    xmlStopParser(static_cast<xmlParserCtxt*>(ioContext));
}

struct FreeContext {
    void operator()(xmlParserCtxt* ioContext) const { xmlFreeParserCtxt(ioContext); }
};

[[noreturn]] void Throw(const std::string& inPlace, const std::string& inSentence) {
    throw Failure(Shown(inPlace + ": " + inSentence), errAECorruptData);
}

}  // namespace

XmlFile::XmlFile(const std::string& inName, std::string_view inXml) : mName(inName) {
    Complaint complaint;
    const std::unique_ptr<xmlParserCtxt, FreeContext> context(xmlNewParserCtxt());
    if (context == nullptr || inXml.size() > INT_MAX)
        throw Failure(inName + ": it is too large", memFullErr);
    context->_private = &complaint;
    context->sax->serror = Note;
    context->sax->entityDecl = RefuseEntity;
    mDocument.reset(xmlCtxtReadMemory(context.get(), inXml.data(), static_cast<int>(inXml.size()),
                                      nullptr, nullptr,
                                      XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING |
                                          XML_PARSE_NOCDATA | XML_PARSE_BIG_LINES));
    if (!complaint.sentence.empty())
        Throw(mName + ':' + std::to_string(complaint.line), complaint.sentence);
    if (mDocument == nullptr || Root() == nullptr) Throw(mName, "this is no XML");
}

const xmlNode* XmlFile::Root() const {
    return xmlDocGetRootElement(mDocument.get());
}

std::string XmlFile::Place(const xmlNode* inNode) const {
    return mName + ':' + std::to_string(xmlGetLineNo(inNode));
}

void XmlFile::Refuse(const xmlNode* inNode, const std::string& inSentence) const {
    Throw(Place(inNode), inSentence);
}

bool IsElement(const xmlNode* inNode, const char* inName) {
    return inNode->type == XML_ELEMENT_NODE && xmlStrEqual(inNode->name, Name(inName)) != 0;
}

std::optional<std::string> Attribute(const xmlNode* inNode, const char* inName) {
    xmlChar* const value = xmlGetNoNsProp(inNode, Name(inName));
    if (value == nullptr) return {};
    std::string text = Characters(value);
    xmlFree(value);
    return text;
}

std::string AttributeOr(const xmlNode* inNode, const char* inName, const std::string& inDefault) {
    return Attribute(inNode, inName).value_or(inDefault);
}

}  // namespace cli
