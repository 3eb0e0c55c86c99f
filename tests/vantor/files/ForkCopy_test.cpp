// Copying forks, buffers when memory is short, writing that is checked.
#include "vantor/files/ForkCopy.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "support/FileFaults.h"
#include "support/MountedVolume.h"
#include "support/RealCall.h"

namespace {

std::string Bytes(std::size_t inCount) {
    std::string bytes(inCount, '\0');
    for (std::size_t i = 0; i < inCount; ++i) bytes[i] = static_cast<char>(i * 31 + i / 251);
    return bytes;
}

class Forks : public testing::Test {
  protected:
    void Open(const std::string& inSource, const std::string& inDestination = "") {
        const FSSpec source = mVolume.MakeFile("Source", inSource);
        const FSSpec destination = mVolume.MakeFile("Destination", inDestination);
        ASSERT_EQ(FSpOpenDF(&source, fsRdPerm, &mSource), noErr);
        ASSERT_EQ(FSpOpenDF(&destination, fsRdWrPerm, &mDestination), noErr);
    }
    void TearDown() override {
        gFileFaults = {};
        if (mSource != 0) FSClose(mSource);
        if (mDestination != 0) FSClose(mDestination);
    }
    OSErr Copy(SInt32 inSize) {
        std::vector<char> buffer(static_cast<std::size_t>(inSize));
        return CopyFork(mSource, mDestination, buffer.data(), inSize);
    }
    // The sizes asked for when a fork is copied by way of a buffer.
    std::vector<SInt32> ReadSizes(SInt32 inSize) {
        std::vector<SInt32> sizes;
        gFileFaults.read = [&](ParmBlkPtr ioBlock) {
            sizes.push_back(ioBlock->ioParam.ioReqCount);
            EXPECT_EQ(ioBlock->ioParam.ioPosMode, 0x20);
            return REAL_CALL(PBReadSync)(ioBlock);
        };
        EXPECT_EQ(Copy(inSize), noErr);
        return sizes;
    }

