// Owns `vantor find`: the files of a volume by creator, type and name.
#include <cstdio>

#include "Codes.h"
#include "Commands.h"
#include "Failure.h"
#include "Json.h"
#include "Output.h"
#include "vantor/files/CatalogSearch.h"
#include "vantor/files/VolumeInfo.h"

namespace cli {
namespace {

constexpr SInt32 kBatch = 256;  // files asked for at a time

struct PascalText {
    Str255 bytes = "";
};

PascalText InPascal(const std::string& inText, const char* inWhat) {
    PascalText result;
    const CFStringRef string =
        CFStringCreateWithCString(nullptr, inText.c_str(), kCFStringEncodingUTF8);
    const bool fits =
        string != nullptr && CFStringGetPascalString(string, result.bytes, sizeof result.bytes,
                                                     kCFStringEncodingMacRoman);
    if (string != nullptr) CFRelease(string);
    if (!fits) throw Failure(std::string(inWhat) + " cannot be written in MacRoman", bdNamErr);
    return result;
}

// An empty one is any.
OSType CodeOf(const std::string& inText) {
    return inText.empty() ? 0 : CodeNamed(inText);
}

// By the volume's name, else as the volume that a path lies on.
FSVolumeRefNum VolumeOf(const std::string& inNameOrPath) {
    constexpr FSVolumeRefNum kByNameAlone = -32768;
    FSVolumeRefNum number = 0;
    const bool isName = inNameOrPath.find('/') == std::string::npos;
    if (isName && DetermineVRefNum(InPascal(inNameOrPath + ":", "This name").bytes, kByNameAlone,
                                   &number) == noErr)
        return number;
    FSRef ref;
    FSSpec spec;
    OSStatus status =
        FSPathMakeRef(reinterpret_cast<const UInt8*>(inNameOrPath.c_str()), &ref, nullptr);
    if (status == noErr)
        status = FSGetCatalogInfo(&ref, kFSCatInfoNone, nullptr, nullptr, &spec, nullptr);
    if (status != noErr)
        throw Failure("There is no volume or folder " + inNameOrPath, nsvErr, kBadSource);
    return spec.vRefNum;
}

// The next files, false when there will be no more.
bool NextFiles(const FindRequest& inRequest, FSVolumeRefNum inVolume, bool inFirst,
               std::vector<FSSpec>& outFiles) {
    outFiles.resize(kBatch);
    SInt32 count = 0;
    const OSErr err =
        inRequest.name.empty()
            ? CreatorTypeFileSearch(nullptr, inVolume, CodeOf(inRequest.creator),
                                    CodeOf(inRequest.type), outFiles.data(), kBatch, &count,
                                    inFirst)
            : NameFileSearch(nullptr, inVolume, InPascal(inRequest.name, "This name").bytes,
                             outFiles.data(), kBatch, &count, inFirst, true);
    if (err != eofErr) ThrowIfFailed(err, "search the volume");
    outFiles.resize(static_cast<std::size_t>(count));
    return err == noErr;
}

// Empty for a file that is gone since it was found.
std::string PathOf(const FSSpec& inFile) {
    FSRef ref;
    char path[4096] = "";
    if (FSpMakeFSRef(&inFile, &ref) != noErr) return {};
    const OSStatus status = FSRefMakePath(&ref, reinterpret_cast<UInt8*>(path), sizeof path);
    return status == noErr ? path : std::string();
}

// What a search by name has not looked at.
bool Suits(const FindRequest& inRequest, const FInfo& inInfo) {
    const OSType creator = CodeOf(inRequest.creator), type = CodeOf(inRequest.type);
    return (creator == 0 || inInfo.fdCreator == creator) && (type == 0 || inInfo.fdType == type);
}

void Show(const FindRequest& inRequest, const FSSpec& inFile, Json& ioAll) {
    FInfo info;
    const std::string path = PathOf(inFile);
    if (path.empty() || FSpGetFInfo(&inFile, &info) != noErr || !Suits(inRequest, info)) return;
    const std::string creator = Code(info.fdCreator), type = Code(info.fdType);
    if (inRequest.json)
        ioAll.push_back({{"path", path}, {"creator", creator}, {"type", type}});
    else
        std::printf("%-4s  %-4s  %s\n", creator.c_str(), type.c_str(), path.c_str());
}

}  // namespace

void Find(const FindRequest& inRequest) {
    if (inRequest.creator.empty() && inRequest.type.empty() && inRequest.name.empty())
        throw Failure("Say what to look for: --creator, --type or --name", paramErr, kBadUsage);
    const FSVolumeRefNum volume = VolumeOf(inRequest.volume);
    Json all = Json::array();
    std::vector<FSSpec> files;
    for (bool isFirst = true, goesOn = true; goesOn; isFirst = false) {
        goesOn = NextFiles(inRequest, volume, isFirst, files);
        for (const FSSpec& file : files) Show(inRequest, file, all);
    }
    if (inRequest.json) PrintJson(all);
}

}  // namespace cli
