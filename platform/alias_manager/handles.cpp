// Owns reading, making and renewing alias records in handles.
#include "alias_manager/handles.h"

#include <Carbon/MacErrors.h>
#include <Carbon/MacMemory.h>

#include <algorithm>
#include <cstring>

#include "alias_manager/alias_bytes.h"
#include "alias_manager/describing.h"

namespace carbon {

namespace {

std::span<const UInt8> BytesOf(AliasHandle inAlias) {
    if (!inAlias || !*inAlias) return {};
    const Size size = GetHandleSize(Handle(inAlias));
    return {reinterpret_cast<const UInt8*>(*inAlias), size_t(std::max<Size>(size, 0))};
}

constexpr UInt32 RulesOf(const FSSpec* inFrom, UInt32 inFlags) {
    const UInt32 kept = inFlags & (kARMTryFileIDFirst | kARMMountVol | kARMNoUI);
    return kept | kARMSearch | (inFrom ? UInt32(kARMSearchRelFirst) : 0);
}

// The record of a minimal alias stays as it was made.
OSErr Renew(Objects& ioObjects, const AliasContents& inContents, const Object* inFrom,
            const Object& inTarget, AliasHandle ioAlias, Boolean* outWasChanged) {
    if (inContents.IsMinimal()) return noErr;
    AliasContents fresh;
    const bool isOnOneVolume = inFrom && inFrom->spec.vRefNum == inTarget.spec.vRefNum;
    const OSErr error =
        DescribeForAlias(ioObjects, isOnOneVolume ? inFrom : nullptr, inTarget, &fresh);
    if (error) return error;
    if (!isOnOneVolume) {
        fresh.levelsUp = inContents.levelsUp;
        fresh.levelsDown = inContents.levelsDown;
    }
    fresh.userType = inContents.userType;
    fresh.zone = inContents.zone;
    fresh.server = inContents.server;
    return ReplaceRecord(fresh, ioAlias, outWasChanged);
}

}  // namespace

std::optional<AliasContents> ContentsOf(AliasHandle inAlias) {
    return AliasFromBytes(BytesOf(inAlias));
}

OSErr MakeHandle(const AliasContents& inContents, AliasHandle* outAlias) {
    const auto bytes = BytesOfAlias(inContents);
    Handle handle = nullptr;
    const OSErr error = PtrToHand(bytes.data(), &handle, Size(bytes.size()));
    *outAlias = error ? nullptr : AliasHandle(handle);
    return error;
}

OSErr ReplaceRecord(const AliasContents& inContents, AliasHandle ioAlias, Boolean* outWasChanged) {
    const auto old = BytesOf(ioAlias);
    const auto oldSize = std::min(old.size(), size_t(GetAliasSize(ioAlias)));
    auto bytes = BytesOfAlias(inContents);
    if (std::equal(bytes.begin(), bytes.end(), old.begin(), old.begin() + SInt64(oldSize))) {
        return noErr;
    }
    bytes.insert(bytes.end(), old.begin() + SInt64(oldSize), old.end());
    // A smaller block is given back only when the bytes are in it.
    if (bytes.size() > old.size()) SetHandleSize(Handle(ioAlias), Size(bytes.size()));
    if (bytes.size() > old.size() && MemError() != noErr) return memFullErr;
    std::memcpy(*ioAlias, bytes.data(), bytes.size());
    if (bytes.size() < old.size()) SetHandleSize(Handle(ioAlias), Size(bytes.size()));
    *outWasChanged = true;
    return noErr;
}

OSErr FindFrom(Objects& ioObjects, const FSSpec* inFrom, Object* outObject) {
    return inFrom ? ioObjects.FindBySpec(*inFrom, outObject) : OSErr(noErr);
}

OSErr ResolveHandle(const FSSpec* inFrom, UInt32 inFlags, AliasHandle ioAlias, FSSpec* outTarget,
                    Boolean* outWasChanged) {
    *outWasChanged = false;
    const auto contents = ContentsOf(ioAlias);
    if (!contents) return paramErr;
    const Catalog catalog;
    Object from;
    // Where the way would begin may be gone; the other ways are still there.
    const bool hasFrom = inFrom && FindFrom(*catalog, inFrom, &from) == noErr;
    AliasMatches matches;
    const UInt32 rules = RulesOf(inFrom, inFlags);
    const Object* start = hasFrom ? &from : nullptr;
    const OSErr error = FindMatches(*catalog, *contents, start, rules, 1, &matches);
    if (error == fnfErr) *outTarget = matches.missing.spec;
    if (error) return error;
    *outTarget = matches.objects.front().spec;
    return Renew(*catalog, *contents, start, matches.objects.front(), ioAlias, outWasChanged);
}

OSErr SpecOfRef(const FSRef* inRef, FSSpec* outSpec) {
    if (!inRef) return noErr;
    return FSGetCatalogInfo(inRef, kFSCatInfoNone, nullptr, nullptr, outSpec, nullptr);
}

OSErr PathFromAlias(std::span<const UInt8> inBytes, std::string* outPath) {
    const auto contents = AliasFromBytes(inBytes);
    if (!contents) return paramErr;
    AliasMatches matches;
    const OSErr error = FindMatches(*Catalog(), *contents, nullptr, kARMSearch, 1, &matches);
    if (error == noErr) *outPath = matches.objects.front().path;
    return error;
}

OSErr AliasFromPath(const std::string& inPath, std::vector<UInt8>* outBytes) {
    const Catalog catalog;
    Object object;
    AliasContents contents;
    OSErr error = catalog->FindByPath(inPath, &object);
    if (error == noErr) error = DescribeForAlias(*catalog, nullptr, object, &contents);
    if (error == noErr) *outBytes = BytesOfAlias(contents);
    return error;
}

}  // namespace carbon
