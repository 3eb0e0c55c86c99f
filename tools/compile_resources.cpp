// Makes a resource file, in the data fork, of resources written down as text.
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iostream>

#include "ResourceText.h"

namespace {

namespace fs = std::filesystem;

void ThrowIfRefused(OSErr inError, const char* inWhat) {
    if (inError != noErr)
        throw std::runtime_error(std::string(inWhat) + " (" + std::to_string(inError) + ")");
}

FSRef NewResourceFile(const fs::path& inPath) {
    FSRef folder, file;
    const std::string parent = inPath.parent_path().string();
    const std::u16string name = inPath.filename().u16string();
    ThrowIfRefused(
        OSErr(FSPathMakeRef(reinterpret_cast<const UInt8*>(parent.c_str()), &folder, nullptr)),
        "no such folder");
    ThrowIfRefused(FSCreateResourceFile(&folder, static_cast<UniCharCount>(name.size()),
                                        reinterpret_cast<const UniChar*>(name.data()),
                                        kFSCatInfoNone, nullptr, 0, nullptr, &file, nullptr),
                   "cannot make the file");
    return file;
}

void Add(const DescribedResource& inResource) {
    Handle handle = nullptr;
    Str255 name = {static_cast<unsigned char>(inResource.name.size())};
    std::copy(inResource.name.begin(), inResource.name.end(), name + 1);
    ThrowIfRefused(PtrToHand(inResource.data.data(), &handle, Size(inResource.data.size())),
                   "no memory");
    AddResource(handle, inResource.type, inResource.id, name);
    ThrowIfRefused(ResError(), "cannot add a resource");
    WriteResource(handle);
    SetResAttrs(handle, inResource.attributes);
}

void Write(const fs::path& inPath, const std::vector<DescribedResource>& inResources) {
    const FSRef file = NewResourceFile(inPath);
    ResFileRefNum number = kResFileNotOpened;
    ThrowIfRefused(FSOpenResourceFile(&file, 0, nullptr, fsRdWrPerm, &number), "cannot open");
    for (const auto& resource : inResources) Add(resource);
    CloseResFile(number);
    ThrowIfRefused(ResError(), "cannot write");
}

void Compile(const std::string& inText, const fs::path& inFile) {
    std::ifstream text(inText);
    if (!text) throw std::runtime_error(" cannot be read");
    const auto resources = ReadResourceText(text);
    const fs::path unfinished = inFile.string() + ".new";
    fs::remove(unfinished);
    Write(unfinished, resources);
    fs::rename(unfinished, inFile);
}

}  // namespace

int main(int inCount, char** inWords) {
    if (inCount != 3) {
        std::cerr << "usage: compile_resources TEXT FILE\n";
        return 2;
    }
    try {
        Compile(inWords[1], fs::absolute(inWords[2]));
    } catch (const std::exception& mistake) {
        std::cerr << inWords[1] << ':' << mistake.what() << '\n';
        return 1;
    }
    return 0;
}
