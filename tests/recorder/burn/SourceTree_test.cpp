#include "burn/SourceTree.h"

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/xattr.h>
#include <unistd.h>

#include "burn/BurnFailure.h"
#include "recorder/EngineTest.h"

using namespace recorder;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

namespace {

class Walk : public EngineTest {
  protected:
    SourceTree Of(const std::vector<std::string>& inPaths, bool inWithFinderInfo = false) {
        return WalkSources(inPaths, inWithFinderInfo,
                           [](size_t, const std::string&) { return true; });
    }
    SInt32 Code(const std::vector<std::string>& inPaths) {
        try {
            Of(inPaths);
            return noErr;
        } catch (const BurnFailure& failure) {
            return failure.Code();
        }
    }
};

TEST_F(Walk, FindsEverythingWithParentsFirstAndNamesDescending) {
    Put(mSource / "b/file", 10);
    Put(mSource / "a", 10);
    fs::create_symlink("a", mSource / "c");
    const auto tree = Of({mSource});
    std::vector<std::string> names;
    for (const auto& node : tree.nodes) names.push_back(node.name);
    EXPECT_THAT(names, ElementsAre("", "source", "c", "b", "a", "file"));
    EXPECT_EQ(tree.PathOf(5), mSource / "b/file");
    EXPECT_EQ(tree.nodes[2].target, "a");
}

TEST_F(Walk, ContentIsCountedInWholeBlocks) {
    Put(mSource / "one", 1);
    Put(mSource / "two", 2049);
    Put(mSource / "none", 0);
    EXPECT_EQ(Of({mSource}).contentBytes, UInt64(3 * 2048));
}

TEST_F(Walk, TwoItemsOfOneNameAreRefused) {
    Put(mRoot / "x/same", 1);
    Put(mRoot / "y/same", 1);
    EXPECT_EQ(Code({mRoot / "x/same", mRoot / "y/same"}), dupFNErr);
    EXPECT_EQ(Code({mSource, mSource.string() + "/"}), dupFNErr);
}

TEST_F(Walk, NamesThatDifferInCaseAreTwoItems) {
    Put(mRoot / "x/same", 1);
    Put(mRoot / "y/SAME", 1);
    EXPECT_EQ(Of({mRoot / "x/same", mRoot / "y/SAME"}).nodes.size(), 3u);
}

TEST_F(Walk, MissingItemIsFileNotFound) {
    EXPECT_EQ(Code({mSource / "not there"}), fnfErr);
}

TEST_F(Walk, PipesSocketsAndDevicesAreReportedByName) {
    ASSERT_EQ(mkfifo((mSource / "a pipe").c_str(), 0600), 0);
    const int fd = socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    snprintf(address.sun_path, sizeof address.sun_path, "%s", (mSource / "a socket").c_str());
    ASSERT_EQ(bind(fd, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    close(fd);
    const auto tree = Of({mSource, "/dev/null"});
    EXPECT_THAT(tree.report,
                ElementsAre(HasSubstr("/dev/null: a device"), HasSubstr("a socket: a socket"),
                            HasSubstr("a pipe: a pipe")));
    EXPECT_EQ(tree.nodes.size(), 2u);
}

TEST_F(Walk, NamesThatJolietChangesAreReported) {
    Put(mSource / "fine, ünïcödé 日本", 1);
    Put(mSource / "what?", 1);
    Put(mSource / std::string(104, 'n'), 1);
    Put(mSource / "😀", 1);
    Put(mSource / "\xFF\xFE", 1);
    EXPECT_THAT(Of({mSource}).report,
                ElementsAre(HasSubstr("is not UTF-8"), HasSubstr("beyond the first 65,536"),
                            HasSubstr("what?: the name"), HasSubstr("more than 103 characters")));
}

TEST_F(Walk, LinksThatJolietCannotHoldAreReported) {
    fs::create_symlink("nowhere", mSource / "way");
    EXPECT_THAT(Of({mSource}).report,
                ElementsAre(AllOf(HasSubstr("source/way: a symbolic link"), HasSubstr("Joliet"))));
}

TEST_F(Walk, NamesThatAreOneToHFSPlusAreReportedForAHybrid) {
    for (const char* name : {"Readme", "README", "other", "caf\xC3\xA9", "cafe\xCC\x81", "STRASSE"})
        Put(mSource / name, 1);
    Put(mSource / "deep/README", 1);
    const auto everything = [](size_t, const std::string&) { return true; };
    EXPECT_THAT(WalkSources({mSource}, true, everything).report,
                UnorderedElementsAre(
                    AllOf(HasSubstr("source/README: HFS+"), HasSubstr("\"Readme\"")),
                    AllOf(HasSubstr("source/cafe\xCC\x81: HFS+"), HasSubstr("\"caf\xC3\xA9\""))));
    EXPECT_THAT(WalkSources({mSource}, false, everything).report, IsEmpty());
}

TEST_F(Walk, ItemsThatAreOneToHFSPlusAreReportedForAHybrid) {
    Put(mSource / "a", 1);
    Put(mRoot / "elsewhere/A", 1);
    EXPECT_THAT(WalkSources({mSource / "a", mRoot / "elsewhere/A"}, true,
                            [](size_t, const std::string&) { return true; })
                    .report,
                ElementsAre(HasSubstr("HFS+ cannot tell its name")));
}

TEST_F(Walk, UnreadableFilesAndFoldersAreNamed) {
    Put(mSource / "secret", 1);
    fs::create_directory(mSource / "closed");
    fs::permissions(mSource / "secret", fs::perms::none);
    fs::permissions(mSource / "closed", fs::perms::none);
    const AsAnybody anybody;
    EXPECT_THAT(Of({mSource}).unreadable,
                ElementsAre(HasSubstr("secret: cannot be read"), HasSubstr("closed")));
}

TEST_F(Walk, ALinkAsItemIsFollowedAndALinkInsideAFolderIsKept) {
    Put(mSource / "file", 5);
    fs::create_symlink("source", mRoot / "way");
    fs::create_symlink("nowhere", mSource / "dangling");
    const auto tree = Of({mRoot / "way"});
    EXPECT_EQ(tree.nodes[1].kind, SourceNode::Kind::Folder);
    EXPECT_EQ(tree.nodes[1].name, "way");
    EXPECT_EQ(tree.nodes[3].kind, SourceNode::Kind::Link);
}

TEST_F(Walk, StopsWhenItsObserverSaysSo) {
    WriteManyFiles(mSource, 300, 10);
    EXPECT_THROW(
        WalkSources({mSource}, false, [](size_t found, const std::string&) { return found < 100; }),
        BurnCancelled);
}

TEST_F(Walk, CompanionOfAnItemGoesAlongAndTellsTypeAndCreator) {
    Put(mSource / "letter", 5);
    std::string companion("\x00\x05\x16\x07\x00\x02\x00\x00", 8);
    companion += std::string(16, '\0') + std::string("\x00\x01", 2);
    companion += std::string("\x00\x00\x00\x09\x00\x00\x00\x26\x00\x00\x00\x20", 12) + "TEXTttxt" +
                 std::string(24, '\0');
    std::ofstream(mSource / "._letter", std::ios::binary) << companion;
    const auto tree = Of({mSource / "letter"}, true);
    ASSERT_EQ(tree.nodes.size(), 3u);
    EXPECT_EQ(tree.nodes[1].name, "letter");
    EXPECT_EQ(tree.nodes[1].type, OSType('TEXT'));
    EXPECT_EQ(tree.nodes[1].creator, OSType('ttxt'));
    EXPECT_EQ(tree.nodes[2].name, "._letter");
}

TEST_F(Walk, DamagedCompanionsAreIgnored) {
    for (size_t size : {0, 10, 26, 37}) {
        Put(mSource / "file", 5);
        std::ofstream(mSource / "._file", std::ios::binary)
            << std::string("\x00\x05\x16\x07\x00\x02\x00\x00", 8) + std::string(16, '\0') +
                   std::string(size, '\xFF');
        EXPECT_EQ(Of({mSource / "file"}, true).nodes[1].type, 0u);
    }
}

TEST_F(Walk, AttributesOfAFileWithoutACompanionBecomeOne) {
    const std::string info = "TEXTttxt" + std::string(24, '\0'), fork = "resources";
    Put(mSource / "letter", 5);
    Put(mSource / "plain", 5);
    const std::string path = mSource / "letter";
    if (setxattr(path.c_str(), "user.com.apple.FinderInfo", info.data(), info.size(), 0) != 0)
        GTEST_SKIP() << "no extended attributes here";
    ASSERT_EQ(setxattr(path.c_str(), "user.com.apple.ResourceFork", fork.data(), fork.size(), 0),
              0);
    for (const std::string& item : {mSource.string(), path}) {
        const auto tree = Of({item}, true);
        const auto companion =
            std::find_if(tree.nodes.begin(), tree.nodes.end(),
                         [](const SourceNode& inNode) { return inNode.name == "._letter"; });
        ASSERT_NE(companion, tree.nodes.end());
        const std::string bytes(companion->contents.begin(), companion->contents.end());
        EXPECT_EQ(bytes.size(), 26 + 2 * 12 + 32 + fork.size());
        EXPECT_EQ(bytes.substr(0, 8), std::string("\0\x05\x16\x07\0\x02\0\0", 8));
        EXPECT_EQ(bytes.substr(50, 32), info);
        EXPECT_EQ(bytes.substr(82), fork);
        EXPECT_EQ(companion->facts.st_size, off_t(bytes.size()));
        const auto letter =
            std::find_if(tree.nodes.begin(), tree.nodes.end(),
                         [](const SourceNode& inNode) { return inNode.name == "letter"; });
        EXPECT_EQ(letter->creator, OSType('ttxt'));
        EXPECT_THAT(tree.report, ElementsAre(HasSubstr("resource fork lies beside it")));
    }
    EXPECT_EQ(Of({mSource}).nodes.size(), 5u) << "none for the plain file";
}

TEST_F(Walk, AttributesGiveWayToACompanion) {
    Put(mSource / "letter", 5);
    const std::string path = mSource / "letter", info = "PICTogle" + std::string(24, '\0');
    if (setxattr(path.c_str(), "user.com.apple.FinderInfo", info.data(), info.size(), 0) != 0)
        GTEST_SKIP() << "no extended attributes here";
    std::ofstream(mSource / "._letter") << "anything";
    const auto tree = Of({mSource}, true);
    ASSERT_EQ(tree.nodes.size(), 4u);
    for (const auto& node : tree.nodes) {
        EXPECT_TRUE(node.contents.empty());
        EXPECT_EQ(node.type, 0u);
    }
}

TEST_F(Walk, CompanionOfANameThatIsTooLongIsReported) {
    const std::string name(254, 'n'), path = mSource / name;
    Put(path, 5);
    const std::string info = "TEXTttxt" + std::string(24, '\0');
    if (setxattr(path.c_str(), "user.com.apple.FinderInfo", info.data(), info.size(), 0) != 0)
        GTEST_SKIP() << "no extended attributes here";
    const auto tree = Of({mSource});
    EXPECT_EQ(tree.nodes.size(), 3u);
    EXPECT_THAT(tree.report, ::testing::Contains(HasSubstr("too long for a companion")));
}

}  // namespace
