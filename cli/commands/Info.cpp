// Owns `vantor info`: what the catalog and the desktop database know about a file or folder.
#include <array>
#include <cstdio>
#include <cstring>
#include <ctime>

#include "Commands.h"
#include "Failure.h"
#include "Json.h"
#include "Output.h"
#include "Specs.h"

namespace cli {
namespace {

constexpr SInt64 kUnixEpoch = 2082844800;  // seconds from 1904 to 1970

struct Facts {
    FSCatalogInfo catalog{};
    FInfo finder{};  // a folder's record has the flags in the same place
    std::string name, comment;
    bool IsFolder() const { return catalog.nodeFlags & kFSNodeIsDirectoryMask; }
    bool IsLocked() const { return catalog.nodeFlags & kFSNodeLockedMask; }
};

// Empty also where the volume has no desktop database to ask.
std::string CommentOf(FSSpec inSpec) {
    DTPBRec block = {};
    block.ioVRefNum = inSpec.vRefNum;
    if (PBDTGetPath(&block) != noErr) return {};
    Str255 comment = "";
    block.ioNamePtr = inSpec.name;
    block.ioDirID = inSpec.parID;
    block.ioDTBuffer = reinterpret_cast<Ptr>(comment + 1);
    block.ioDTReqCount = sizeof comment - 1;
    const OSErr error = PBDTGetCommentSync(&block);
    if (error == afpItemNotFound) return {};
    ThrowIfFailed(error, "read the comment");
    comment[0] = static_cast<unsigned char>(block.ioDTActCount);
    return MacRomanText(comment);
}

Facts FactsOf(const FSSpec& inSpec) {
    Facts facts;
    FSRef ref;
    ThrowIfFailed(FSpMakeFSRef(&inSpec, &ref), "find the file");
    ThrowIfFailed(
        FSGetCatalogInfo(&ref, kFSCatInfoGettableInfo, &facts.catalog, nullptr, nullptr, nullptr),
        "read the catalog");
    std::memcpy(&facts.finder, facts.catalog.finderInfo, sizeof facts.finder);
    facts.name = MacRomanText(inSpec.name);
    facts.comment = CommentOf(inSpec);
    return facts;
}

// Local time with its offset, or nothing for a date that was never set.
std::string DateText(const UTCDateTime& inDate) {
    const UInt64 seconds = UInt64{inDate.highSeconds} << 32 | inDate.lowSeconds;
    if (seconds == 0) return {};
    const auto time = static_cast<time_t>(SInt64(seconds) - kUnixEpoch);
    struct tm local = {};
    char text[64] = "";
    if (localtime_r(&time, &local)) std::strftime(text, sizeof text, "%F %T %z", &local);
    return text;
}

std::vector<std::string> FlagsOf(UInt16 inFlags) {
    static constexpr std::array<std::pair<UInt16, const char*>, 9> kNames = {
        {{kIsOnDesk, "on desktop"},
         {kIsShared, "shared"},
         {kHasBeenInited, "inited"},
         {kHasCustomIcon, "custom icon"},
         {kIsStationery, "stationery"},
         {kNameLocked, "name locked"},
         {kHasBundle, "bundle"},
         {kIsInvisible, "invisible"},
         {kIsAlias, "alias"}}};
    std::vector<std::string> names;
    for (const auto& [bit, name] : kNames) {
        if (inFlags & bit) names.emplace_back(name);
    }
    return names;
}

// Most files have neither a type nor a creator.
std::string CodeText(OSType inCode) {
    return inCode == 0 ? std::string() : Code(inCode);
}

Json TextOrNull(const std::string& inText) {
    return inText.empty() ? Json() : Json(inText);
}

Json AsJson(const std::string& inPath, const Facts& inFacts) {
    const auto& catalog = inFacts.catalog;
    Json json = {{"path", inPath},
                 {"name", inFacts.name},
                 {"kind", inFacts.IsFolder() ? "folder" : "file"},
                 {"id", UInt32(catalog.nodeID)},
                 {"parent", UInt32(catalog.parentDirID)},
                 {"volume", SInt16(catalog.volume)}};
    if (inFacts.IsFolder()) {
        json["items"] = UInt32(catalog.valence);
    } else {
        json["type"] = TextOrNull(CodeText(inFacts.finder.fdType));
        json["creator"] = TextOrNull(CodeText(inFacts.finder.fdCreator));
        json["data_length"] = UInt64(catalog.dataLogicalSize);
        json["resource_length"] = UInt64(catalog.rsrcLogicalSize);
    }
    json["flags"] = FlagsOf(inFacts.finder.fdFlags);
    json["locked"] = inFacts.IsLocked();
    json["created"] = TextOrNull(DateText(catalog.createDate));
    json["modified"] = TextOrNull(DateText(catalog.contentModDate));
    json["backed_up"] = TextOrNull(DateText(catalog.backupDate));
    json["comment"] = inFacts.comment;
    return json;
}

void PrintRow(const char* inWhat, const std::string& inText) {
    std::printf("  %-10s %s\n", inWhat, inText.empty() ? "-" : inText.c_str());
}

std::string Joined(const std::vector<std::string>& inWords) {
    std::string text;
    for (const auto& word : inWords) text += (text.empty() ? "" : ", ") + word;
    return text;
}

std::string LengthText(UInt64 inLength) {
    return Grouped(SInt64(inLength)) + " bytes";
}

void PrintFacts(const Facts& inFacts) {
    const auto& catalog = inFacts.catalog;
    std::printf("%s\n", inFacts.name.c_str());
    if (inFacts.IsFolder()) {
        PrintRow("Folder", Grouped(catalog.valence) + (catalog.valence == 1 ? " item" : " items"));
    } else {
        PrintRow("Type", CodeText(inFacts.finder.fdType));
        PrintRow("Creator", CodeText(inFacts.finder.fdCreator));
        PrintRow("Data", LengthText(catalog.dataLogicalSize));
        PrintRow("Resources", LengthText(catalog.rsrcLogicalSize));
    }
    auto flags = FlagsOf(inFacts.finder.fdFlags);
    if (inFacts.IsLocked()) flags.insert(flags.begin(), "locked");
    PrintRow("Flags", Joined(flags));
    PrintRow("Created", DateText(catalog.createDate));
    PrintRow("Modified", DateText(catalog.contentModDate));
    PrintRow("Backed up", DateText(catalog.backupDate));
    PrintRow("ID", std::to_string(catalog.nodeID) + " in " + std::to_string(catalog.parentDirID) +
                       " on volume " + std::to_string(catalog.volume));
    PrintRow("Comment", inFacts.comment);
}

}  // namespace

void ShowInfo(const std::string& inPath, bool inJson) {
    const Facts facts = FactsOf(SpecFor(inPath));
    if (inJson)
        PrintJson(AsJson(inPath, facts));
    else
        PrintFacts(facts);
}

}  // namespace cli
