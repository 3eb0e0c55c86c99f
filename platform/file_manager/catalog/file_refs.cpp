// Owns the calls on references.
#include <Carbon/Files.h>
#include <Carbon/MacErrors.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>

#include "file_manager/catalog/catalog_info.h"
#include "file_manager/catalog/lookup.h"
#include "file_manager/catalog/names.h"
#include "file_manager/catalog/reference.h"
#include "posix/os_err.h"

namespace carbon {

namespace {

constexpr UInt32 kLongestUnicodeName = 255;

OSErr GetInfo(const FSRef& inRef, FSCatalogInfoBitmap inWhich, FSCatalogInfo* outInfo,
              HFSUniStr255* outName, FSSpec* outSpec, FSRef* outParent) {
    if (inWhich & ~kKnownInfo) return errFSBadInfoBitmap;
    if (!outInfo && inWhich != kFSCatInfoNone) return paramErr;
    const Catalog catalog;
    Objects& objects = *catalog;
    Object object;
    if (const OSErr error = objects.FindByRef(inRef, &object)) return error;
    if (outInfo) {
        const OSErr error = GetCatalogInfo(objects, object, inWhich, outInfo);
        if (error) return error;
    }
    if (outName) SetUnicodeName(object.diskName, outName);
    if (outSpec) *outSpec = object.spec;
    if (outParent) *outParent = objects.RefToParent(object);
    return noErr;
}

OSErr Compare(const FSRef& inFirst, const FSRef& inSecond) {
    const auto first = ReferenceFromRef(inFirst);
    const auto second = ReferenceFromRef(inSecond);
    if (!first || !second) return errFSBadFSRef;
    if (first->identity.IsSameAs(second->identity)) return noErr;
    return first->volume == second->volume ? OSErr(errFSRefsDifferent) : OSErr(diffVolErr);
}

// The object that a path means, links at its end followed too.
OSErr FollowLinks(const char* inPath, std::string* outPath) {
    char path[PATH_MAX];
    if (!realpath(inPath, path)) return OSErrFromErrno(errno);
    *outPath = path;
    return noErr;
}

OSErr MakeRefOfPath(const char* inPath, FSRef* outRef, Boolean* outIsFolder) {
    const Catalog catalog;
    Object object;
    OSErr error = catalog->FindByPath(inPath, &object);
    if (error == noErr && object.status.IsLink()) {
        std::string path;
        error = FollowLinks(inPath, &path);
        if (error == noErr) error = catalog->FindByPath(path, &object);
    }
    if (error != noErr) return error;
    *outRef = catalog->RefTo(object);
    if (outIsFolder) *outIsFolder = object.status.IsFolder();
    return noErr;
}

OSErr MakePath(const FSRef& inRef, UInt8* outPath, UInt32 inRoom) {
    Object object;
    if (const OSErr error = Catalog()->FindByRef(inRef, &object)) return error;
    if (object.path.size() >= inRoom) return pathTooLongErr;
    std::memcpy(outPath, object.path.c_str(), object.path.size() + 1);
    return noErr;
}

OSErr MakeRefByName(const FSRef& inParent, UInt32 inLength, const UniChar* inName, FSRef* outRef) {
    if (inLength == 0) return errFSMissingName;
    if (inLength > kLongestUnicodeName) return errFSNameTooLong;
    const Catalog catalog;
    Objects& objects = *catalog;
    Object object;
    if (const OSErr error = objects.FindByRef(inParent, &object)) return error;
    if (!object.status.IsFolder()) return errFSNotAFolder;
    Folder folder;
    if (const OSErr error = objects.AllFolders().FindByPath(object.path, &folder)) return error;
    const icu::UnicodeString text(reinterpret_cast<const char16_t*>(inName), SInt32(inLength));
    std::string name;
    text.toUTF8String(name);
    Entry entry;
    OSErr error = FindUnicodeEntry(folder, WithSeparatorsExchanged(name), &entry);
    if (error == noErr) error = objects.FindInFolder(folder, entry.diskName, &object);
    if (error == noErr) *outRef = objects.RefTo(object);
    return error;
}

}  // namespace

}  // namespace carbon

OSErr FSMakeFSRefUnicode(const FSRef* parentRef, UniCharCount nameLength, const UniChar* name,
                         TextEncoding, FSRef* newRef) {
    if (!parentRef || !newRef || (!name && nameLength > 0)) return paramErr;
    return carbon::MakeRefByName(*parentRef, nameLength, name, newRef);
}

OSErr FSCompareFSRefs(const FSRef* ref1, const FSRef* ref2) {
    return ref1 && ref2 ? carbon::Compare(*ref1, *ref2) : OSErr(paramErr);
}

OSErr FSGetCatalogInfo(const FSRef* ref, FSCatalogInfoBitmap whichInfo, FSCatalogInfo* catalogInfo,
                       HFSUniStr255* outName, FSSpec* fsSpec, FSRef* parentRef) {
    if (!ref) return paramErr;
    return carbon::GetInfo(*ref, whichInfo, catalogInfo, outName, fsSpec, parentRef);
}

OSStatus FSPathMakeRef(const UInt8* path, FSRef* ref, Boolean* isDirectory) {
    if (!path || !ref) return paramErr;
    return carbon::MakeRefOfPath(reinterpret_cast<const char*>(path), ref, isDirectory);
}

OSStatus FSRefMakePath(const FSRef* ref, UInt8* path, UInt32 maxPathSize) {
    return ref && path ? carbon::MakePath(*ref, path, maxPathSize) : OSStatus(paramErr);
}
