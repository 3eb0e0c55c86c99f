// Owns `vantor dictionary`: the words an application understands, for people or as JSON.
#include <cstdio>

#include "Codes.h"
#include "Commands.h"
#include "Json.h"
#include "Terminology.h"

namespace cli {
namespace {

std::vector<std::string> FlagsOf(const ValueTerm& inValue) {
    std::vector<std::string> flags;
    if (inValue.Is(ValueTerm::kOptional)) flags.emplace_back("optional");
    if (inValue.Is(ValueTerm::kList)) flags.emplace_back("list");
    if (inValue.Is(ValueTerm::kEnumerated)) flags.emplace_back("enumerated");
    if (inValue.Is(ValueTerm::kWritable)) flags.emplace_back("writable");
    return flags;
}

Json JsonOf(const Term& inTerm);
Json JsonOf(const NamedValue& inValue);
Json JsonOf(const EventTerm& inEvent);
Json JsonOf(const ElementTerm& inElement);
Json JsonOf(const ClassTerm& inClass);
Json JsonOf(const Enumeration& inEnumeration);
Json JsonOf(const Suite& inSuite);

template <typename Item>
Json ListOf(const std::vector<Item>& inItems) {
    Json list = Json::array();
    for (const auto& item : inItems) list.push_back(JsonOf(item));
    return list;
}

Json JsonOf(const Term& inTerm) {
    return {{"name", inTerm.name},
            {"code", CodeText(inTerm.code)},
            {"description", inTerm.description}};
}

Json JsonOf(const ValueTerm& inValue) {
    return {{"type", CodeText(inValue.type)},
            {"flags", FlagsOf(inValue)},
            {"description", inValue.description}};
}

Json JsonOf(const NamedValue& inValue) {
    Json json = {{"name", inValue.name}, {"code", CodeText(inValue.code)}};
    json.update(JsonOf(inValue.value));
    return json;
}

Json JsonOf(const EventTerm& inEvent) {
    Json json = JsonOf(static_cast<const Term&>(inEvent));
    json["class"] = CodeText(inEvent.eventClass);
    json["reply"] = JsonOf(inEvent.reply);
    json["direct"] = JsonOf(inEvent.direct);
    json["parameters"] = ListOf(inEvent.parameters);
    return json;
}

Json JsonOf(const ElementTerm& inElement) {
    Json forms = Json::array();
    for (const OSType form : inElement.forms) forms.push_back(CodeText(form));
    return {{"class", CodeText(inElement.elementClass)}, {"forms", forms}};
}

Json JsonOf(const ClassTerm& inClass) {
    Json json = JsonOf(static_cast<const Term&>(inClass));
    json["properties"] = ListOf(inClass.properties);
    json["elements"] = ListOf(inClass.elements);
    return json;
}

Json JsonOf(const Enumeration& inEnumeration) {
    Json json = {{"code", CodeText(inEnumeration.code)}};
    if (!inEnumeration.name.empty()) json["name"] = inEnumeration.name;
    json["values"] = ListOf(inEnumeration.values);
    return json;
}

Json JsonOf(const Suite& inSuite) {
    Json json = JsonOf(static_cast<const Term&>(inSuite));
    json["events"] = ListOf(inSuite.events);
    json["classes"] = ListOf(inSuite.classes);
    json["comparisons"] = ListOf(inSuite.comparisons);
    json["enumerations"] = ListOf(inSuite.enumerations);
    return json;
}

void PrintLine(const std::string& inCode, const std::string& inName, const std::string& inType,
               const std::string& inDescription) {
    char columns[64];
    std::snprintf(columns, sizeof columns, "%-6s  ", inCode.c_str());
    std::string line = columns + Shown(inName);
    if (inName.size() < 24) line.append(24 - inName.size(), ' ');
    std::snprintf(columns, sizeof columns, "  %-6s  ", inType.c_str());
    line += columns + Shown(inDescription);
    line.resize(line.find_last_not_of(' ') + 1);
    std::printf("      %s\n", line.c_str());
}

void PrintHead(const char* inIndent, const Term& inTerm, const std::string& inKind) {
    std::printf("%s%s  %s\n", inIndent, Shown(inTerm.name).c_str(), inKind.c_str());
    if (!inTerm.description.empty())
        std::printf("%s    %s\n", inIndent, Shown(inTerm.description).c_str());
}

void PrintValue(const std::string& inCode, const std::string& inName, const ValueTerm& inValue) {
    std::string words = inValue.description;
    for (const auto& flag : FlagsOf(inValue)) words += (words.empty() ? "(" : " (") + flag + ')';
    PrintLine(inCode, inName, QuotedCode(inValue.type), words);
}

void PrintNamed(const std::vector<NamedValue>& inValues) {
    for (const auto& value : inValues) PrintValue(QuotedCode(value.code), value.name, value.value);
}

void PrintTerms(const std::vector<Term>& inTerms) {
    for (const auto& term : inTerms)
        PrintLine(QuotedCode(term.code), term.name, "", term.description);
}

void PrintEvent(const EventTerm& inEvent) {
    std::printf("\n");
    PrintHead("  ", inEvent,
              "event " + QuotedCode(inEvent.eventClass) + ' ' + QuotedCode(inEvent.code));
    if (inEvent.direct.type != DescType(typeNull)) PrintValue("'----'", "", inEvent.direct);
    PrintNamed(inEvent.parameters);
    if (inEvent.reply.type != DescType(typeNull)) PrintValue("reply", "", inEvent.reply);
}

void PrintElement(const ElementTerm& inElement) {
    std::string forms;
    for (const OSType form : inElement.forms)
        forms += (forms.empty() ? "" : ", ") + QuotedCode(form);
    PrintLine(QuotedCode(inElement.elementClass), "elements", "", "by " + forms);
}

void PrintClass(const ClassTerm& inClass) {
    std::printf("\n");
    PrintHead("  ", inClass, "class " + QuotedCode(inClass.code));
    PrintNamed(inClass.properties);
    for (const auto& element : inClass.elements) PrintElement(element);
}

void PrintSuite(const Suite& inSuite) {
    PrintHead("", inSuite, "suite " + QuotedCode(inSuite.code));
    for (const auto& event : inSuite.events) PrintEvent(event);
    for (const auto& term : inSuite.classes) PrintClass(term);
    if (!inSuite.comparisons.empty()) std::printf("\n  comparisons\n");
    PrintTerms(inSuite.comparisons);
    for (const auto& enumeration : inSuite.enumerations) {
        const std::string space = enumeration.name.empty() ? "" : "  ";
        std::printf("\n  %s%senumeration %s\n", Shown(enumeration.name).c_str(), space.c_str(),
                    QuotedCode(enumeration.code).c_str());
        PrintTerms(enumeration.values);
    }
    std::printf("\n");
}

}  // namespace

void ShowDictionary(const std::string& inApplication, bool inJson) {
    Notes notes;
    const Suites suites = TerminologyOf(inApplication, notes);
    for (const auto& note : notes) std::fprintf(stderr, "note: %s\n", Shown(note).c_str());
    if (inJson) return PrintJson(ListOf(suites));
    for (const auto& suite : suites) PrintSuite(suite);
}

}  // namespace cli
