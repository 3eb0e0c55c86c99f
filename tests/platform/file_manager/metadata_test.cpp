// What is kept beside files: written at one stroke, kept whole, moved and removed with its file.
#include "file_manager/metadata/metadata.h"

#include <Carbon/Carbon.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>

#include <atomic>
#include <fstream>
#include <sstream>
#include <thread>

#include "FileFixture.h"
#include "file_manager/metadata/apple_double_document.h"
#include "posix/UniqueFd.h"

namespace {

using carbon::ChangeMetadata;
using carbon::Metadata;
using carbon::MetadataOwner;

constexpr SInt64 kMillennium = 946684800;

class MetadataTest : public FileFixture {
  protected:
    static void SetType(Metadata* ioMetadata, OSType inType) {
        std::memcpy(ioMetadata->finderInfo, &inType, sizeof inType);
    }
    static OSErr GiveType(const std::string& inPath, OSType inType) {
        return ChangeMetadata(inPath, [&](Metadata* io) { SetType(io, inType); });
    }
    static OSType TypeOf(const std::string& inPath) {
        OSType type = 0;
        std::memcpy(&type, Read(inPath).finderInfo, sizeof type);
        return type;
    }
    static Metadata Read(const std::string& inPath) {
        Metadata metadata;
        EXPECT_EQ(carbon::ReadMetadata(inPath, &metadata), noErr) << inPath;
        return metadata;
    }
    static std::string Fork(const std::string& inPath) {
        std::vector<UInt8> bytes;
        EXPECT_EQ(carbon::ReadResourceFork(inPath, &bytes), noErr);
        return {bytes.begin(), bytes.end()};
    }
    static OSErr PutFork(const std::string& inPath, const std::string& inText) {
        return carbon::ReplaceResourceFork(
            inPath, std::span(reinterpret_cast<const UInt8*>(inText.data()), inText.size()));
    }
    static std::string Contents(const std::string& inPath) {
        std::ostringstream text;
        text << std::ifstream(inPath, std::ios::binary).rdbuf();
        return text.str();
    }
    bool Exists(const std::string& inName) const { return std::filesystem::exists(Path(inName)); }
};

std::string Big32(UInt32 inNumber) {
    return {char(inNumber >> 24), char(inNumber >> 16), char(inNumber >> 8), char(inNumber)};
}

std::string Big16(UInt32 inNumber) {
    return {char(inNumber >> 8), char(inNumber)};
}

std::string Head(const std::vector<carbon::AppleDoubleEntry>& inEntries) {
    std::string text = Big32(0x00051607) + Big32(0x00020000) + "Mac OS X        ";
    text += Big16(UInt32(inEntries.size()));
    for (const auto& entry : inEntries) {
        text += Big32(entry.id) + Big32(entry.offset) + Big32(entry.length);
    }
    return text;
}

TEST_F(MetadataTest, HasTheSmallestFormThatAMacWrites) {
    const auto path = Write("File");
    ASSERT_EQ(GiveType(path, 'TEXT'), noErr);
    ASSERT_EQ(PutFork(path, "fork"), noErr);
    const auto companion = Contents(Path("._File"));
    ASSERT_EQ(companion.size(), 86u);
    EXPECT_EQ(companion.substr(0, 8), Big32(0x00051607) + Big32(0x00020000));
    EXPECT_EQ(companion.substr(24, 26),
              Big16(2) + Big32(9) + Big32(50) + Big32(32) + Big32(2) + Big32(82) + Big32(4));
    EXPECT_EQ(companion.substr(50, 4), "TEXT");
    EXPECT_EQ(companion.substr(82), "fork");
}

TEST_F(MetadataTest, ReadsBackAllThatWasWritten) {
    const auto path = Write("File");
    ASSERT_EQ(ChangeMetadata(path,
                             [](Metadata* io) {
                                 SetType(io, 'APPL');
                                 io->extFinderInfo[15] = 0x11;
                                 io->facts.created = kMillennium - 5;
                                 io->facts.backedUp = kMillennium + 7;
                                 io->facts.isLocked = true;
                                 io->facts.comment = "A \x8E remark";
                             }),
              noErr);
    const Metadata read = Read(path);
    EXPECT_EQ(read.companion, carbon::CompanionState::kSound);
    EXPECT_EQ(TypeOf(path), OSType('APPL'));
    EXPECT_EQ(read.extFinderInfo[15], 0x11);
    EXPECT_EQ(read.facts.created, kMillennium - 5);
    EXPECT_EQ(read.facts.backedUp, kMillennium + 7);
    EXPECT_TRUE(read.facts.isLocked);
    EXPECT_EQ(read.facts.comment, "A \x8E remark");
    ASSERT_EQ(ChangeMetadata(path,
                             [](Metadata* io) {
                                 io->facts.created = std::nullopt;
                                 io->facts.isLocked = false;
                                 io->facts.comment.clear();
                             }),
              noErr);
    const Metadata changed = Read(path);
    EXPECT_EQ(changed.facts.created, std::nullopt);
    EXPECT_EQ(changed.facts.backedUp, kMillennium + 7);
    EXPECT_FALSE(changed.facts.isLocked);
    EXPECT_EQ(changed.facts.comment, "");
    EXPECT_EQ(TypeOf(path), OSType('APPL'));
}

TEST_F(MetadataTest, WritesNothingWhenNothingChanges) {
    const auto path = Write("File");
    ASSERT_EQ(GiveType(path, 0), noErr);
    EXPECT_FALSE(Exists("._File"));
}

TEST_F(MetadataTest, KeepsEntriesThatItDoesNotKnow) {
    const auto path = Write("File");
    Write("._File", Head({{0x80000001, 86, 5}, {3, 91, 4}, {2, 95, 3}, {9, 98, 32}, {14, 62, 4}})
                            .append("afp!stuff") +
                        "nameXYZ" + "TEXT" + std::string(28, '\x01'));
    // The list has five entries and ends at 86; entry 14 lies over it: damaged.
    EXPECT_EQ(GiveType(path, 'NEW '), ioErr);
    Write("._File", Head({{0x80000001, 86, 5}, {3, 91, 4}, {2, 95, 3}, {9, 98, 32}, {14, 130, 4}}) +
                        "privaname" + "XYZ" + "TEXT" + std::string(28, '\x01') + "afp!");
    ASSERT_EQ(GiveType(path, 'NEW '), noErr);
    EXPECT_EQ(Fork(path), "XYZ");
    EXPECT_EQ(TypeOf(path), OSType('NEW '));
    const carbon::UniqueFd file(open(Path("._File").c_str(), O_RDONLY));
    const auto document = carbon::AppleDoubleDocument::Read(file.Get());
    ASSERT_TRUE(document);
    const auto text = [&](UInt32 inId) {
        const auto* item = document->Find(inId);
        return item ? std::string(item->bytes.begin(), item->bytes.end()) : "none";
    };
    EXPECT_EQ(text(0x80000001), "priva");
    EXPECT_EQ(text(3), "name");
    EXPECT_EQ(text(14), "afp!");
}

// Attributes as Mac OS X keeps them: one called "a" with the value "value".
TEST_F(MetadataTest, KeepsAttributeAreasAndTheirOffsetsTrue) {
    const auto path = Write("File");
    const std::string area = "ATTR" + Big32(1) + Big32(141) + Big32(136) + Big32(5) +
                             std::string(12, '\0') + Big16(0) + Big16(1) + Big32(136) + Big32(5) +
                             Big16(0) + "\x02" + std::string("a\0\0\0\0", 5);
    const std::string entry = "TEXT" + std::string(28, '\x02') + "\0\0" + std::string(2, '\0') +
                              area + "value" + std::string("\0\0\0", 3);
    ASSERT_EQ(entry.size(), 94u);
    Write("._File", Head({{9, 50, 94}, {2, 144, 2}}) + entry + "rf");
    ASSERT_EQ(ChangeMetadata(path, [](Metadata* io) { io->facts.isLocked = true; }), noErr);
    const auto companion = Contents(Path("._File"));
    const auto start = companion.find("ATTR");
    ASSERT_NE(start, std::string::npos);
    const UInt32 moved = UInt32(start) - 84;
    EXPECT_GT(moved, 0u);
    EXPECT_EQ(companion.substr(start + 8, 12), Big32(141 + moved) + Big32(136 + moved) + Big32(5));
    EXPECT_EQ(companion.substr(136 + moved, 5), "value");
    EXPECT_EQ(companion.substr(start + 36, 4), Big32(136 + moved));
    EXPECT_EQ(Fork(path), "rf");
    EXPECT_EQ(TypeOf(path), OSType('TEXT'));
}

TEST_F(MetadataTest, IsRefusedWhereTheCompanionIsDamagedAndLeavesItAsItIs) {
    const auto path = Write("File");
    const std::vector<std::string> damaged = {
        "no AppleDouble file",
        Head({{9, 50, 32}, {2, 82, 100000}}) + std::string(40, 'x'),               // cut off
        Head({{9, 62, 32}, {2, 94, 8}, {2, 102, 8}}) + std::string(48, 'x'),       // two forks
        Head({{9, 50, 32}, {2, 60, 10}}) + std::string(32, 'x'),                   // one in another
        Head({{9, 38, 32}, {2, 26, 24}}) + std::string(64, 'x'),                   // its own list
        Head({{9, 50, 32}, {0x90000000, 82, 0xFFFFFFFF}}) + std::string(32, 'x'),  // oversized
    };
    for (const auto& text : damaged) {
        Write("._File", text);
        std::vector<UInt8> fork;
        EXPECT_EQ(GiveType(path, 'TEXT'), ioErr) << testing::PrintToString(text);
        EXPECT_EQ(PutFork(path, "new"), ioErr);
        EXPECT_EQ(carbon::ReadResourceFork(path, &fork), ioErr);
        EXPECT_EQ(Read(path).companion, carbon::CompanionState::kDamaged);
        EXPECT_EQ(Contents(Path("._File")), text);
    }
    std::filesystem::remove(Path("._File"));
    std::filesystem::create_symlink("File", Path("._File"));
    EXPECT_EQ(GiveType(path, 'TEXT'), ioErr);
    EXPECT_EQ(Contents(path), "x");
}

TEST_F(MetadataTest, TakesOverWhatAttributesToldBefore) {
    const auto path = Write("File");
    const auto info = "ATTRattr" + std::string(24, '\0');
    if (setxattr(path.c_str(), "user.com.apple.FinderInfo", info.data(), 32, 0) != 0) {
        GTEST_SKIP() << "this file system has no attributes";
    }
    ASSERT_EQ(setxattr(path.c_str(), "user.com.apple.ResourceFork", "old fork", 8, 0), 0);
    EXPECT_EQ(Fork(path), "old fork");
    EXPECT_EQ(+Read(path).facts.resourceLength, 8u);
    ASSERT_EQ(ChangeMetadata(path, [](Metadata* io) { io->facts.isLocked = true; }), noErr);
    EXPECT_EQ(TypeOf(path), OSType('ATTR'));
    EXPECT_EQ(Fork(path), "old fork");
    EXPECT_TRUE(Exists("._File"));
}

TEST_F(MetadataTest, OfFoldersAndVolumesLiesInTheirOwnCompanions) {
    MakeFolder("Folder");
    ASSERT_EQ(ChangeMetadata(Path("Folder"), [](Metadata* io) { io->finderInfo[9] = 4; }), noErr);
    EXPECT_TRUE(Exists("._Folder"));
    EXPECT_EQ(Contents(Path("._Folder"))[50 + 8], 4);  // a folder's numbers have two bytes there
    ASSERT_EQ(ChangeMetadata(MetadataOwner(Path("Folder"), true),
                             [](Metadata* io) { io->finderInfo[9] = 8; }),
              noErr);
    EXPECT_TRUE(Exists("Folder/._."));
    EXPECT_EQ(+Read(Path("Folder")).finderInfo[9], 4);
    EXPECT_EQ(PutFork(Path("Folder"), "x"), notAFileErr);
}

TEST_F(MetadataTest, IsReadableForThoseWhoMayReadTheFile) {
    const auto path = Write("File");
    ASSERT_EQ(chmod(path.c_str(), 0640), 0);
    ASSERT_EQ(GiveType(path, 'TEXT'), noErr);
    struct stat facts;
    ASSERT_EQ(stat(Path("._File").c_str(), &facts), 0);
    EXPECT_EQ(facts.st_mode & 0777u, 0640u);
}

TEST_F(MetadataTest, MovesWithItsFile) {
    MakeFolder("Folder");
    const auto path = Write("File");
    ASSERT_EQ(GiveType(path, 'TEXT'), noErr);
    ASSERT_EQ(carbon::MoveWithMetadata(path, Path("Folder/New")), noErr);
    EXPECT_FALSE(Exists("File") || Exists("._File"));
    EXPECT_EQ(TypeOf(Path("Folder/New")), OSType('TEXT'));
    struct stat facts;
    ASSERT_EQ(stat(Path("Folder/._New").c_str(), &facts), 0);
    EXPECT_EQ(facts.st_nlink, 1u);
}

TEST_F(MetadataTest, IsLeftAloneWhenTheNewNameIsTaken) {
    const auto path = Write("File"), other = Write("Other");
    ASSERT_EQ(GiveType(path, 'ONE '), noErr);
    ASSERT_EQ(GiveType(other, 'TWO '), noErr);
    EXPECT_EQ(carbon::MoveWithMetadata(path, other), dupFNErr);
    EXPECT_EQ(TypeOf(path), OSType('ONE '));
    EXPECT_EQ(TypeOf(other), OSType('TWO '));
    EXPECT_EQ(carbon::MoveWithMetadata(path, Path("Missing/New")), dirNFErr);
    EXPECT_EQ(carbon::MoveWithMetadata(Path("Missing"), Path("New")), fnfErr);
    EXPECT_EQ(TypeOf(path), OSType('ONE '));
}

TEST_F(MetadataTest, OfAFileThatIsGoneIsNotInheritedByItsSuccessor) {
    Write("Old");
    ASSERT_EQ(GiveType(Path("Old"), 'OLD '), noErr);
    std::filesystem::remove(Path("Old"));
    Write("New");
    ASSERT_EQ(carbon::MoveWithMetadata(Path("New"), Path("Old")), noErr);
    EXPECT_EQ(TypeOf(Path("Old")), 0u);
    ASSERT_EQ(GiveType(Path("Old"), 'OLD '), noErr);
    std::filesystem::remove(Path("Old"));
    EXPECT_EQ(carbon::RemoveMetadata(Path("Old")), noErr);
    EXPECT_FALSE(Exists("._Old"));
    EXPECT_EQ(carbon::RemoveMetadata(Path("Old")), noErr);
}

TEST_F(MetadataTest, DoesNotKeepAnEmptyFolderAlive) {
    MakeFolder("Folder");
    Write("Folder/._Gone", Head({{9, 38, 32}}) + std::string(32, '\0'));
    Write("Folder/._~unfinished-12", "half");
    Write("Folder/Here");
    ASSERT_EQ(GiveType(Path("Folder/Here"), 'TEXT'), noErr);
    Write("Folder/._Precious", "somebody's own file");
    ASSERT_EQ(carbon::RemoveOrphanedMetadata(Path("Folder")), noErr);
    EXPECT_FALSE(Exists("Folder/._Gone") || Exists("Folder/._~unfinished-12"));
    EXPECT_TRUE(Exists("Folder/._Here") && Exists("Folder/._Precious"));
}

// A power failure leaves such a file where a new one was not yet written to the disk.
TEST_F(MetadataTest, TakesAnEmptyCompanionForNone) {
    const auto path = Write("File");
    Write("._File", "");
    EXPECT_EQ(Read(path).companion, carbon::CompanionState::kNone);
    EXPECT_EQ(GiveType(path, 'TEXT'), noErr);
    EXPECT_EQ(TypeOf(path), OSType('TEXT'));
    Write("._File", "");
    EXPECT_EQ(PutFork(path, "fork"), noErr);
    EXPECT_EQ(Fork(path), "fork");
    Write("._File", "");
    Write("._Other", "");
    ASSERT_EQ(carbon::MoveWithMetadata(path, Path("Other")), noErr);
    EXPECT_FALSE(Exists("._File"));
    EXPECT_EQ(GiveType(Path("Other"), 'TEXT'), noErr);
}

// The companion holds no such date, so the change was one of nothing, which took back the call.
TEST_F(MetadataTest, KeepsTheNearestDateItCanUnderAnOpenFork) {
    const auto path = Write("File");
    const FSSpec spec = SpecOf(path);
    SInt16 number = 0;
    SInt32 count = 4;
    ASSERT_EQ(FSpOpenRF(&spec, fsRdWrPerm, &number), noErr);
    ASSERT_EQ(FSWrite(number, &count, "fork"), noErr);
    for (const SInt64 date : {-2082844800LL, -1500000000LL, 4000000000LL, 3500000000LL}) {
        const auto change = [&](Metadata* io) { io->facts.created = date; };
        EXPECT_EQ(ChangeMetadata(path, change), noErr) << date;
        EXPECT_EQ(ChangeMetadata(path, change), noErr) << date;
        const auto created = Read(path).facts.created.value();
        EXPECT_EQ(created, date < 0 ? kMillennium - 0x7FFFFFFF : kMillennium + 0x7FFFFFFF);
    }
    EXPECT_EQ(FSClose(number), noErr);
}

TEST_F(MetadataTest, HasNoPlaceBesideANameThatIsTooLong) {
    const auto path = Write(std::string(254, 'n'));
    EXPECT_EQ(Read(path).companion, carbon::CompanionState::kNone);
    EXPECT_EQ(GiveType(path, 'TEXT'), bdNamErr);
    EXPECT_EQ(GiveType(Path("Missing"), 'TEXT'), fnfErr);
}

TEST_F(MetadataTest, IsSoundWhileAForkGrowsAndShrinks) {
    const auto path = Write("File");
    ASSERT_EQ(GiveType(path, 'TEXT'), noErr);
    const FSSpec spec = SpecOf(path);
    SInt16 number = 0;
    ASSERT_EQ(FSpOpenRF(&spec, fsRdWrPerm, &number), noErr);
    std::atomic<bool> isDone = false;
    std::thread writer([&] {
        for (SInt32 i = 0; i < 3000; ++i) EXPECT_EQ(SetEOF(number, i % 2 == 0 ? 9000 : 1), noErr);
        isDone = true;
    });
    while (!isDone) EXPECT_EQ(TypeOf(path), OSType('TEXT'));
    writer.join();
    EXPECT_EQ(FSClose(number), noErr);
}

TEST_F(MetadataTest, NeverLosesAChangeOfAnotherThread) {
    const auto path = Write("File");
    const auto count = [&](size_t inByte) {
        for (int i = 0; i < 100; ++i) {
            EXPECT_EQ(ChangeMetadata(path, [&](Metadata* io) { ++io->extFinderInfo[inByte]; }),
                      noErr);
        }
    };
    std::thread one(count, 8), other(count, 9);
    one.join();
    other.join();
    EXPECT_EQ(+Read(path).extFinderInfo[8], 100);
    EXPECT_EQ(+Read(path).extFinderInfo[9], 100);
}

}  // namespace
