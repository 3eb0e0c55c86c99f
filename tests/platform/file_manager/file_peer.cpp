// Another process for the tests: makes file specs of paths and paths of file specs, one request a
// run.
//   spec PATH               prints error, volume, parent, name in hexadecimal
//   path VOLUME PARENT HEX  prints error and path
//   alias FILE              prints error and path of the alias record in FILE
//   application VOLUME CREATOR  prints error and name from the desktop database
//   create, delete, lock VOLUME PARENT HEX           each prints the error
//   rename VOLUME PARENT HEX NAME
//   move VOLUME PARENT HEX FOLDER
//   search VOLUME CREATOR       prints the result and the names of a catalog search for files
//   allocate FOLDER         makes folders below FOLDER and asks for their numbers until killed,
//                           printing "number path" for each
#include <Carbon/Carbon.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <string>

namespace {

std::string BytesOfHex(const std::string& inHex) {
    std::string bytes;
    for (size_t i = 0; i + 1 < inHex.size(); i += 2) {
        bytes += char(std::stoi(inHex.substr(i, 2), nullptr, 16));
    }
    return bytes;
}

int PrintSpec(const char* inPath) {
    FSRef ref;
    FSSpec spec{};
    OSStatus error = FSPathMakeRef(reinterpret_cast<const UInt8*>(inPath), &ref, nullptr);
    if (error == noErr)
        error = FSGetCatalogInfo(&ref, kFSCatInfoNone, nullptr, nullptr, &spec, nullptr);
    std::printf("%d %d %d ", int(error), spec.vRefNum, int(spec.parID));
    for (int i = 1; i <= spec.name[0]; ++i) std::printf("%02x", spec.name[i]);
    std::printf("\n");
    return 0;
}

FSSpec MakeSpec(char** inVolume) {
    const std::string name = BytesOfHex(inVolume[2]);
    FSSpec spec{};
    spec.vRefNum = FSVolumeRefNum(std::atoi(inVolume[0]));
    spec.parID = std::atoi(inVolume[1]);
    spec.name[0] = UInt8(name.size());
    std::memcpy(spec.name + 1, name.data(), name.size());
    return spec;
}

int PrintPath(const FSSpec& inSpec) {
    FSRef ref;
    UInt8 path[4096] = "";
    OSStatus error = FSpMakeFSRef(&inSpec, &ref);
    if (error == noErr) error = FSRefMakePath(&ref, path, sizeof path);
    std::printf("%d %s\n", int(error), reinterpret_cast<const char*>(path));
    return 0;
}

int PrintAlias(const char* inFile) {
    std::ifstream file(inFile, std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(file), {}};
    Handle alias = nullptr;
    FSSpec spec{};
    Boolean wasChanged;
    OSErr error = PtrToHand(bytes.data(), &alias, Size(bytes.size()));
    if (error == noErr) error = ResolveAlias(nullptr, AliasHandle(alias), &spec, &wasChanged);
    FSRef ref;
    UInt8 path[4096] = "";
    if (error == noErr) error = FSpMakeFSRef(&spec, &ref);
    if (error == noErr) error = OSErr(FSRefMakePath(&ref, path, sizeof path));
    DisposeHandle(alias);
    std::printf("%d %s\n", int(error), reinterpret_cast<const char*>(path));
    return 0;
}

OSType CodeOf(const char* inText) {
    OSType code = 0;
    for (int i = 0; i < 4; ++i) code = code << 8 | UInt8(inText[i]);
    return code;
}

int PrintMatches(const char* inVolume, const char* inCreator) {
    FSSpec matches[100];
    CInfoPBRec values{}, masks{};
    values.hFileInfo.ioFlFndrInfo.fdCreator = CodeOf(inCreator);
    masks.hFileInfo.ioFlFndrInfo.fdCreator = 0xFFFFFFFF;
    masks.hFileInfo.ioFlAttrib = kioFlAttribDirMask;
    CSParam block{};
    block.ioVRefNum = FSVolumeRefNum(std::atoi(inVolume));
    block.ioMatchPtr = matches;
    block.ioReqMatchCount = 100;
    block.ioSearchBits = fsSBFlFndrInfo | fsSBFlAttrib;
    block.ioSearchInfo1 = &values;
    block.ioSearchInfo2 = &masks;
    std::printf("%d", int(PBCatSearchSync(&block)));
    for (SInt32 i = 0; i < block.ioActMatchCount; ++i) {
        std::printf(" %.*s", int(matches[i].name[0]), reinterpret_cast<char*>(matches[i].name) + 1);
    }
    std::printf("\n");
    return 0;
}

int PrintApplication(const char* inVolume, const char* inCreator) {
    DTPBRec block{};
    Str255 name = "";
    block.ioVRefNum = FSVolumeRefNum(std::atoi(inVolume));
    OSErr error = PBDTGetPath(&block);
    block.ioNamePtr = name;
    block.ioFileCreator = CodeOf(inCreator);
    if (error == noErr) error = PBDTGetAPPLSync(&block);
    std::printf("%d %.*s\n", int(error), int(name[0]), reinterpret_cast<char*>(name) + 1);
    return 0;
}

OSErr Rename(const FSSpec& inSpec, const std::string& inName) {
    const std::string name = char(inName.size()) + inName;
    return FSpRename(&inSpec, reinterpret_cast<const UInt8*>(name.c_str()));
}

OSErr Move(const FSSpec& inSpec, const char* inFolder) {
    return CatMove(inSpec.vRefNum, inSpec.parID, inSpec.name, std::atoi(inFolder), nullptr);
}

int PrintChange(const std::string& inCommand, const FSSpec& inSpec, const char* inArgument) {
    OSErr error = paramErr;
    if (inCommand == "create") error = FSpCreate(&inSpec, 'ttxt', 'TEXT', 0);
    if (inCommand == "delete") error = FSpDelete(&inSpec);
    if (inCommand == "lock") error = FSpSetFLock(&inSpec);
    if (inCommand == "rename" && inArgument) error = Rename(inSpec, inArgument);
    if (inCommand == "move" && inArgument) error = Move(inSpec, inArgument);
    std::printf("%d\n", int(error));
    return 0;
}

int AllocateForEver(const std::string& inFolder) {
    for (int i = 0;; ++i) {
        const auto folder = inFolder + "/" + std::to_string(getpid()) + "-" + std::to_string(i);
        const auto child = folder + "/child";
        if (mkdir(folder.c_str(), 0700) != 0 || mkdir(child.c_str(), 0700) != 0) return 1;
        FSRef ref;
        FSCatalogInfo info;
        if (FSPathMakeRef(reinterpret_cast<const UInt8*>(folder.c_str()), &ref, nullptr) != noErr ||
            FSGetCatalogInfo(&ref, kFSCatInfoNodeID, &info, nullptr, nullptr, nullptr) != noErr) {
            return 1;
        }
        std::printf("%u %s\n", info.nodeID, folder.c_str());
        std::fflush(stdout);
    }
}

}  // namespace

int main(int inCount, char** inArguments) {
    const std::string command = inCount > 2 ? inArguments[1] : "";
    if (command == "spec") return PrintSpec(inArguments[2]);
    if (command == "path" && inCount == 5) return PrintPath(MakeSpec(inArguments + 2));
    if (command == "alias") return PrintAlias(inArguments[2]);
    if (command == "application" && inCount == 4) {
        return PrintApplication(inArguments[2], inArguments[3]);
    }
    if (command == "search" && inCount == 4) return PrintMatches(inArguments[2], inArguments[3]);
    if (command == "allocate") return AllocateForEver(inArguments[2]);
    if (inCount >= 5) return PrintChange(command, MakeSpec(inArguments + 2), inArguments[5]);
    return 2;
}
