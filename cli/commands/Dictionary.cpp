// Owns `vantor dictionary`: the words an application understands, for people or as JSON.
#include <cstdio>

#include "Commands.h"
#include "Json.h"
#include "Output.h"
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
    return {
        {"name", inTerm.name}, {"code", Code(inTerm.code)}, {"description", inTerm.description}};
}

Json JsonOf(const ValueTerm& inValue) {
    return {{"type", Code(inValue.type)},
            {"flags", FlagsOf(inValue)},
            {"description", inValue.description}};
}

Json JsonOf(const NamedValue& inValue) {
    Json json = {{"name", inValue.name}, {"code", Code(inValue.code)}};
    json.update(JsonOf(inValue.value));
    return json;
}

Json JsonOf(const EventTerm& inEvent) {
    Json json = JsonOf(static_cast<const Term&>(inEvent));
    json["class"] = Code(inEvent.eventClass);
    json["reply"] = JsonOf(inEvent.reply);
    json["direct"] = JsonOf(inEvent.direct);
    json["parameters"] = ListOf(inEvent.parameters);
    return json;
}

Json JsonOf(const ElementTerm& inElement) {
    Json forms = Json::array();
    for (const OSType form : inElement.forms) forms.push_back(Code(form));
    return {{"class", Code(inElement.elementClass)}, {"forms", forms}};
}

Json JsonOf(const ClassTerm& inClass) {
    Json json = JsonOf(static_cast<const Term&>(inClass));
    json["properties"] = ListOf(inClass.properties);
    json["elements"] = ListOf(inClass.elements);
    return json;
}

Json JsonOf(const Enumeration& inEnumeration) {
    return {{"code", Code(inEnumeration.code)}, {"values", ListOf(inEnumeration.values)}};
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
    std::printf("      %-6s  %-24s  %-6s  %s\n", inCode.c_str(), inName.c_str(), inType.c_str(),
                inDescription.c_str());
}

std::string Quoted(OSType inCode) {
    return '\'' + Code(inCode) + '\'';
}

void PrintValue(const std::string& inCode, const std::string& inName, const ValueTerm& inValue) {
    std::string words = inValue.description;
    for (const auto& flag : FlagsOf(inValue)) words += " (" + flag + ')';
    PrintLine(inCode, inName, Quoted(inValue.type), words);
}

void PrintNamed(const std::vector<NamedValue>& inValues) {
    for (const auto& value : inValues) PrintValue(Quoted(value.code), value.name, value.value);
}

void PrintTerms(const std::vector<Term>& inTerms) {
    for (const auto& term : inTerms) PrintLine(Quoted(term.code), term.name, "", term.description);
}

void PrintEvent(const EventTerm& inEvent) {
    std::printf("\n  %s  event %s %s\n      %s\n", inEvent.name.c_str(),
                Quoted(inEvent.eventClass).c_str(), Quoted(inEvent.code).c_str(),
                inEvent.description.c_str());
    if (inEvent.direct.type != DescType(typeNull)) PrintValue("'----'", "", inEvent.direct);
    PrintNamed(inEvent.parameters);
    if (inEvent.reply.type != DescType(typeNull)) PrintValue("reply", "", inEvent.reply);
}

void PrintElement(const ElementTerm& inElement) {
    std::string forms;
    for (const OSType form : inElement.forms) forms += (forms.empty() ? "" : ", ") + Quoted(form);
    PrintLine(Quoted(inElement.elementClass), "elements", "", "by " + forms);
}

void PrintClass(const ClassTerm& inClass) {
    std::printf("\n  %s  class %s\n      %s\n", inClass.name.c_str(), Quoted(inClass.code).c_str(),
                inClass.description.c_str());
    PrintNamed(inClass.properties);
    for (const auto& element : inClass.elements) PrintElement(element);
}

void PrintSuite(const Suite& inSuite) {
    std::printf("%s  suite %s\n    %s\n", inSuite.name.c_str(), Quoted(inSuite.code).c_str(),
                inSuite.description.c_str());
    for (const auto& event : inSuite.events) PrintEvent(event);
    for (const auto& term : inSuite.classes) PrintClass(term);
    if (!inSuite.comparisons.empty()) std::printf("\n  comparisons\n");
    PrintTerms(inSuite.comparisons);
    for (const auto& enumeration : inSuite.enumerations) {
        std::printf("\n  enumeration %s\n", Quoted(enumeration.code).c_str());
        PrintTerms(enumeration.values);
    }
    std::printf("\n");
}

}  // namespace

void ShowDictionary(const std::string& inApplication, bool inJson) {
    const Suites suites = TerminologyOf(inApplication);
    if (inJson) return PrintJson(ListOf(suites));
    for (const auto& suite : suites) PrintSuite(suite);
}

}  // namespace cli
