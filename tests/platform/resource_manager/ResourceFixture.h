// Resource files of its own for each test. Whatever a test leaves open is closed, and every handle
// must be gone then.
#pragma once

#include <Platform/Platform.h>

#include "platform/file_manager/FileFixture.h"
#include "support/PascalString.h"

class ResourceFixture : public FileFixture {
  protected:
    void SetUp() override {
        FileFixture::SetUp();
        CurResFile();  // whatever is made once is there now
        mHandles = PlatformCountHandles();
    }
    void TearDown() override {
        SetResLoad(true);
        ResFileRefNum number = kSystemResFile;
        while (GetTopResourceFile(&number) == noErr && number != kSystemResFile)
            CloseResFile(number);
        EXPECT_EQ(PlatformCountHandles(), mHandles);
    }

    FSSpec NewSpec(const std::string& inName) const {
        FSSpec spec;
        const FSSpec folder = SpecOf(mFolder);
        EXPECT_EQ(MakeSpec(folder.vRefNum, NumberOf(mFolder), inName, &spec), fnfErr);
        return spec;
    }
    // A new file with an empty map.
    FSSpec NewFile(const std::string& inName = "file") const {
        const FSSpec spec = NewSpec(inName);
        FSpCreateResFile(&spec, 'Test', 'rsrc', smSystemScript);
        EXPECT_EQ(ResError(), noErr);
        return spec;
    }
    static ResFileRefNum Open(const FSSpec& inSpec, SInt8 inPermission = fsRdWrPerm) {
        const ResFileRefNum number = FSpOpenResFile(&inSpec, inPermission);
        EXPECT_EQ(ResError(), noErr);
        EXPECT_GT(number, 0);
        return number;
    }
    ResFileRefNum OpenNew(const std::string& inName = "file") const {
        return Open(NewFile(inName));
    }

    // The same with the map in the data fork.
    static ResFileRefNum OpenDataFork(const std::string& inPath, SInt8 inPermission = fsRdPerm) {
        FSRef ref;
        ResFileRefNum number = -1;
        EXPECT_EQ(RefOf(inPath, &ref), noErr);
        EXPECT_EQ(FSOpenResourceFile(&ref, 0, nullptr, inPermission, &number), noErr);
        return number;
    }
    static void NewDataForkFile(const std::filesystem::path& inPath) {
        FSRef folder, ref;
        EXPECT_EQ(RefOf(inPath.parent_path(), &folder), noErr);
        const std::u16string name = inPath.filename().u16string();
        EXPECT_EQ(FSCreateResourceFile(&folder, UniCharCount(name.size()),
                                       reinterpret_cast<const UniChar*>(name.data()),
                                       kFSCatInfoNone, nullptr, 0, nullptr, &ref, nullptr),
                  noErr);
    }
    ResFileRefNum OpenNewDataFork(const std::string& inName) const {
        NewDataForkFile(Path(inName));
        return OpenDataFork(Path(inName), fsRdWrPerm);
    }

    static Handle HandleTo(const std::string& inText) {
        Handle handle = nullptr;
        EXPECT_EQ(PtrToHand(inText.data(), &handle, Size(inText.size())), noErr);
        return handle;
    }
    static Handle Add(ResType inType, ResID inID, const std::string& inText,
                      const std::string& inName = "") {
        const Handle handle = HandleTo(inText);
        AddResource(handle, inType, inID, PString(inName));
        EXPECT_EQ(ResError(), noErr);
        return handle;
    }
    static std::string TextIn(Handle inHandle) {
        if (!inHandle) return "null";
        return *inHandle ? std::string(*inHandle, size_t(GetHandleSize(inHandle))) : "empty handle";
    }
    static std::string TextOfResource(ResType inType, ResID inID) {
        return TextIn(Get1Resource(inType, inID));
    }
    static void Change(Handle inHandle, const std::string& inText) {
        EXPECT_EQ(PtrToXHand(inText.data(), inHandle, Size(inText.size())), noErr);
        ChangedResource(inHandle);
        EXPECT_EQ(ResError(), noErr);
    }
    static std::string NameOfResource(Handle inHandle) {
        Str255 name = "\3bad";
        GetResInfo(inHandle, nullptr, nullptr, name);
        return TextOf(name);
    }

    UInt32 mHandles = 0;
};
