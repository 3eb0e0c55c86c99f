// A bundle made of files in a temporary folder.
#pragma once

#include <filesystem>
#include <fstream>
#include <string>

#include "CFSupport.h"
#include "support/TemporaryHome.h"

class BundleFolder {
  public:
    explicit BundleFolder(const std::string& inName = "Test.app") : mPath(mHome.Root() / inName) {
        std::filesystem::create_directories(mPath);
    }

    void Write(const std::string& inFile, const std::string& inBytes) {
        std::filesystem::create_directories((mPath / inFile).parent_path());
        std::ofstream(mPath / inFile, std::ios::binary) << inBytes;
    }

    // Contents/Info.plist with these lines in its dictionary.
    void WriteInfo(const std::string& inPairs, const std::string& inFile = "Contents/Info.plist") {
        Write(inFile, "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\"><dict>" +
                          inPairs + "</dict></plist>\n");
    }
    static std::string Pair(const std::string& inKey, const std::string& inValue) {
        return "<key>" + inKey + "</key><string>" + inValue + "</string>";
    }

    std::string Path() const { return mPath.string(); }
    std::filesystem::path Root() const { return mHome.Root(); }
    Ref<CFURLRef> Url() const { return Ref<CFURLRef>(carbon::UrlFromPath(Path(), true)); }
    Ref<CFBundleRef> Bundle() const { return Ref<CFBundleRef>(CFBundleCreate(nullptr, Url())); }

  private:
    TemporaryHome mHome;
    std::filesystem::path mPath;
};