    MountedVolume mVolume;
    SInt16 mSource = 0, mDestination = 0;
};

TEST_F(Forks, AreCopiedWhole) {
    const std::string data = Bytes(200000);
    Open(data, Bytes(300000));
    EXPECT_EQ(Copy(65536), noErr);
    EXPECT_EQ(mVolume.Read("Destination"), data);
}

TEST_F(Forks, AreReadInWholeBlocksOfTheBuffer) {
    Open(Bytes(1200));
    EXPECT_EQ(ReadSizes(1000), (std::vector<SInt32>{512, 512, 512}));
    EXPECT_EQ(mVolume.Read("Destination"), Bytes(1200));
}

TEST_F(Forks, AreReadInLessThanABlockWhereTheBufferIsSmaller) {
    Open(Bytes(700));
    EXPECT_EQ(ReadSizes(300), (std::vector<SInt32>{300, 300, 300}));
    EXPECT_EQ(mVolume.Read("Destination"), Bytes(700));
}

TEST_F(Forks, AreCopiedFromTheirStartWhateverTheMarksAre) {
    Open(Bytes(900), Bytes(50));
    ASSERT_EQ(SetFPos(mSource, fsFromStart, 100), noErr);
    ASSERT_EQ(SetFPos(mDestination, fsFromStart, 20), noErr);
    EXPECT_EQ(Copy(512), noErr);
    EXPECT_EQ(mVolume.Read("Destination"), Bytes(900));
}

TEST_F(Forks, EmptyOnesMakeTheDestinationEmpty) {
    Open("", "something");
    EXPECT_EQ(Copy(512), noErr);
    EXPECT_EQ(mVolume.Read("Destination"), "");
}

TEST_F(Forks, TakeTheirRoomBeforeAnythingIsRead) {
    Open(Bytes(900), "something");
    gFileFaults.setLength = [&](SInt16 inRefNum, SInt32 inLength) {
        EXPECT_EQ(inRefNum, mDestination);
        EXPECT_EQ(inLength, 900);
        return OSErr{dskFulErr};
    };
    gFileFaults.read = [](ParmBlkPtr) {
        ADD_FAILURE() << "read without room";
        return OSErr{ioErr};
    };
    EXPECT_EQ(Copy(512), dskFulErr);
    EXPECT_EQ(mVolume.Read("Destination"), "something");
}

TEST_F(Forks, ResourceForksAreCopiedLikeOthers) {
    const FSSpec from = mVolume.MakeFile("From"), to = mVolume.MakeFile("To");
    AddResourceTo(from, 'TEST', 7, Bytes(5000));
    ASSERT_EQ(FSpOpenRF(&from, fsRdPerm, &mSource), noErr);
    ASSERT_EQ(FSpOpenRF(&to, fsRdWrPerm, &mDestination), noErr);
    EXPECT_EQ(Copy(1024), noErr);
    EXPECT_EQ(FSClose(mDestination), noErr);
    mDestination = 0;
    const SInt16 file = FSpOpenResFile(&to, fsRdPerm);
    const Handle data = Get1Resource('TEST', 7);
    ASSERT_NE(data, nullptr);
    EXPECT_EQ(std::string(*data, static_cast<std::size_t>(GetHandleSize(data))), Bytes(5000));
    CloseResFile(file);
}

TEST_F(Forks, WithoutABufferNothingIsTouched) {
    Open("source", "destination");
    char buffer[4];
    EXPECT_EQ(CopyFork(mSource, mDestination, nullptr, 512), paramErr);
    EXPECT_EQ(CopyFork(mSource, mDestination, buffer, 0), paramErr);
    EXPECT_EQ(mVolume.Read("Destination"), "destination");
}

TEST_F(Forks, ThatCannotBeWrittenEndTheCopy) {
    Open(Bytes(3000));
    int writes = 0;
    gFileFaults.write = [&](ParmBlkPtr ioBlock) {
        return ++writes == 2 ? OSErr{dskFulErr} : REAL_CALL(PBWriteSync)(ioBlock);
    };
    EXPECT_EQ(Copy(1024), dskFulErr);
    EXPECT_EQ(writes, 2);
    EXPECT_EQ(CopyFork(mDestination, mSource, &writes, sizeof writes), wrPermErr) << "read only";
}

TEST_F(Forks, ThatCannotBeReadEndTheCopyWithTheirError) {
    Open(Bytes(3000));
    gFileFaults.read = [](ParmBlkPtr ioBlock) {
        ioBlock->ioParam.ioActCount = 0;
        return OSErr{ioErr};
    };
    EXPECT_EQ(Copy(1024), ioErr);
}

TEST_F(Forks, LastPieceThatComesWithTheEndIsWritten) {
    Open(Bytes(1030));
    std::vector<SInt32> written;
    gFileFaults.write = [&](ParmBlkPtr ioBlock) {
        written.push_back(ioBlock->ioParam.ioReqCount);
        return REAL_CALL(PBWriteSync)(ioBlock);
    };
    EXPECT_EQ(Copy(512), noErr);
    EXPECT_EQ(written, (std::vector<SInt32>{512, 512, 6}));
}

// --- Buffers ---

class Buffers : public testing::Test {
  protected:
    // What is asked of the Memory Manager; all fails but the last of them.
    std::vector<Size> SizesTried(SInt32 inRequest, int inFailures) {
        std::vector<Size> sizes;
        gFileFaults.newPointer = [&](Size inSize) {
            sizes.push_back(inSize);
            const bool fails = static_cast<int>(sizes.size()) <= inFailures;
            return fails ? nullptr : REAL_CALL(NewPtr)(inSize);
        };
        mBuffer = GetTempBuffer(inRequest, &mActual);
        gFileFaults.newPointer = nullptr;
        if (mBuffer != nullptr) DisposePtr(mBuffer);
        return sizes;
    }
    Ptr mBuffer = nullptr;
    SInt32 mActual = -1;
    StFileFaults mFaults;
};

TEST_F(Buffers, AreWholeKilobytesAndNeverLessThanOne) {
    EXPECT_EQ(SizesTried(100, 0), std::vector<Size>{1024});
    EXPECT_EQ(mActual, 1024);
    EXPECT_EQ(SizesTried(5000, 0), std::vector<Size>{4096});
    EXPECT_EQ(mActual, 4096);
    EXPECT_EQ(SizesTried(-5000, 0), std::vector<Size>{1024});
    EXPECT_EQ(SizesTried(8192, 0), std::vector<Size>{8192});
}

TEST_F(Buffers, ShrinkToWhatThereIs) {
    const std::vector<Size> sizes = SizesTried(100 * 1024, 1);
    ASSERT_EQ(sizes.size(), 2u);
    const SInt32 free = (FreeMem() - 32768) / 1024 * 1024, largest = MaxBlock() / 1024 * 1024;
    EXPECT_EQ(sizes[1], std::min(free, largest));
    EXPECT_EQ(mActual, mBuffer != nullptr ? sizes[1] : 0);
}

TEST_F(Buffers, AreTriedOnceMoreAtMost) {
    EXPECT_EQ(SizesTried(100 * 1024, 9).size(), 2u);
    EXPECT_EQ(mBuffer, nullptr);
    EXPECT_EQ(mActual, 0);
    EXPECT_EQ(SizesTried(1024, 9).size(), 1u) << "nothing smaller to try";
}

// --- Checked writing ---

TEST_F(Forks, CheckedWriteWritesAtTheMarkAndStaysBehindIt) {
    Open("", "0123456789");
    ASSERT_EQ(SetFPos(mDestination, fsFromStart, 3), noErr);
    SInt32 count = 4;
    EXPECT_EQ(FSWriteVerify(mDestination, &count, "abcd"), noErr);
    EXPECT_EQ(count, 4);
    EXPECT_EQ(mVolume.Read("Destination"), "012abcd789");
    SInt32 mark = 0;
    EXPECT_EQ(GetFPos(mDestination, &mark), noErr);
    EXPECT_EQ(mark, 7);
}

TEST_F(Forks, CheckedWriteReadsBackInVerifyMode) {
    Open("");
    std::vector<SInt16> modes;
    gFileFaults.read = [&](ParmBlkPtr ioBlock) {
        modes.push_back(ioBlock->ioParam.ioPosMode);
        return REAL_CALL(PBReadSync)(ioBlock);
    };
    SInt32 count = 3000;
    EXPECT_EQ(FSWriteVerify(mDestination, &count, Bytes(3000).data()), noErr);
    EXPECT_EQ(modes, std::vector<SInt16>{0x40});
}

TEST_F(Forks, CheckedWriteFindsWhatTheDiskChanged) {
    Open("");
    gFileFaults.read = [](ParmBlkPtr ioBlock) {
        ioBlock->ioParam.ioBuffer[1] = '!';
        ioBlock->ioParam.ioActCount = ioBlock->ioParam.ioReqCount;
        return OSErr{noErr};
    };
    SInt32 count = 4;
    EXPECT_EQ(FSWriteVerify(mDestination, &count, "abcd"), ioErr);
}

TEST_F(Forks, CheckedWriteOfADamagedDiskIsFoundByTheFileManager) {
    Open("");
    const auto damage = mVolume.Root() / "Destination";
    gFileFaults.writeAtMark = [&](SInt16 inRefNum, SInt32* ioCount, const void* inBuffer) {
        const OSErr err = REAL_CALL(FSWrite)(inRefNum, ioCount, inBuffer);
        std::ofstream(damage, std::ios::binary | std::ios::in) << "X";
        return err;
    };
    SInt32 count = 4;
    EXPECT_EQ(FSWriteVerify(mDestination, &count, "abcd"), ioErr);
}

TEST_F(Forks, CheckedWriteGoesInPiecesWhereMemoryIsShort) {
    Open("");
    const std::string data = Bytes(3000);
    int asked = 0;
    gFileFaults.newPointer = [&](Size inSize) {
        return ++asked == 1 ? nullptr : REAL_CALL(NewPtr)(inSize);  // two of three kilobytes
    };
    std::vector<SInt32> read;
    gFileFaults.read = [&](ParmBlkPtr ioBlock) {
        read.push_back(ioBlock->ioParam.ioReqCount);
        return REAL_CALL(PBReadSync)(ioBlock);
    };
    SInt32 count = 3000;
    EXPECT_EQ(FSWriteVerify(mDestination, &count, data.data()), noErr);
    EXPECT_EQ(read, (std::vector<SInt32>{2048, 952}));
    EXPECT_EQ(mVolume.Read("Destination"), data);
}

TEST_F(Forks, CheckedWriteNeedsMemory) {
    Open("", "before");
    gFileFaults.newPointer = [](Size) { return nullptr; };
    SInt32 count = 4;
    EXPECT_EQ(FSWriteVerify(mDestination, &count, "abcd"), memFullErr);
    EXPECT_EQ(mVolume.Read("Destination"), "before");
}

TEST_F(Forks, CheckedWriteReturnsTheErrorOfWriting) {
    Open("text");
    SInt32 count = 4;
    const UInt32 blocks = PlatformCountPointers();
    EXPECT_EQ(FSWriteVerify(mSource, &count, "abcd"), wrPermErr);
    EXPECT_EQ(PlatformCountPointers(), blocks);
}

}  // namespace
