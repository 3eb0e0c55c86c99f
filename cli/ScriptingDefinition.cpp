// Makes of a scripting definition what an 'aete' would tell.
#include "ScriptingDefinition.h"

#include <charconv>

#include "Codes.h"
#include "DefinitionSources.h"
#include "DefinitionTypes.h"
#include "Failure.h"

namespace cli {
namespace {

// Where a reader of 'aete' resources expects the class that another one takes its properties from.
constexpr OSType kInheritance = 'c@#^';
constexpr OSType kContents = 'pcnt';

class DefinitionReader {
  public:
    DefinitionReader(const std::vector<SuiteSource>& inSources, Notes& outNotes)
        : mSources(inSources), mTypes(outNotes) {}

    Suites Read() {
        for (const auto& source : mSources)
            for (const auto& item : source.items) Declare(item);
        Suites suites;
        for (const auto& source : mSources) suites.push_back(ReadSuite(source));
        return suites;
    }

  private:
    void Declare(const SourceNode& inItem);
    Suite ReadSuite(const SuiteSource& inSource);
    void ReadItem(const SourceNode& inItem, Suite& ioSuite);
    EventTerm ReadEvent(const SourceNode& inItem);
    ClassTerm ReadClass(const SourceNode& inItem);
    Enumeration ReadEnumeration(const SourceNode& inItem);
    NamedValue ReadProperty(const SourceNode& inItem);
    ValueTerm ReadValue(const SourceNode& inItem);
    ElementTerm ReadElement(const SourceNode& inItem);

