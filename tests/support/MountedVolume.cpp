// Mounting temporary folders, and filling them through the real managers.
#include "support/MountedVolume.h"

#include <cstdlib>
#include <fstream>
#include <iterator>

#include "support/PascalString.h"
#include "vantor/foundation/LException.h"

namespace {

namespace fs = std::filesystem;

FSSpec SpecOf(const fs::path& inPath) {
    FSRef ref;
    FSSpec spec;
    ThrowIfError(FSPathMakeRef(reinterpret_cast<const UInt8*>(inPath.c_str()), &ref, nullptr));
    ThrowIfError(FSGetCatalogInfo(&ref, kFSCatInfoNone, nullptr, nullptr, &spec, nullptr));
    return spec;
}

}  // namespace

MountedVolume::MountedVolume(OptionBits inOptions, const std::string& inName) {
    std::string pattern = "/tmp/vantor-volume-XXXXXX";
    mRoot = mkdtemp(pattern.data());
    ThrowIfError(
        PlatformMountFolderWithOptions(mRoot.c_str(), inName.c_str(), inOptions, &mNumber));
}

MountedVolume::~MountedVolume() {
    PlatformUnmountFolder(mNumber);
    std::error_code ignored;
    fs::remove_all(mRoot, ignored);
}

FSSpec MountedVolume::Spec(const std::string& inPath) const {
    FSSpec spec;
    const OSErr err = FSMakeFSSpec(mNumber, fsRtDirID, PString(inPath), &spec);
    if (err != fnfErr) ThrowIfError(err);
    return spec;
}

SInt32 MountedVolume::DirID(const std::string& inPath) const {
    CInfoPBRec info = {};
    FSSpec folder = Spec(inPath);
    info.dirInfo.ioNamePtr = folder.name;
    info.dirInfo.ioVRefNum = mNumber;
    info.dirInfo.ioDrDirID = folder.parID;
    ThrowIfError(PBGetCatInfoSync(&info));
    return info.dirInfo.ioDrDirID;
}

FSSpec MountedVolume::MakeFile(const std::string& inPath, const std::string& inData) const {
    fs::create_directories((mRoot / inPath).parent_path());
    std::ofstream(mRoot / inPath, std::ios::binary) << inData;
    return SpecOf(mRoot / inPath);
}

SInt32 MountedVolume::MakeFolder(const std::string& inPath) const {
    fs::create_directories(mRoot / inPath);
    FSRef ref;
    FSCatalogInfo info;
    const auto path = mRoot / inPath;
    ThrowIfError(FSPathMakeRef(reinterpret_cast<const UInt8*>(path.c_str()), &ref, nullptr));
    ThrowIfError(FSGetCatalogInfo(&ref, kFSCatInfoNodeID, &info, nullptr, nullptr, nullptr));
    return static_cast<SInt32>(info.nodeID);
}

FSSpec MountedVolume::MakeFile(const std::string& inPath, OSType inCreator, OSType inType,
                               const std::string& inData) const {
    const FSSpec file = MakeFile(inPath, inData);
    Sign(file, inCreator, inType);
    return file;
}

FSSpec MountedVolume::MakeApplication(const std::string& inPath, OSType inCreator,
                                      UInt32 inVersion) const {
    const FSSpec file = MakeFile(inPath, inCreator, 'APPL');
    AddResourceTo(file, 'vers', 1, BigEndianText(inVersion) + std::string("\0\0\0\0", 4));
    return file;
}

std::string MountedVolume::Read(const std::string& inPath) const {
    std::ifstream file(mRoot / inPath, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

bool MountedVolume::Has(const std::string& inPath) const {
    return fs::exists(fs::symlink_status(mRoot / inPath));
}

void AddResourceTo(const FSSpec& inFile, ResType inType, SInt16 inID, const std::string& inData) {
    FInfo info;
    ThrowIfError(FSpGetFInfo(&inFile, &info));
    FSpCreateResFile(&inFile, info.fdCreator, info.fdType, smRoman);
    if (ResError() != dupFNErr) ThrowIfError(ResError());
    const SInt16 before = CurResFile();
    const SInt16 file = FSpOpenResFile(&inFile, fsRdWrPerm);
    ThrowIfError(ResError());
    Handle data = nullptr;
    ThrowIfError(PtrToHand(inData.data(), &data, static_cast<Size>(inData.size())));
    AddResource(data, inType, inID, nullptr);
    ThrowIfError(ResError());
    CloseResFile(file);
    ThrowIfError(ResError());
    UseResFile(before);
}

void Sign(const FSSpec& inFile, OSType inCreator, OSType inType) {
    FInfo info;
    ThrowIfError(FSpGetFInfo(&inFile, &info));
    info.fdCreator = inCreator;
    info.fdType = inType;
    ThrowIfError(FSpSetFInfo(&inFile, &info));
}

std::string BigEndianText(UInt32 inNumber) {
    const UInt32 number = EndianU32_NtoB(inNumber);
    return {reinterpret_cast<const char*>(&number), sizeof number};
}

void RegisterApplication(const FSSpec& inApplication, OSType inCreator) {
    FSSpec application = inApplication;
    DTPBRec block = {};
    block.ioVRefNum = application.vRefNum;
    ThrowIfError(PBDTGetPath(&block));
    block.ioNamePtr = application.name;
    block.ioDirID = application.parID;
    block.ioFileCreator = inCreator;
    ThrowIfError(PBDTAddAPPLSync(&block));
}
