// Owns the call that lists what an alias may mean.
#include <Carbon/Aliases.h>
#include <Carbon/Files.h>
#include <Carbon/MacErrors.h>

#include <algorithm>

#include "alias_manager/describing.h"
#include "alias_manager/handles.h"
#include "alias_manager/volume_search.h"

namespace carbon {

namespace {

struct Filter {
    AliasFilterUPP procedure;
    void* data;
};

// The filter may make calls of its own, so no catalog is held. It sees a file as PBGetCatInfo does.
bool IsLeftOut(const FSSpec& inSpec, const Filter& inFilter, Boolean* outQuit) {
    if (!inFilter.procedure) return false;
    FSSpec spec = inSpec;
    CInfoPBRec info{};
    info.hFileInfo.ioNamePtr = spec.name;
    info.hFileInfo.ioVRefNum = spec.vRefNum;
    info.hFileInfo.ioDirID = spec.parID;
    if (PBGetCatInfoSync(&info) != noErr) return true;
    return inFilter.procedure(&info, outQuit, static_cast<Ptr>(inFilter.data));
}

SInt16 Choose(const std::vector<Object>& inFound, SInt16 inRoom, const Filter& inFilter,
              FSSpec* outList) {
    SInt16 count = 0;
    Boolean quits = false;
    for (const auto& object : inFound) {
        if (count == inRoom || quits) break;
        if (!IsLeftOut(object.spec, inFilter, &quits)) outList[count++] = object.spec;
    }
    return count;
}

// Whether the best match is not what the record says word for word.
bool IsOutOfDate(Objects& ioObjects, const AliasContents& inContents, const Object& inBest) {
    AliasContents fresh;
    if (DescribeForAlias(ioObjects, nullptr, inBest, &fresh) != noErr) return true;
    fresh.userType = inContents.userType;
    fresh.levelsUp = inContents.levelsUp;
    fresh.levelsDown = inContents.levelsDown;
    fresh.zone = inContents.zone;
    fresh.server = inContents.server;
    return !inContents.IsMinimal() && BytesOfAlias(fresh) != BytesOfAlias(inContents);
}

constexpr size_t kMost = 1000;

OSErr FindFast(const FSSpec* inFrom, UInt32 inRules, const AliasContents& inContents,
               AliasMatches* outMatches) {
    const Catalog catalog;
    Object from;
    const bool hasFrom = inFrom && FindFrom(*catalog, inFrom, &from) == noErr;
    return FindMatches(*catalog, inContents, hasFrom ? &from : nullptr, inRules, kMost, outMatches);
}

void AddUnlessKnown(const Object& inObject, AliasMatches* ioMatches) {
    auto& objects = ioMatches->objects;
    const bool isKnown = std::any_of(objects.begin(), objects.end(), [&](const auto& inOther) {
        return inOther.path == inObject.path;
    });
    if (!isKnown) objects.push_back(inObject);
}

// Behind those that were found in their likely places: what looks like it anywhere else.
void AddFromWholeVolumes(const AliasContents& inContents, AliasMatches* ioMatches) {
    for (const auto volume : ioMatches->volumes) {
        const auto specs = LookalikesOnVolume(volume, inContents, kMost);
        const Catalog catalog;
        for (const auto& spec : specs) {
            Object object;
            if (ioMatches->objects.size() == kMost) return;
            if (catalog->FindBySpec(spec, &object) == noErr) AddUnlessKnown(object, ioMatches);
        }
    }
}

OSErr Find(const FSSpec* inFrom, UInt32 inRules, const AliasContents& inContents,
           AliasMatches* outMatches, Boolean* outNeedsUpdate) {
    const OSErr error = FindFast(inFrom, inRules, inContents, outMatches);
    if (inRules & kARMSearchMore) AddFromWholeVolumes(inContents, outMatches);
    if (outMatches->objects.empty()) return error;
    *outNeedsUpdate = IsOutOfDate(*Catalog(), inContents, outMatches->objects.front());
    return noErr;
}

OSErr Match(const FSSpec* inFrom, UInt32 inRules, AliasHandle inAlias, SInt16* ioCount,
            FSSpec* outList, Boolean* outNeedsUpdate, const Filter& inFilter) {
    const SInt16 room = std::exchange(*ioCount, SInt16(0));
    *outNeedsUpdate = false;
    const auto contents = ContentsOf(inAlias);
    constexpr UInt32 kWays = kARMSearch | kARMSearchMore | kARMSearchRelFirst;
    if (!contents || room < 1 || !(inRules & kWays)) return paramErr;
    AliasMatches matches;
    if (const OSErr error = Find(inFrom, inRules, *contents, &matches, outNeedsUpdate)) {
        return error;
    }
    *ioCount = Choose(matches.objects, room, inFilter, outList);
    return *ioCount == 0 ? OSErr(fnfErr) : OSErr(noErr);
}

}  // namespace

}  // namespace carbon

OSErr MatchAlias(const FSSpec* fromFile, UInt32 rulesMask, AliasHandle alias, SInt16* aliasCount,
                 FSSpec* aliasList, Boolean* needsUpdate, AliasFilterUPP aliasFilter,
                 void* yourDataPtr) {
    if (!alias || !aliasCount || !aliasList || !needsUpdate) return paramErr;
    return carbon::Match(fromFile, rulesMask, alias, aliasCount, aliasList, needsUpdate,
                         {aliasFilter, yourDataPtr});
}
