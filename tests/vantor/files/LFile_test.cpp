// One file and its two forks.
#include "vantor/files/LFile.h"

#include <gtest/gtest.h>

#include "support/FileFaults.h"
#include "support/MountedVolume.h"
#include "support/PascalString.h"
#include "support/RealCall.h"
#include "support/Thrown.h"

namespace {

std::string TextIn(Handle inHandle) {
    std::string text(*inHandle, static_cast<std::size_t>(GetHandleSize(inHandle)));
    DisposeHandle(inHandle);
    return text;
}

FSSpec Spec(SInt16 inVolume, SInt32 inParent, const std::string& inName) {
    FSSpec spec = {};
    spec.vRefNum = inVolume;
    spec.parID = inParent;
    std::memcpy(spec.name, PString(inName), inName.size() + 1);
    return spec;
}

// Tells what was called through the virtual table.
class Watched : public LFile {
  public:
    using LFile::LFile;
    void CloseDataFork() override {
        mCalls += 'd';
        LFile::CloseDataFork();
    }
    void CloseResourceFork() override {
        mCalls += 'r';
        LFile::CloseResourceFork();
    }
    std::string mCalls;
};

class File : public testing::Test {
  protected:
    // Counts the paths that were closed and the volumes that were flushed.
    void CountCalls() {
        gFileFaults.close = [this](SInt16 inRefNum) {
            ++mClosed;
            return REAL_CALL(FSClose)(inRefNum);
        };
        gFileFaults.flush = [this](ConstStr63Param inName, FSVolumeRefNum inVRefNum) {
            mFlushed.push_back(inVRefNum);
            return REAL_CALL(FlushVol)(inName, inVRefNum);
        };
    }

