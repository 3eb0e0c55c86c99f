// A temporary folder mounted as a volume, for as long as the object lives.
#pragma once

#include <Carbon/Carbon.h>
#include <Platform/Platform.h>

#include <filesystem>
#include <string>

class MountedVolume {
  public:
    // `inOptions` are the kPlatformMount... bits. Two at once need two names.
    explicit MountedVolume(OptionBits inOptions = 0, const std::string& inName = "Disk");
    ~MountedVolume();
    MountedVolume(const MountedVolume&) = delete;
    MountedVolume& operator=(const MountedVolume&) = delete;

    FSVolumeRefNum Number() const { return mNumber; }
    const std::filesystem::path& Root() const { return mRoot; }

    // The file spec of what a partial path (":Folder:File", "File") below the root names, which
    // need not exist.
    FSSpec Spec(const std::string& inPath) const;
    // The ID of a folder below the root.
    SInt32 DirID(const std::string& inPath) const;

    // Makes a file or a folder with what is missing on the way; the path is Linux', below the root.
    FSSpec MakeFile(const std::string& inPath, const std::string& inData = "") const;
    SInt32 MakeFolder(const std::string& inPath) const;
    // The same with type and creator.
    FSSpec MakeFile(const std::string& inPath, OSType inCreator, OSType inType,
                    const std::string& inData = "") const;
    // An application of a creator whose 'vers' resource begins with a number.
    FSSpec MakeApplication(const std::string& inPath, OSType inCreator, UInt32 inVersion) const;

    std::string Read(const std::string& inPath) const;
    bool Has(const std::string& inPath) const;

  private:
    std::filesystem::path mRoot;
    FSVolumeRefNum mNumber = 0;
};

// Adds a resource to a file, which is given a resource fork if it has none.
void AddResourceTo(const FSSpec& inFile, ResType inType, SInt16 inID, const std::string& inData);
// Sets type and creator of a file.
void Sign(const FSSpec& inFile, OSType inCreator, OSType inType);
// The four bytes of a number as a resource or a file holds it.
std::string BigEndianText(UInt32 inNumber);

// Tells the desktop database of an application's volume about it.
void RegisterApplication(const FSSpec& inApplication, OSType inCreator);
