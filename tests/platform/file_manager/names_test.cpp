// Every name on disk has a name of its own in specs, the same one in every process.
#include <algorithm>
#include <set>

#include "FileFixture.h"
#include "file_manager/catalog/names.h"

namespace {

class SpecNameTest : public FileFixture {
  protected:
    // Names of all given files differ, and each leads back to its file, here and in another
    // process.
    void ExpectReachable(const std::vector<std::string>& inNames) {
        for (const auto& name : inNames) Write(name);
        std::set<std::string> seen;
        for (const auto& name : inNames) {
            const FSSpec spec = SpecOf(Path(name));
            EXPECT_LE(spec.name[0], 63) << name;
            EXPECT_TRUE(seen.insert(NameOf(spec)).second) << name;
            EXPECT_EQ(PathOf(spec), Path(name));
            EXPECT_EQ(Ask("path " + Described(spec)), "0 " + Path(name));
        }
    }
};

TEST_F(SpecNameTest, ShortensOnlyNamesOver63Characters) {
    const std::string fits = std::string(59, 'a') + ".txt";
    const std::string tooLong = std::string(60, 'a') + ".txt";
    ExpectReachable({fits, tooLong});
    EXPECT_EQ(NameOf(SpecOf(Path(fits))), fits);
    const auto shortened = NameOf(SpecOf(Path(tooLong)));
    EXPECT_EQ(shortened.size(), 63u);
    EXPECT_TRUE(shortened.starts_with(std::string(50, 'a')));
    EXPECT_NE(shortened.find('#'), std::string::npos);
    EXPECT_TRUE(shortened.ends_with(".txt"));
}

TEST_F(SpecNameTest, ReachesNamesOf255BytesThatShareTheirBeginning) {
    ExpectReachable({std::string(255, 'n'), std::string(254, 'n') + "o", std::string(254, 'n')});
}

TEST_F(SpecNameTest, ReachesNamesInOtherScripts) {
    ExpectReachable(
        {"日本語.txt", "日本誌.txt", "Привет", "😀.png", "😁.png", "Ελλάδα", "caf\u00e9"});
    EXPECT_EQ(NameOf(SpecOf(Path("caf\u00e9"))), "caf\x8e");
    EXPECT_TRUE(NameOf(SpecOf(Path("日本語.txt"))).starts_with("???#"));
}

TEST_F(SpecNameTest, ReachesNamesThatAreNotUtf8) {
    ExpectReachable({"\xff\xfe", "\xff\xfd", "ok\xc3", "\x80.dat"});
}

TEST_F(SpecNameTest, ReachesNamesThatDifferInCaseOnly) {
    ExpectReachable({"readme", "README", "ReadMe", "\u00c9t\u00e9", "\u00e9t\u00e9"});
    EXPECT_EQ(NameOf(SpecOf(Path("README"))), "README");
}

TEST_F(SpecNameTest, ReachesComposedAndDecomposedFormsOfOneName) {
    ExpectReachable({"e\u0301tude", "\u00e9tude", "A\u030a", "\u212b"});
    EXPECT_EQ(NameOf(SpecOf(Path("\u00e9tude"))), "\x8etude");
}

TEST_F(SpecNameTest, FindsADecomposedNameOnDiskByItsPlainSpelling) {
    Write("Cafe\u0301");
    const FSSpec folder = SpecOf(mFolder);
    FSSpec spec;
    ASSERT_EQ(MakeSpec(folder.vRefNum, NumberOf(mFolder), "Caf\x8e", &spec), noErr);
    EXPECT_EQ(PathOf(spec), Path("Cafe\u0301"));
    EXPECT_EQ(NameOf(SpecOf(Path("Cafe\u0301"))), "Caf\x8e");
}

TEST_F(SpecNameTest, ReachesNamesThatLookShortened) {
    const std::string tooLong(100, 'x');
    Write(tooLong);
    const auto shortened = NameOf(SpecOf(Path(tooLong)));
    ExpectReachable({tooLong, shortened, "Track #12.mp3", "#10", "#"});
    EXPECT_EQ(NameOf(SpecOf(Path("Track #12.mp3"))), "Track #12.mp3");
    EXPECT_EQ(NameOf(SpecOf(Path(tooLong))), shortened);
}

TEST_F(SpecNameTest, ExchangesColonAndSlash) {
    Write("a:b");
    EXPECT_EQ(NameOf(SpecOf(Path("a:b"))), "a/b");
    ExpectReachable({"a:b"});
}

TEST_F(SpecNameTest, UsesAnotherCaseOnlyWhileThereIsNoExactName) {
    Write("Notes");
    const FSSpec folder = SpecOf(mFolder);
    const SInt32 number = NumberOf(mFolder);
    FSSpec spec;
    ASSERT_EQ(MakeSpec(folder.vRefNum, number, "NOTES", &spec), noErr);
    EXPECT_EQ(NameOf(spec), "Notes");
    const FSSpec capitals = [&] {
        FSSpec other = spec;
        std::memcpy(other.name + 1, "NOTES", 5);
        return other;
    }();
    EXPECT_EQ(PathOf(capitals), Path("Notes"));
    Write("NOTES");
    EXPECT_EQ(PathOf(capitals), Path("NOTES"));
    EXPECT_EQ(PathOf(spec), Path("Notes"));
}

TEST_F(SpecNameTest, NeverTakesACompanionForAnotherSpelling) {
    Write("._FILE");
    FSSpec spec;
    EXPECT_EQ(MakeSpec(SpecOf(mFolder).vRefNum, NumberOf(mFolder), "._file", &spec), fnfErr);
}

TEST_F(SpecNameTest, KeepsAShortenedNameGoodAfterARenameAndAReplacement) {
    const std::string before = std::string(80, 'b') + ".txt", after = std::string(80, 'c') + ".txt";
    Write(before);
    const FSSpec spec = SpecOf(Path(before));
    std::filesystem::rename(Path(before), Path(after));
    EXPECT_EQ(PathOf(spec), Path(after));
    EXPECT_EQ(PathOf(spec), Path(after));
    EXPECT_EQ(Ask("path " + Described(spec)), "0 " + Path(after));
    Write("new");
    std::filesystem::rename(Path("new"), Path(after));
    EXPECT_EQ(PathOf(spec), Path(after));
    const auto number = [](const FSSpec& inSpec) {
        return NameOf(inSpec).substr(NameOf(inSpec).find('#'));
    };
    EXPECT_EQ(number(SpecOf(Path(after))), number(spec));
    std::filesystem::remove(Path(after));
    EXPECT_EQ(PathOf(spec), "error -43");
}

TEST_F(SpecNameTest, GivesTwoHardLinksWithLongNamesTwoNames) {
    const std::string first(90, 'h'), second = first + '2';
    Write(first);
    std::filesystem::create_hard_link(Path(first), Path(second));
    ExpectReachable({first, second});
}

TEST_F(SpecNameTest, ReachesFoldersWithLongNamesAndWhatIsInThem) {
    const std::string folder(200, 'd'), file = folder + "/" + std::string(200, 'f');
    MakeFolder(folder);
    Write(file);
    const FSSpec spec = SpecOf(Path(file));
    EXPECT_EQ(PathOf(spec), Path(file));
    EXPECT_EQ(PathOf(SpecOf(Path(folder))), Path(folder));
    EXPECT_EQ(Ask("path " + Described(spec)), "0 " + Path(file));
}

TEST(ShortenedName, IsItsBeginningTheNumberAndAShortExtension) {
    EXPECT_EQ(carbon::ShortenedName(std::string(70, 'a') + ".html", 0x1F),
              std::string(55, 'a') + "#1F.html");
    EXPECT_EQ(carbon::ShortenedName(std::string(70, 'a') + ".xhtml", 0x1F),
              std::string(60, 'a') + "#1F");
    EXPECT_EQ(carbon::IdInName("x#1F.html"), 0x1F);
    EXPECT_EQ(carbon::IdInName("x#FFFFFFFFF"), std::nullopt);
    EXPECT_EQ(carbon::IdInName("x#1f"), std::nullopt);
    EXPECT_EQ(carbon::IdInName("x#"), std::nullopt);
    EXPECT_EQ(carbon::IdInName("x#1F.xhtml"), std::nullopt);
}

}  // namespace
