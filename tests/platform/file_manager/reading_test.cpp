// Reading, writing, marks and lengths: the same for both forks.
#include <fcntl.h>

#include <thread>

#include "ForkFixture.h"
#include "file_manager/metadata/metadata.h"

namespace {

class ForkTest : public ForkFixture, public testing::WithParamInterface<bool> {
  protected:
    void SetUp() override {
        const auto* test = testing::UnitTest::GetInstance()->current_test_info();
        std::string name = test->name();
        std::replace(name.begin(), name.end(), '/', '-');
        mFolder = Home().Root() / "files" / name;
        std::filesystem::create_directories(mFolder);
        mFolder = std::filesystem::canonical(mFolder);
        Write("File", "");
    }
    SInt16 OpenIt(SInt8 inPermission) {
        return GetParam() ? OpenResources("File", inPermission) : Open("File", inPermission);
    }
    static std::string Fork() { return GetParam() ? "resource" : "data"; }
};

INSTANTIATE_TEST_SUITE_P(Both, ForkTest, testing::Bool(),
                         [](const auto& inInfo) { return inInfo.param ? "Resource" : "Data"; });

TEST_P(ForkTest, KeepsWhatWritersBesideEachOtherAdd) {
    constexpr SInt32 kPieces = 500;
    const auto write = [&](SInt16 inNumber, SInt32 inFirst) {
        for (SInt32 i = inFirst; i < kPieces; i += 2) {
            ASSERT_EQ(SetFPos(inNumber, fsFromStart, 0), noErr);
            ParamBlockRec block{};
            char piece[4] = {'p', char('0' + i / 100), char('0' + i / 10 % 10), char('0' + i % 10)};
            block.ioParam.ioRefNum = inNumber;
            block.ioParam.ioBuffer = piece;
            block.ioParam.ioReqCount = sizeof piece;
            block.ioParam.ioPosMode = fsFromStart;
            block.ioParam.ioPosOffset = i * 4;
            ASSERT_EQ(PBWriteSync(&block), noErr);
        }
    };
    const SInt16 one = OpenIt(fsRdWrShPerm), other = OpenIt(fsRdWrShPerm);
    std::thread first(write, one, 0), second(write, other, 1);
    first.join();
    second.join();
    std::string whole;
    for (SInt32 i = 0; i < kPieces; ++i) {
        whole += {'p', char('0' + i / 100), char('0' + i / 10 % 10), char('0' + i % 10)};
    }
    EXPECT_EQ(All(OpenIt(fsRdPerm)), whole);
}

TEST_P(ForkTest, GivesBackWhatWasWritten) {
    const SInt16 fork = OpenIt(fsRdWrPerm);
    EXPECT_EQ(Length(fork), 0);
    ASSERT_EQ(Put(fork, "hello "), noErr);
    ASSERT_EQ(Put(fork, "world"), noErr);
    EXPECT_EQ(Mark(fork), 11);
    EXPECT_EQ(Length(fork), 11);
    EXPECT_EQ(All(fork), "hello world");
    ASSERT_EQ(FSClose(fork), noErr);
    mOpen.clear();
    EXPECT_EQ(All(OpenIt(fsRdPerm)), "hello world");
    std::vector<UInt8> bytes;
    EXPECT_EQ(carbon::ReadResourceFork(Path("File"), &bytes), noErr);
    EXPECT_EQ(GetParam() ? std::string(bytes.begin(), bytes.end()) : Contents(Path("File")),
              "hello world");
}

TEST_P(ForkTest, EndsAShortReadWithEofErrAndTheMarkAtTheEnd) {
    const SInt16 fork = OpenIt(fsRdWrPerm);
    ASSERT_EQ(Put(fork, "12345"), noErr);
    ASSERT_EQ(SetFPos(fork, fsFromStart, 2), noErr);
    char bytes[8];
    SInt32 count = 8;
    EXPECT_EQ(FSRead(fork, &count, bytes), eofErr);
    EXPECT_EQ(count, 3);
    EXPECT_EQ(Mark(fork), 5);
    count = 0;
    EXPECT_EQ(FSRead(fork, &count, bytes), noErr);
    count = -1;
    EXPECT_EQ(FSRead(fork, &count, bytes), paramErr);
    count = -1;
    EXPECT_EQ(FSWrite(fork, &count, bytes), paramErr);
    count = 1;
    EXPECT_EQ(FSRead(fork, &count, nullptr), paramErr);
    EXPECT_EQ(FSRead(fork, nullptr, bytes), paramErr);
}

TEST_P(ForkTest, PutsTheMarkWhereItIsTold) {
    const SInt16 fork = OpenIt(fsRdWrPerm);
    ASSERT_EQ(Put(fork, "0123456789"), noErr);
    EXPECT_EQ(SetFPos(fork, fsFromStart, 4), noErr);
    EXPECT_EQ(SetFPos(fork, fsFromMark, 2), noErr);
    EXPECT_EQ(Mark(fork), 6);
    EXPECT_EQ(SetFPos(fork, fsFromLEOF, -3), noErr);
    EXPECT_EQ(Mark(fork), 7);
    EXPECT_EQ(SetFPos(fork, fsAtMark, 99), noErr);
    EXPECT_EQ(Mark(fork), 7);
    EXPECT_EQ(SetFPos(fork, fsFromStart, -1), posErr);
    EXPECT_EQ(SetFPos(fork, fsFromMark, -8), posErr);
    EXPECT_EQ(Mark(fork), 7);
    EXPECT_EQ(SetFPos(fork, fsFromStart, 11), eofErr);
    EXPECT_EQ(Mark(fork), 10);
    EXPECT_EQ(SetFPos(fork, fsFromStart, 10), noErr);
}

TEST_P(ForkTest, KeepsMarksApartAndTheLengthTogether) {
    const SInt16 writer = OpenIt(fsRdWrPerm), reader = OpenIt(fsRdPerm);
    ASSERT_EQ(Put(writer, "0123456789"), noErr);
    EXPECT_EQ(Mark(reader), 0);
    EXPECT_EQ(Length(reader), 10);
    EXPECT_EQ(Get(reader, 8), "01234567");
    ASSERT_EQ(SetEOF(writer, 5), noErr);
    EXPECT_EQ(Mark(reader), 5);
    EXPECT_EQ(Mark(writer), 5);
    EXPECT_EQ(Length(reader), 5);
    EXPECT_EQ(Get(reader, 8), "");
    EXPECT_EQ(SetEOF(reader, 1), wrPermErr);
    EXPECT_EQ(Put(reader, "x"), wrPermErr);
}

TEST_P(ForkTest, GrowsWithZerosEvenWhereOldBytesWere) {
    const SInt16 fork = OpenIt(fsRdWrPerm), reader = OpenIt(fsRdPerm);
    ASSERT_EQ(Put(fork, std::string(9000, 'o')), noErr);
    ASSERT_EQ(SetEOF(fork, 3), noErr);
    ASSERT_EQ(SetEOF(fork, 6), noErr);
    EXPECT_EQ(All(fork), std::string("ooo\0\0\0", 6));
    ASSERT_EQ(SetEOF(fork, 12000), noErr);
    EXPECT_EQ(All(reader), "ooo" + std::string(11997, '\0'));
    EXPECT_EQ(SetEOF(fork, -1), paramErr);
    EXPECT_EQ(Length(fork), 12000);
}

TEST_P(ForkTest, ReadsAndWritesAtPositions) {
    const SInt16 fork = OpenIt(fsRdWrPerm);
    std::string text = "0123456789";
    auto block = Block(fork, &text, fsAtMark, 5000);
    EXPECT_EQ(PBWriteSync(&block), noErr);
    EXPECT_EQ(+block.ioParam.ioActCount, 10);
    EXPECT_EQ(+block.ioParam.ioPosOffset, 10);
    text = "??";
    block = Block(fork, &text, +fsFromStart | noCacheMask, 3);
    EXPECT_EQ(PBReadSync(&block), noErr);
    EXPECT_EQ(text, "34");
    EXPECT_EQ(+block.ioParam.ioPosOffset, 5);
    block = Block(fork, &text, fsFromMark, 2);
    EXPECT_EQ(PBReadSync(&block), noErr);
    EXPECT_EQ(text, "78");
    block = Block(fork, &text, fsFromLEOF, -1);
    EXPECT_EQ(PBReadSync(&block), eofErr);
    EXPECT_EQ(+block.ioParam.ioActCount, 1);
    EXPECT_EQ(+block.ioParam.ioResult, eofErr);
    block = Block(fork, &text, fsFromStart, -1);
    EXPECT_EQ(PBReadSync(&block), posErr);
    block = Block(fork, &text, fsFromStart, -1);
    EXPECT_EQ(PBWriteSync(&block), posErr);
    block = Block(fork, &text, fsFromStart, 11);
    EXPECT_EQ(PBReadSync(&block), eofErr);
    EXPECT_EQ(+block.ioParam.ioPosOffset, 10);
    block = Block(fork, &text, fsFromStart, 14);
    EXPECT_EQ(PBWriteSync(&block), noErr);
    EXPECT_EQ(All(fork).substr(8, 6), std::string("89\0\0\0\0", 6));
    block = Block(30000, &text, fsFromStart);
    EXPECT_EQ(PBReadSync(&block), fnOpnErr);
    EXPECT_EQ(PBReadSync(nullptr), paramErr);
}

TEST_P(ForkTest, TakesWidePositions) {
    const SInt16 fork = OpenIt(fsRdWrPerm);
    ASSERT_EQ(Put(fork, "0123456789"), noErr);
    char bytes[3];
    XIOParam block{};
    block.ioRefNum = fork;
    block.ioBuffer = bytes;
    block.ioReqCount = 3;
    block.ioPosMode = +fsFromStart | kUseWidePositioning;
    block.ioWPosOffset.lo = 6;
    EXPECT_EQ(PBReadSync(reinterpret_cast<ParmBlkPtr>(&block)), noErr);
    EXPECT_EQ(std::string(bytes, 3), "678");
    EXPECT_EQ(+block.ioWPosOffset.lo, 9u);
    EXPECT_EQ(+block.ioWPosOffset.hi, 0);
    block.ioWPosOffset.hi = 1;
    EXPECT_EQ(PBReadSync(reinterpret_cast<ParmBlkPtr>(&block)), eofErr);
}

TEST_P(ForkTest, StopsBehindTheEndOfALine) {
    const SInt16 fork = OpenIt(fsRdWrPerm);
    const std::string longLine(3000, 'l');
    ASSERT_EQ(Put(fork, "one\rtwo\r" + longLine + "\rrest"), noErr);
    std::string text(8000, '?');
    auto block = Block(fork, &text, +fsFromStart | newLineMask | ('\r' << 8));
    EXPECT_EQ(PBReadSync(&block), noErr);
    EXPECT_EQ(+block.ioParam.ioActCount, 4);
    EXPECT_EQ(text.substr(0, 5), "one\r?");
    block = Block(fork, &text, +fsAtMark | newLineMask | ('\r' << 8));
    EXPECT_EQ(PBReadSync(&block), noErr);
    EXPECT_EQ(+block.ioParam.ioPosOffset, 8);
    block.ioParam.ioReqCount = 2;
    EXPECT_EQ(PBReadSync(&block), noErr);
    EXPECT_EQ(+block.ioParam.ioActCount, 2);
    block.ioParam.ioReqCount = 8000;
    EXPECT_EQ(PBReadSync(&block), noErr);
    EXPECT_EQ(+block.ioParam.ioActCount, 2999);
    EXPECT_EQ(PBReadSync(&block), eofErr);
    EXPECT_EQ(+block.ioParam.ioActCount, 4);
    EXPECT_EQ(text.substr(0, 4), "rest");
}

TEST_P(ForkTest, ComparesInsteadOfReadingWhenAskedToVerify) {
    const SInt16 fork = OpenIt(fsRdWrPerm);
    std::string text(150000, 'v');
    ASSERT_EQ(Put(fork, text), noErr);
    auto block = Block(fork, &text, +fsFromStart | rdVerify);
    EXPECT_EQ(PBReadSync(&block), noErr);
    EXPECT_EQ(+block.ioParam.ioActCount, 150000);
    text[149999] = 'w';
    block = Block(fork, &text, +fsFromStart | rdVerify);
    EXPECT_EQ(PBReadSync(&block), ioErr);
    EXPECT_EQ(text[149999], 'w') << "the buffer is only compared";
    text = std::string(2000, 'v');
    block = Block(fork, &text, +fsFromStart | rdVerify, 149000);
    EXPECT_EQ(PBReadSync(&block), eofErr);
    EXPECT_EQ(+block.ioParam.ioActCount, 1000);
}

TEST_P(ForkTest, IsTheSameInAnotherProcess) {
    ForkPeer peer;
    const SInt16 fork = OpenIt(fsRdWrPerm);
    ASSERT_EQ(Put(fork, "first"), noErr);
    ASSERT_EQ(peer.Open(Path("File"), Fork(), fsRdPerm), noErr);
    EXPECT_EQ(peer.Ask("read " + peer.Number() + "0 100"), "-39 first");
    ASSERT_EQ(Put(fork, "+second"), noErr);
    EXPECT_EQ(peer.Ask("read " + peer.Number() + "0 100"), "-39 first+second");
    ASSERT_EQ(SetEOF(fork, 2), noErr);
    EXPECT_EQ(peer.Ask("length " + peer.Number()), "0 2");
    EXPECT_EQ(peer.Ask("read " + peer.Number() + "0 100"), "-39 fi");
    ASSERT_EQ(peer.Ask("close " + peer.Number()), "0");
    ASSERT_EQ(FSClose(fork), noErr);
    mOpen.clear();
    const SInt16 shared = OpenIt(fsRdWrShPerm);
    ASSERT_EQ(peer.Open(Path("File"), Fork(), fsRdWrShPerm), noErr);
    EXPECT_EQ(peer.Ask("write " + peer.Number() + "2 rsttime"), "0 rsttime");
    EXPECT_EQ(All(shared), "firsttime");
    ASSERT_EQ(SetFPos(shared, fsFromStart, 0), noErr);
    ASSERT_EQ(Put(shared, "FIRST"), noErr);
    EXPECT_EQ(peer.Ask("read " + peer.Number() + "0 9"), "0 FIRSTtime");
}

TEST_P(ForkTest, FollowsItsFileWhenThatIsRenamed) {
    const SInt16 fork = OpenIt(fsRdWrPerm);
    ASSERT_EQ(Put(fork, "before"), noErr);
    ASSERT_EQ(carbon::MoveWithMetadata(Path("File"), Path("Renamed")), noErr);
    ASSERT_EQ(Put(fork, "+after"), noErr);
    ASSERT_EQ(FSClose(fork), noErr);
    mOpen.clear();
    std::vector<UInt8> bytes;
    EXPECT_EQ(carbon::ReadResourceFork(Path("Renamed"), &bytes), noErr);
    EXPECT_EQ(GetParam() ? std::string(bytes.begin(), bytes.end()) : Contents(Path("Renamed")),
              "before+after");
}

TEST_P(ForkTest, TakesRoomWithoutBecomingLonger) {
    const SInt16 fork = OpenIt(fsRdWrPerm);
    ASSERT_EQ(Put(fork, "x"), noErr);
    SInt32 count = 100000;
    EXPECT_EQ(Allocate(fork, &count), noErr);
    EXPECT_EQ(count, 100000);
    EXPECT_EQ(Length(fork), 1);
    EXPECT_EQ(Allocate(OpenIt(fsRdPerm), &count), wrPermErr);
    EXPECT_EQ(count, 0);
    ParamBlockRec block{};
    block.ioParam.ioRefNum = fork;
    block.ioParam.ioMisc = reinterpret_cast<Ptr>(3);
    EXPECT_EQ(PBSetEOFSync(&block), noErr);
    block.ioParam.ioMisc = nullptr;
    EXPECT_EQ(PBGetEOFSync(&block), noErr);
    EXPECT_EQ(reinterpret_cast<intptr_t>(block.ioParam.ioMisc), 3);
    block.ioParam.ioReqCount = 10;
    EXPECT_EQ(PBAllocateSync(&block), noErr);
    EXPECT_EQ(+block.ioParam.ioActCount, 10);
    EXPECT_EQ(PBFlushFileSync(&block), noErr);
    EXPECT_EQ(FlushVol(nullptr, SpecOf(Path("File")).vRefNum), noErr);
    EXPECT_EQ(FlushVol(nullptr, -31000), nsvErr);
}

TEST_P(ForkTest, ShutsOthersOutOfALockedRange) {
    ForkPeer peer;
    const SInt16 fork = OpenIt(fsRdWrShPerm), second = OpenIt(fsRdWrShPerm);
    ASSERT_EQ(Put(fork, "0123456789"), noErr);
    ASSERT_EQ(peer.Open(Path("File"), Fork(), fsRdWrShPerm), noErr);
    EXPECT_EQ(peer.Ask("read " + peer.Number() + "0 10"), "0 0123456789");
    std::string text(4, '?');
    auto lock = Block(fork, &text, fsFromStart, 4);
    ASSERT_EQ(PBLockRangeSync(&lock), noErr);
    EXPECT_EQ(peer.Ask("read " + peer.Number() + "0 4"), "0 0123");
    EXPECT_EQ(peer.Ask("read " + peer.Number() + "0 5"), "-45 ");
    EXPECT_EQ(peer.Ask("write " + peer.Number() + "7 x"), "-45 ");
    EXPECT_EQ(peer.Ask("cut " + peer.Number() + "5"), "-45");
    EXPECT_EQ(peer.Ask("write " + peer.Number() + "8 x"), "0 x");
    auto block = Block(second, &text, fsFromStart, 4);
    EXPECT_EQ(PBReadSync(&block), fLckdErr);
    block = Block(fork, &text, fsFromStart, 4);
    EXPECT_EQ(PBReadSync(&block), noErr) << "its own range";
    EXPECT_EQ(peer.Ask("lock " + peer.Number() + "6 10"), "-5021");
    block = Block(fork, &text, fsFromStart, 2);
    EXPECT_EQ(PBLockRangeSync(&block), afpRangeOverlap);
    EXPECT_EQ(PBUnlockRangeSync(&block), afpRangeNotLocked);
    EXPECT_EQ(peer.Ask("unlock " + peer.Number() + "4 4"), "-5020");
    EXPECT_EQ(peer.Ask("lock " + peer.Number() + "8 -1"), "0");
    block = Block(fork, &text, fsFromStart, 8);
    EXPECT_EQ(PBReadSync(&block), fLckdErr);
    EXPECT_EQ(PBUnlockRangeSync(&lock), noErr);
    EXPECT_EQ(peer.Ask("write " + peer.Number() + "4 four"), "0 four");
    peer.Kill();
    block = Block(fork, &text, fsFromStart, 8);
    EXPECT_EQ(PBReadSync(&block), eofErr) << "the dead lock nothing";
}

// What lies beside the fork can change while it is being written, and the other way round.
TEST_F(ForkFixture, GoesOnWhileItsFilesMetadataChange) {
    ForkPeer peer;
    Write("File", "");
    const SInt16 writer = OpenResources("File", fsRdWrPerm);
    ASSERT_EQ(peer.Open(Path("File"), "resource", fsRdPerm), noErr);
    for (int i = 1; i < 20; ++i) {
        ASSERT_EQ(carbon::ChangeMetadata(Path("File"),
                                         [&](carbon::Metadata* io) {
                                             io->finderInfo[0] = UInt8(i);
                                             io->facts.created = i;
                                             io->facts.isLocked = i % 2;
                                         }),
                  noErr);
        ASSERT_EQ(Put(writer, "0123456789"), noErr);
        EXPECT_EQ(peer.Ask("length " + peer.Number()), "0 " + std::to_string(i * 10));
        carbon::Metadata metadata;
        ASSERT_EQ(carbon::ReadMetadata(Path("File"), &metadata), noErr);
        EXPECT_EQ(metadata.finderInfo[0], i);
        EXPECT_EQ(metadata.facts.created, i);
        EXPECT_EQ(metadata.facts.isLocked, i % 2 == 1);
        EXPECT_EQ(+metadata.facts.resourceLength, UInt32(i * 10));
    }
    EXPECT_EQ(carbon::ChangeMetadata(Path("File"),
                                     [](carbon::Metadata* io) { io->facts.comment = "no room"; }),
              fBsyErr);
}

TEST_F(ForkFixture, GoesOnInAForkThatIsReplacedAsAWhole) {
    ForkPeer peer;
    Write("File", "");
    const SInt16 writer = OpenResources("File", fsRdWrPerm);
    ASSERT_EQ(Put(writer, "old fork"), noErr);
    ASSERT_EQ(peer.Open(Path("File"), "resource", fsRdPerm), noErr);
    const std::vector<UInt8> fresh(20, 'n');
    ASSERT_EQ(carbon::ReplaceResourceFork(Path("File"), fresh), noErr);
    EXPECT_EQ(All(writer), std::string(20, 'n'));
    EXPECT_EQ(peer.Ask("read " + peer.Number() + "0 30"), "-39 " + std::string(20, 'n'));
    ASSERT_EQ(Put(writer, "more"), noErr);
    EXPECT_EQ(peer.Ask("read " + peer.Number() + "18 30"), "-39 nnmore");
    ASSERT_EQ(FSClose(writer), noErr);
    mOpen.clear();
    ASSERT_EQ(peer.Open(Path("File"), "resource", fsRdWrPerm), noErr);
    EXPECT_EQ(carbon::ReplaceResourceFork(Path("File"), fresh), opWrErr);
}

TEST_F(ForkFixture, RefusesADamagedCompanion) {
    Write("File", "");
    Write("._File", "this is no AppleDouble file");
    EXPECT_EQ(OpenResources("File", fsRdPerm), ioErr);
    EXPECT_EQ(OpenResources("File", fsRdWrPerm), ioErr);
    EXPECT_EQ(Contents(Path("._File")), "this is no AppleDouble file");
    EXPECT_GT(Open("File", fsRdWrPerm), 0) << "the data fork is sound";
}

TEST_F(ForkFixture, LongerThanClassicNumbersIsToldAsSuch) {
    Write("File", "");
    std::filesystem::resize_file(Path("File"), 0x90000000);
    const SInt16 fork = Open("File", fsRdWrPerm);
    SInt32 number = 0;
    EXPECT_EQ(GetEOF(fork, &number), fileBoundsErr);
    EXPECT_EQ(SetFPos(fork, fsFromLEOF, -5), noErr);
    EXPECT_EQ(GetFPos(fork, &number), fileBoundsErr);
    EXPECT_EQ(Get(fork, 10), std::string(5, '\0'));
}

}  // namespace