    const std::vector<SuiteSource>& mSources;
    DefinitionTypes mTypes;
};

std::string NameOf(const SourceNode& inItem) {
    if (auto name = Attribute(inItem.node, "name")) return *name;
    inItem.file->Refuse(inItem.node, std::string("a ") + inItem.Kind() + " has no name");
}

std::string DescriptionOf(const SourceNode& inItem) {
    return AttributeOr(inItem.node, "description", "");
}

// 0x and two digits for each byte, nothing for anything else.
std::optional<UInt64> HexIn(const std::string& inText, size_t inBytes) {
    if (inText.size() != 2 + 2 * inBytes || !inText.starts_with("0x")) return {};
    UInt64 number = 0;
    const char* const end = inText.data() + inText.size();
    const auto parsed = std::from_chars(inText.data() + 2, end, number, 16);
    return parsed.ptr == end && parsed.ec == std::errc() ? std::optional(number) : std::nullopt;
}

// The characters or the digits of a code as one number; throws for a code of another length.
UInt64 CodeOf(const SourceNode& inItem, size_t inBytes) {
    const auto text = Attribute(inItem.node, "code");
    const std::string which =
        std::string("the ") + inItem.Kind() + " '" + AttributeOr(inItem.node, "name", "") + "'";
    if (!text) inItem.file->Refuse(inItem.node, which + " has no code");
    if (const auto number = HexIn(*text, inBytes)) return *number;
    const auto bytes = InMacRoman(*text);
    if (!bytes || bytes->size() != inBytes)
        inItem.file->Refuse(inItem.node, which + " has the code '" + *text + "', which has not " +
                                             std::to_string(inBytes) + " characters");
    UInt64 code = 0;
    for (const char byte : *bytes) code = code << 8 | static_cast<UInt8>(byte);
    return code;
}

OSType ShortCodeOf(const SourceNode& inItem) {
    return static_cast<OSType>(CodeOf(inItem, sizeof(OSType)));
}

Term ReadTerm(const SourceNode& inItem) {
    Term term;
    term.name = NameOf(inItem);
    term.description = DescriptionOf(inItem);
    term.code = ShortCodeOf(inItem);
    return term;
}

bool IsClass(const xmlNode* inNode) {
    return IsElement(inNode, "class") || IsElement(inNode, "record-type") ||
           IsElement(inNode, "value-type");
}

bool IsYes(const xmlNode* inNode, const char* inAttribute) {
    return AttributeOr(inNode, inAttribute, "no") == "yes";
}

OSType FormOf(const SourceNode& inAccessor) {
    static constexpr std::pair<const char*, OSType> kStyles[] = {
        {"index", formAbsolutePosition},    {"name", formName},   {"id", formUniqueID},
        {"relative", formRelativePosition}, {"range", formRange}, {"test", formTest}};
    const std::string style = AttributeOr(inAccessor.node, "style", "");
    for (const auto& [word, form] : kStyles)
        if (style == word) return form;
    inAccessor.file->Refuse(inAccessor.node, "'" + style + "' is no style of an accessor");
}

void DefinitionReader::Declare(const SourceNode& inItem) {
    const bool isEnumeration = IsElement(inItem.node, "enumeration");
    if (isEnumeration || IsClass(inItem.node))
        mTypes.Declare(NameOf(inItem), ShortCodeOf(inItem), isEnumeration);
}

// A type may stand in an attribute or, where it is a list, in elements of its own. Of several, any
// may come.
ValueTerm DefinitionReader::ReadValue(const SourceNode& inItem) {
    ValueTerm value;
    value.description = DescriptionOf(inItem);
    if (IsYes(inItem.node, "optional")) value.flags |= ValueTerm::kOptional;
    size_t count = 0;
    const auto take = [&](const SourceNode& inTyped, const std::string& inName) {
        const ValueType type = mTypes.Find(inTyped, inName);
        value.type = count++ == 0 ? type.code : OSType{typeWildCard};
        value.flags = static_cast<UInt16>(value.flags | type.flags);
    };
    if (const auto name = Attribute(inItem.node, "type")) take(inItem, *name);
    ForEachElement(inItem.node, [&](const xmlNode* inChild) {
        if (!IsElement(inChild, "type")) return;
        const SourceNode type{inItem.file, inChild};
        take(type, AttributeOr(inChild, "type", "any"));
        if (IsYes(inChild, "list")) value.flags |= ValueTerm::kList;
    });
    if (count == 0) value.type = typeWildCard;
    return value;
}

NamedValue DefinitionReader::ReadProperty(const SourceNode& inItem) {
    NamedValue property{NameOf(inItem), ShortCodeOf(inItem), ReadValue(inItem)};
    const std::string access = AttributeOr(inItem.node, "access", "rw");
    if (access.find('w') != access.npos) property.value.flags |= ValueTerm::kWritable;
    return property;
}

ElementTerm DefinitionReader::ReadElement(const SourceNode& inItem) {
    ElementTerm element;
    element.elementClass = mTypes.Find(inItem, AttributeOr(inItem.node, "type", "")).code;
    ForEachElement(inItem.node, [&](const xmlNode* inChild) {
        if (IsElement(inChild, "accessor")) element.forms.push_back(FormOf({inItem.file, inChild}));
    });
    if (element.forms.empty())  // all that there are
        element.forms = {formAbsolutePosition, formName, formUniqueID, formRange, formTest};
    return element;
}

EventTerm DefinitionReader::ReadEvent(const SourceNode& inItem) {
    EventTerm event;
    event.name = NameOf(inItem);
    event.description = DescriptionOf(inItem);
    const UInt64 codes = CodeOf(inItem, 2 * sizeof(OSType));
    event.eventClass = static_cast<AEEventClass>(codes >> 32);
    event.code = static_cast<AEEventID>(codes);
    ForEachElement(inItem.node, [&](const xmlNode* inChild) {
        const SourceNode child{inItem.file, inChild};
        if (IsElement(inChild, "direct-parameter")) event.direct = ReadValue(child);
        if (IsElement(inChild, "result")) event.reply = ReadValue(child);
        if (IsElement(inChild, "parameter"))
            event.parameters.push_back({NameOf(child), ShortCodeOf(child), ReadValue(child)});
    });
    return event;
}

ClassTerm DefinitionReader::ReadClass(const SourceNode& inItem) {
    ClassTerm term;
    if (IsElement(inItem.node, "class-extension")) {
        term.name = AttributeOr(inItem.node, "extends", "");
        term.description = DescriptionOf(inItem);
        term.code = mTypes.Find(inItem, term.name).code;
    } else {
        static_cast<Term&>(term) = ReadTerm(inItem);
    }
    if (const auto parent = Attribute(inItem.node, "inherits")) {
        const ValueType type = mTypes.Find(inItem, *parent);
        term.properties.push_back({"<Inheritance>", kInheritance, {type.code, *parent, 0}});
    }
    ForEachElement(inItem.node, [&](const xmlNode* inChild) {
        const SourceNode child{inItem.file, inChild};
        if (IsElement(inChild, "property")) term.properties.push_back(ReadProperty(child));
        if (IsElement(inChild, "contents"))
            term.properties.push_back({AttributeOr(inChild, "name", "contents"),
                                       Attribute(inChild, "code") ? ShortCodeOf(child) : kContents,
                                       ReadValue(child)});
        if (IsElement(inChild, "element")) term.elements.push_back(ReadElement(child));
    });
    return term;
}

Enumeration DefinitionReader::ReadEnumeration(const SourceNode& inItem) {
    Enumeration enumeration;
    enumeration.name = NameOf(inItem);
    enumeration.code = ShortCodeOf(inItem);
    ForEachElement(inItem.node, [&](const xmlNode* inChild) {
        if (IsElement(inChild, "enumerator"))
            enumeration.values.push_back(ReadTerm({inItem.file, inChild}));
    });
    return enumeration;
}

void DefinitionReader::ReadItem(const SourceNode& inItem, Suite& ioSuite) {
    if (IsElement(inItem.node, "command") || IsElement(inItem.node, "event"))
        ioSuite.events.push_back(ReadEvent(inItem));
    else if (IsClass(inItem.node) || IsElement(inItem.node, "class-extension"))
        ioSuite.classes.push_back(ReadClass(inItem));
    else if (IsElement(inItem.node, "enumeration"))
        ioSuite.enumerations.push_back(ReadEnumeration(inItem));
}

Suite DefinitionReader::ReadSuite(const SuiteSource& inSource) {
    Suite suite;
    static_cast<Term&>(suite) = ReadTerm(inSource.suite);
    for (const auto& item : inSource.items) ReadItem(item, suite);
    return suite;
}

}  // namespace

Suites ReadScriptingDefinition(const std::string& inName, std::string_view inXml,
                               DefinitionFiles& ioFiles, Notes& outNotes) {
    DefinitionSources sources(ioFiles, outNotes);
    sources.Add(inName, inXml);
    return DefinitionReader(sources.All(), outNotes).Read();
}

}  // namespace cli
