// A volume of its own for each test, and aliases in one line.
#pragma once

#include <Platform/Platform.h>

#include "platform/file_manager/FileFixture.h"

// Disposes its handle.
class Alias {
  public:
    Alias() = default;
    ~Alias() { DisposeHandle(Handle(mHandle)); }
    Alias(const Alias&) = delete;
    Alias& operator=(const Alias&) = delete;

    AliasHandle* Out() { return &mHandle; }
    operator AliasHandle() const { return mHandle; }
    std::string Bytes() const { return {*Handle(mHandle), size_t(GetHandleSize(Handle(mHandle)))}; }
    void Set(const std::string& inBytes) {
        DisposeHandle(Handle(mHandle));
        ASSERT_EQ(
            PtrToHand(inBytes.data(), reinterpret_cast<Handle*>(&mHandle), Size(inBytes.size())),
            noErr);
    }

  private:
    AliasHandle mHandle = nullptr;
};

class AliasFixture : public FileFixture {
  protected:
    void SetUp() override {
        FileFixture::SetUp();
        MakeFolder("disk/folder/inner");
        MakeFolder("disk/other");
        mFile = Write("disk/folder/file", "original");
        ASSERT_EQ(PlatformMountFolder(Path("disk").c_str(), "Disk", &mVolume), noErr);
    }
    void TearDown() override { PlatformUnmountFolder(mVolume); }

    void MakeAlias(const std::string& inPath, Alias& outAlias) const {
        const FSSpec spec = SpecOf(inPath);
        ASSERT_EQ(NewAlias(nullptr, &spec, outAlias.Out()), noErr);
    }
    // The path, or the error in words.
    std::string Resolved(const Alias& inAlias, const FSSpec* inFrom = nullptr, UInt32 inFlags = 0) {
        mTarget = {};
        const OSErr error =
            ResolveAliasWithMountFlags(inFrom, inAlias, &mTarget, &mWasChanged, inFlags);
        return error == noErr ? PathOf(mTarget) : Error(error);
    }
    static std::string Error(OSErr inError) { return "error " + std::to_string(inError); }
    void Move(const std::string& inFrom, const std::string& inTo) const {
        std::filesystem::rename(Path(inFrom), Path(inTo));
    }

    std::string mFile;
    FSVolumeRefNum mVolume = 0;
    FSSpec mTarget{};
    Boolean mWasChanged = false;
};
