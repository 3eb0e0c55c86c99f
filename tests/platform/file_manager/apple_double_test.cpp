// Companion files: read when sound, ignored when not.
#include "file_manager/metadata/apple_double.h"

#include <sys/stat.h>
#include <sys/xattr.h>

#include "FileFixture.h"

namespace {

using carbon::AppleDoubleEntry;

std::string Big32(UInt32 inNumber) {
    return {char(inNumber >> 24), char(inNumber >> 16), char(inNumber >> 8), char(inNumber)};
}

std::string Big16(UInt32 inNumber) {
    return {char(inNumber >> 8), char(inNumber)};
}

std::string Head(const std::vector<AppleDoubleEntry>& inEntries, UInt32 inMagic = 0x00051607,
                 UInt32 inVersion = 0x00020000) {
    std::string text = Big32(inMagic) + Big32(inVersion) + "Mac OS X        ";
    text += Big16(UInt32(inEntries.size()));
    for (const auto& entry : inEntries) {
        text += Big32(entry.id) + Big32(entry.offset) + Big32(entry.length);
    }
    return text;
}

std::string FinderInfo() {
    return "TEXTttxt" + Big16(0x4000) + Big16(7) + Big16(9) + Big16(0xFFFE) + Big16(128) +
           std::string(6, '\0') + "\x01\x02" + Big16(3) + Big32(77);
}

// As a Mac writes it: Finder information, then the resource fork.
std::string Companion() {
    return Head({{9, 50, 32}, {2, 82, 300}}) + FinderInfo() + std::string(300, 'r');
}

class AppleDoubleTest : public FileFixture {
  protected:
    OSType TypeOf(const std::string& inName) {
        const FSSpec spec = SpecOf(Path(inName));
        FInfo info{};
        EXPECT_EQ(FSpGetFInfo(&spec, &info), noErr);
        return info.fdType;
    }
};

TEST_F(AppleDoubleTest, GivesFinderInfoInTheMachinesOrderAndTheForksLength) {
    Write("File");
    Write("._File", Companion());
    const FSSpec spec = SpecOf(Path("File"));
    FInfo info{};
    ASSERT_EQ(FSpGetFInfo(&spec, &info), noErr);
    EXPECT_EQ(+info.fdType, OSType('TEXT'));
    EXPECT_EQ(+info.fdCreator, OSType('ttxt'));
    EXPECT_EQ(+info.fdFlags, kIsInvisible);
    EXPECT_EQ(+info.fdLocation.v, 7);
    EXPECT_EQ(+info.fdLocation.h, 9);
    EXPECT_EQ(+info.fdFldr, -2);
    const auto catalog = InfoOf(Path("File"));
    EXPECT_EQ(std::memcmp(catalog.finderInfo, &info, sizeof info), 0);
    FXInfo further;
    std::memcpy(&further, catalog.extFinderInfo, sizeof further);
    EXPECT_EQ(+further.fdIconID, 128);
    EXPECT_EQ(further.fdScript, 1);
    EXPECT_EQ(further.fdXFlags, 2);
    EXPECT_EQ(+further.fdComment, 3);
    EXPECT_EQ(+further.fdPutAway, 77);
    EXPECT_EQ(+catalog.rsrcLogicalSize, 300u);
    EXPECT_EQ(+catalog.rsrcPhysicalSize, 4096u);
}

TEST_F(AppleDoubleTest, GivesDatesAndTheLock) {
    Write("File");
    Write("._File", Head({{8, 50, 16}, {10, 66, 4}}) + Big32(10) + Big32(0) + Big32(UInt32(-10)) +
                        Big32(0x80000000) + Big32(1));
    const auto info = InfoOf(Path("File"));
    const UInt32 epoch = 946684800u + 2082844800u;
    EXPECT_EQ(+info.createDate.lowSeconds, epoch + 10);
    EXPECT_EQ(+info.backupDate.lowSeconds, epoch - 10);
    EXPECT_EQ(info.nodeFlags & kFSNodeLockedMask, kFSNodeLockedMask);
}

TEST_F(AppleDoubleTest, GivesAFoldersOwnRecord) {
    MakeFolder("Folder");
    Write("._Folder", Head({{9, 38, 32}}) + Big16(1) + Big16(2) + Big16(3) + Big16(4) +
                          Big16(0x400) + std::string(22, '\0'));
    const auto info = InfoOf(Path("Folder"));
    DInfo record;
    std::memcpy(&record, info.finderInfo, sizeof record);
    EXPECT_EQ(+record.frRect.right, 4);
    EXPECT_EQ(+record.frFlags, kHasCustomIcon);
    const FSSpec spec = SpecOf(Path("Folder"));
    FInfo file;
    EXPECT_EQ(FSpGetFInfo(&spec, &file), fnfErr);
}

TEST_F(AppleDoubleTest, IsIgnoredWhenItIsMalformed) {
    const std::string rest = FinderInfo() + std::string(300, 'r');
    const std::vector<std::string> malformed = {
        "",
        "short",
        Head({{9, 50, 32}}, 0x00051600) + rest,              // AppleSingle
        Head({{9, 50, 32}}, 0x00051607, 0x00030000) + rest,  // no such version
        Head({{9, 50, 32}, {2, 82, 100000}}) + rest,         // beyond the end
        Head({{9, 50, 32}, {2, 60, 100}}) + rest,            // one over the other
        Head({{9, 10, 32}, {2, 82, 300}}) + rest,            // over the list
        Head({{9, 0xFFFFFFF0, 0x20}, {2, 82, 300}}) + rest,  // the sum has more than 32 bits
        Head({{9, 50, 32}, {2, 82, 300}}).substr(0, 40),     // a list that ends early
        Companion().substr(0, 24) + "\xFF\xFF" + Companion().substr(26),
    };
    Write("File");
    for (const auto& text : malformed) {
        Write("._File", text);
        EXPECT_EQ(TypeOf("File"), 0u) << testing::PrintToString(text);
        EXPECT_EQ(+InfoOf(Path("File")).rsrcLogicalSize, 0u);
    }
    Write("._File", Companion());
    EXPECT_EQ(TypeOf("File"), OSType('TEXT'));
}

TEST_F(AppleDoubleTest, MayBeCutOrChangedAnywhereWithoutHarm) {
    Write("File");
    const std::string good = Companion();
    for (size_t i = 0; i < 82; ++i) {
        Write("._File", good.substr(0, i));
        EXPECT_EQ(TypeOf("File"), 0u) << i;
        std::string changed = good;
        changed[i] = char(changed[i] ^ 0xFF);
        Write("._File", changed);
        InfoOf(Path("File"));
    }
}

TEST_F(AppleDoubleTest, CountsFinderInfoOfZerosAndShortOnesAsNone) {
    Write("File");
    Write("._File", Head({{9, 38, 32}}) + std::string(32, '\0'));
    EXPECT_EQ(TypeOf("File"), 0u);
    Write("._File", Head({{9, 38, 16}}) + FinderInfo().substr(0, 16));
    EXPECT_EQ(TypeOf("File"), 0u);
}

TEST_F(AppleDoubleTest, IsNeverALinkOrAPipe) {
    Write("File");
    Write("Real", Companion());
    std::filesystem::create_symlink("Real", Path("._File"));
    EXPECT_EQ(TypeOf("File"), 0u);
    std::filesystem::remove(Path("._File"));
    ASSERT_EQ(mkfifo(Path("._File").c_str(), 0600), 0);
    EXPECT_EQ(TypeOf("File"), 0u);
}

TEST_F(AppleDoubleTest, PrecedesTheAttribute) {
    Write("File");
    const auto info = "ATTRattr" + std::string(24, '\0');
    if (setxattr(Path("File").c_str(), "user.com.apple.FinderInfo", info.data(), 32, 0) != 0) {
        GTEST_SKIP() << "this file system has no attributes";
    }
    EXPECT_EQ(TypeOf("File"), OSType('ATTR'));
    Write("._File", Companion());
    EXPECT_EQ(TypeOf("File"), OSType('TEXT'));
}

}  // namespace