    MountedVolume mVolume;
    int mClosed = 0;
    std::vector<SInt16> mFlushed;
    StFileFaults mFaults;
};

TEST_F(File, NamesNothingUntilToldOtherwise) {
    FSSpec spec = Spec(1, 2, "x");
    LFile().GetSpecifier(spec);
    EXPECT_EQ(spec.vRefNum, 0);
    EXPECT_EQ(+spec.parID, 0);
    EXPECT_EQ(spec.name[0], 0);
}

TEST_F(File, NeedNotExist) {
    const FSSpec spec = mVolume.Spec("New");
    LFile file(spec);
    EXPECT_FALSE(file.SpecifierExists());
    EXPECT_TRUE(file.UsesSpecifier(spec));
    mVolume.MakeFile("New");
    EXPECT_TRUE(file.SpecifierExists());
}

TEST_F(File, IsTheSameWhateverTheCaseButNotTheAccents) {
    const FSSpec spec = Spec(-100, 16, "Caf\x8E");
    EXPECT_TRUE(LFile::EqualFileSpec(spec, Spec(-100, 16, "cAF\x8E")));
    EXPECT_FALSE(LFile::EqualFileSpec(spec, Spec(-100, 16, "Cafe")));
    EXPECT_FALSE(LFile::EqualFileSpec(spec, Spec(-101, 16, "Caf\x8E")));
    EXPECT_FALSE(LFile::EqualFileSpec(spec, Spec(-100, 17, "Caf\x8E")));
}

TEST_F(File, IsFoundAgainByItsAlias) {
    const FSSpec spec = mVolume.MakeFile("Folder/File", "here");
    LFile file(spec);
    const AliasHandle alias = file.MakeAlias(nullptr);
    ASSERT_NE(alias, nullptr);
    Boolean wasChanged = true;
    LFile again(alias, wasChanged, nullptr);
    EXPECT_TRUE(again.UsesSpecifier(spec));
    EXPECT_FALSE(wasChanged);
    std::filesystem::remove(mVolume.Root() / "Folder/File");
    EXPECT_EQ(CodeThrownBy([&] { LFile gone(alias, wasChanged, nullptr); }), fnfErr);
    DisposeHandle(reinterpret_cast<Handle>(alias));
}

TEST_F(File, KeepsSilentAboutAnAliasThatCannotBeMade) {
    EXPECT_EQ(LFile(Spec(-32768, 2, "Nowhere")).MakeAlias(nullptr), nullptr);
}

TEST_F(File, IsCreatedWithTypeAndCreator) {
    LFile data(mVolume.Spec("Data")), resources(mVolume.Spec("Resources"));
    data.CreateNewDataFile('VtTs', 'TEXT', smRoman);
    resources.CreateNewFile('VtTs', 'rsrc', smRoman);
    FInfo info;
    const FSSpec spec = mVolume.Spec("Resources");
    ASSERT_EQ(FSpGetFInfo(&spec, &info), noErr);
    EXPECT_EQ(+info.fdCreator, OSType{'VtTs'});
    EXPECT_EQ(+info.fdType, OSType{'rsrc'});
    EXPECT_NE(resources.OpenResourceFork(fsRdPerm), -1) << "has a resource map";
    EXPECT_EQ(CodeThrownBy([&] { data.CreateNewDataFile('VtTs', 'TEXT', smRoman); }), dupFNErr);
    EXPECT_EQ(CodeThrownBy([&] { resources.CreateNewFile('VtTs', 'TEXT', smRoman); }), dupFNErr);
}

TEST_F(File, DataForkIsReadWhole) {
    LFile file(mVolume.MakeFile("File", "all of it"));
    EXPECT_GT(file.OpenDataFork(fsRdPerm), 0);
    EXPECT_EQ(TextIn(file.ReadDataFork()), "all of it");
    EXPECT_EQ(TextIn(file.ReadDataFork()), "all of it") << "from the start each time";
}

TEST_F(File, EmptyDataForkIsAnEmptyHandle) {
    LFile file(mVolume.MakeFile("File"));
    file.OpenDataFork(fsRdPerm);
    const Handle data = file.ReadDataFork();
    ASSERT_NE(data, nullptr);
    EXPECT_EQ(TextIn(data), "");
}

TEST_F(File, DataForkMustBeOpenToBeRead) {
    LFile file(mVolume.MakeFile("File", "text"));
    const UInt32 before = PlatformCountHandles();
    EXPECT_EQ(CodeThrownBy([&] { file.ReadDataFork(); }), rfNumErr);
    EXPECT_EQ(PlatformCountHandles(), before);
}

TEST_F(File, WritingReplacesAllThereIs) {
    LFile file(mVolume.MakeFile("File", "something much longer"));
    file.OpenDataFork(fsRdWrPerm);
    EXPECT_EQ(file.WriteDataFork("short", 5), 5);
    file.CloseDataFork();
    EXPECT_EQ(mVolume.Read("File"), "short");
}

TEST_F(File, WriteThatFailsPartWayStillEndsTheForkThere) {
    LFile file(mVolume.MakeFile("File", "something much longer"));
    file.OpenDataFork(fsRdWrPerm);
    gFileFaults.writeAtMark = [](SInt16 inRefNum, SInt32* ioCount, const void* inBuffer) {
        *ioCount = 3;
        EXPECT_EQ(REAL_CALL(FSWrite)(inRefNum, ioCount, inBuffer), noErr);
        return OSErr{dskFulErr};
    };
    EXPECT_EQ(CodeThrownBy([&] { file.WriteDataFork("short", 5); }), dskFulErr);
    file.CloseDataFork();
    EXPECT_EQ(mVolume.Read("File"), "sho");
}

TEST_F(File, KeepsSilentAboutAForkThatCannotBeCut) {
    LFile file(mVolume.MakeFile("File", "something much longer"));
    file.OpenDataFork(fsRdWrPerm);
    gFileFaults.setLength = [](SInt16, SInt32 inLength) {
        EXPECT_EQ(inLength, 5);
        return OSErr{ioErr};
    };
    EXPECT_EQ(file.WriteDataFork("short", 5), 5);
}

TEST_F(File, ForkThatCannotBeOpenedStaysClosed) {
    LFile file(mVolume.Spec("Missing"));
    EXPECT_EQ(CodeThrownBy([&] { file.OpenDataFork(fsRdPerm); }), fnfErr);
    CountCalls();
    file.CloseDataFork();
    EXPECT_EQ(mClosed, 0);
}

TEST_F(File, PathOfAnotherWriterIsNotTakenOver) {
    const FSSpec spec = mVolume.MakeFile("File", "text");
    LFile first(spec), second(spec);
    first.OpenDataFork(fsRdWrPerm);
    EXPECT_EQ(CodeThrownBy([&] { second.OpenDataFork(fsRdWrPerm); }), opWrErr);
    second.CloseDataFork();
    EXPECT_EQ(TextIn(first.ReadDataFork()), "text") << "still open";
}

TEST_F(File, ClosingWhatIsNotOpenDoesNothing) {
    CountCalls();
    LFile file(mVolume.MakeFile("File"));
    file.CloseDataFork();
    file.CloseResourceFork();
    EXPECT_EQ(mClosed, 0);
    EXPECT_TRUE(mFlushed.empty());
}

TEST_F(File, ClosingFlushesTheVolume) {
    LFile file(mVolume.MakeFile("File"));
    file.OpenDataFork(fsRdPerm);
    CountCalls();
    file.CloseDataFork();
    EXPECT_EQ(mClosed, 1);
    EXPECT_EQ(mFlushed, std::vector<SInt16>{mVolume.Number()});
    AddResourceTo(mVolume.Spec("File"), 'TEST', 1, "data");
    mFlushed.clear();
    file.OpenResourceFork(fsRdPerm);
    file.CloseResourceFork();
    EXPECT_EQ(mFlushed, std::vector<SInt16>{mVolume.Number()});
}

TEST_F(File, FailedCloseIsThrownAndForgotten) {
    LFile file(mVolume.MakeFile("File"));
    file.OpenDataFork(fsRdPerm);
    CountCalls();
    gFileFaults.close = [](SInt16 inRefNum) {
        REAL_CALL(FSClose)(inRefNum);
        return OSErr{ioErr};
    };
    EXPECT_EQ(CodeThrownBy([&] { file.CloseDataFork(); }), ioErr);
    EXPECT_TRUE(mFlushed.empty());
    EXPECT_FALSE(CodeThrownBy([&] { file.CloseDataFork(); })) << "not closed twice";
}

TEST_F(File, KeepsClosingBothForksAndSwallowsErrorsAtTheEnd) {
    const FSSpec spec = mVolume.MakeFile("File", "text");
    AddResourceTo(spec, 'TEST', 1, "data");
    SInt16 resources = 0;
    {
        LFile file(spec);
        file.OpenDataFork(fsRdPerm);
        resources = file.OpenResourceFork(fsRdPerm);
        CountCalls();
        gFileFaults.close = [](SInt16 inRefNum) {
            REAL_CALL(FSClose)(inRefNum);
            return OSErr{ioErr};
        };
    }
    UseResFile(resources);
    EXPECT_EQ(ResError(), resFNotFound) << "the second close ran all the same";
}

TEST_F(File, NamingAnotherFileClosesBothForksThroughTheTable) {
    Watched file(mVolume.MakeFile("File", "one"));
    const FSSpec other = mVolume.MakeFile("Other", "two");
    file.OpenDataFork(fsRdPerm);
    file.SetSpecifier(other);
    EXPECT_EQ(file.mCalls, "dr");
    EXPECT_TRUE(file.UsesSpecifier(other));
    file.OpenDataFork(fsRdPerm);
    EXPECT_EQ(TextIn(file.ReadDataFork()), "two");
}

TEST_F(File, ResourceForkWithoutAMapIsTheManagersError) {
    LFile file(mVolume.MakeFile("File", "only data"));
    EXPECT_EQ(CodeThrownBy([&] { file.OpenResourceFork(fsRdPerm); }), eofErr);
    EXPECT_FALSE(CodeThrownBy([&] { file.CloseResourceFork(); }));
}

TEST_F(File, KeepsMinusOneForAForkNotOpenedWithoutAnError) {
    LFile file(mVolume.MakeFile("File"));
    gFileFaults.openResources = [](const FSSpec*, SignedByte) {
        UseResFile(CurResFile());  // leaves no error
        return SInt16{-1};
    };
    EXPECT_EQ(file.OpenResourceFork(fsRdPerm), -1);
}

TEST_F(File, ResourceForkIsOpenedAndBecomesCurrent) {
    const FSSpec spec = mVolume.MakeFile("File");
    AddResourceTo(spec, 'TEST', 1, "data");
    LFile file(spec);
    const SInt16 before = CurResFile();
    const SInt16 opened = file.OpenResourceFork(fsRdPerm);
    EXPECT_EQ(opened, CurResFile());
    const Handle data = Get1Resource('TEST', 1);
    ASSERT_NE(data, nullptr);
    EXPECT_EQ(std::string(*data, 4), "data");
    file.CloseResourceFork();
    EXPECT_EQ(CurResFile(), before);
}

}  // namespace
