// Knows the types that every definition may name without declaring them.
#include "DefinitionTypes.h"

#include <string_view>
#include <utility>

namespace cli {
namespace {

constexpr std::pair<const char*, OSType> kKnown[] = {{"any", typeWildCard},
                                                     {"alias", typeAlias},
                                                     {"boolean", typeBoolean},
                                                     {"date", 'ldt '},
                                                     {"double integer", typeSInt64},
                                                     {"file", 'file'},
                                                     {"integer", typeSInt32},
                                                     {"list", typeAEList},
                                                     {"location specifier", typeInsertionLoc},
                                                     {"missing value", 'msng'},
                                                     {"number", 'nmbr'},
                                                     {"point", 'QDpt'},
                                                     {"property", typeProperty},
                                                     {"real", typeIEEE64BitFloatingPoint},
                                                     {"record", typeAERecord},
                                                     {"rectangle", 'qdrt'},
                                                     {"specifier", typeObjectSpecifier},
                                                     {"string", typeChar},
                                                     {"text", 'ctxt'},
                                                     {"type", typeType},
                                                     {"unsigned integer", typeUInt32}};
constexpr std::string_view kListOf = "list of ";

}  // namespace

void DefinitionTypes::Declare(const std::string& inName, OSType inCode, bool inIsEnumeration) {
    const UInt16 flags = inIsEnumeration ? ValueTerm::kEnumerated : 0;
    mDeclared.insert({inName, {inCode, flags}});
}

ValueType DefinitionTypes::Find(const SourceNode& inUser, const std::string& inName) {
    std::string_view name = inName;
    UInt16 flags = 0;
    while (name.starts_with(kListOf)) {
        name.remove_prefix(kListOf.size());
        flags = ValueTerm::kList;
    }
    ValueType type = FindItem(inUser, std::string(name));
    type.flags = static_cast<UInt16>(type.flags | flags);
    return type;
}

ValueType DefinitionTypes::FindItem(const SourceNode& inUser, const std::string& inName) {
    if (const auto found = mDeclared.find(inName); found != mDeclared.end()) return found->second;
    for (const auto& [name, code] : kKnown)
        if (inName == name) return {code, 0};
    mNotes.push_back(inUser.file->Place(inUser.node) + ": nothing is called '" + inName + "'");
    return mDeclared[inName] = {};
}

}  // namespace cli
