// Iterators over folders: the same entries in the same order as by index, the same facts as one by
// one, whatever is asked for.
#include <sys/xattr.h>

#include <unistd.h>

#include "VolumeFixture.h"

namespace {

using Names = std::vector<std::string>;

constexpr FSCatalogInfoBitmap kLittle = kFSCatInfoFinderInfo | kFSCatInfoFinderXInfo |
                                        kFSCatInfoParentDirID | kFSCatInfoVolume |
                                        kFSCatInfoValence;

// An iterator over a folder, closed at the end.
class Iterator {
  public:
    explicit Iterator(const std::string& inPath) {
        FSRef ref;
        EXPECT_EQ(FSPathMakeRef(reinterpret_cast<const UInt8*>(inPath.c_str()), &ref, nullptr),
                  noErr);
        EXPECT_EQ(FSOpenIterator(&ref, kFSIterateFlat, &mIterator), noErr);
    }
    ~Iterator() { EXPECT_EQ(FSCloseIterator(mIterator), noErr); }
    Iterator(const Iterator&) = delete;
    Iterator& operator=(const Iterator&) = delete;

    // The next so many; their facts and references stay until the next call.
    OSErr Next(ItemCount inMost, FSCatalogInfoBitmap inWhich, Names* outNames) {
        infos.assign(inMost, {});
        specs.assign(inMost, {});
        ItemCount count = 77;
        const OSErr error = FSGetCatalogInfoBulk(mIterator, inMost, &count, &isChanged, inWhich,
                                                 inWhich == 0 ? nullptr : infos.data(), nullptr,
                                                 specs.data(), nullptr);
        for (ItemCount i = 0; i < count; ++i) outNames->push_back(TextOf(specs[i].name));
        return error;
    }
    Names All(ItemCount inMost, FSCatalogInfoBitmap inWhich) {
        Names names;
        OSErr error;
        while ((error = Next(inMost, inWhich, &names)) == noErr) continue;
        EXPECT_EQ(error, errFSNoMoreItems);
        return names;
    }
    FSIterator Get() const { return mIterator; }

    std::vector<FSCatalogInfo> infos;
    std::vector<FSSpec> specs;
    Boolean isChanged = false;

  private:
    FSIterator mIterator = nullptr;
};

class Iteration : public VolumeFixture {
  protected:
    // One of each kind.
    void MakeEntries() {
        Write("Disk/plain", "12345");
        const auto attribute = Write("Disk/with attribute");
        const char info[33] = "TEXTttxt";
        setxattr(attribute.c_str(), "user.com.apple.FinderInfo", info, 32, 0);
        EXPECT_EQ(HCreate(mVolume, 2, PString("with companion"), 'ttxt', 'TEXT'), noErr);
        Write("Disk/locked");
        EXPECT_EQ(HSetFLock(mVolume, 2, PString("locked")), noErr);
        MakeFolder("Disk/folder");
        Write("Disk/folder/one");
        Write("Disk/folder/two");
        MakeFolder("Disk/empty");
        EXPECT_EQ(symlink("plain", Path("Disk/link").c_str()), 0);
        Write("Disk/caf\xC3\xA9");
        Write("Disk/with#number");
        Write("Disk/" + std::string(100, 'l'));
    }
    // What is known of the same object asked for alone.
    static FSCatalogInfo Alone(const FSSpec& inSpec, FSCatalogInfoBitmap inWhich) {
        FSRef ref;
        FSCatalogInfo info{};
        EXPECT_EQ(FSpMakeFSRef(&inSpec, &ref), noErr) << TextOf(inSpec.name);
        EXPECT_EQ(FSGetCatalogInfo(&ref, inWhich, &info, nullptr, nullptr, nullptr), noErr);
        return info;
    }
    void ExpectAsAlone(FSCatalogInfoBitmap inWhich) {
        Iterator iterator(Path("Disk"));
        Names names;
        EXPECT_EQ(iterator.Next(100, inWhich, &names), errFSNoMoreItems);
        EXPECT_EQ(names.size(), 10u);
        for (size_t i = 0; i < names.size(); ++i) {
            auto alone = Alone(iterator.specs[i], inWhich);
            for (auto* field : {&alone, &iterator.infos[i]}) {
                if (!(inWhich & kFSCatInfoVolume)) field->volume = 0;
                if (!(inWhich & kFSCatInfoParentDirID)) field->parentDirID = 0;
                if (!(inWhich & kFSCatInfoValence)) field->valence = 0;
            }
            EXPECT_EQ(std::memcmp(&alone, &iterator.infos[i], sizeof alone), 0) << names[i];
        }
    }
};

TEST_F(Iteration, GoesInTheOrderOfIndexesInWhateverPortions) {
    MakeEntries();
    const auto names = Entries(2);
    ASSERT_EQ(names.size(), 10u);
    for (const ItemCount most : {1u, 3u, 10u, 11u}) {
        EXPECT_EQ(Iterator(Path("Disk")).All(most, kFSCatInfoNone), names) << most;
        EXPECT_EQ(Iterator(Path("Disk")).All(most, kLittle), names) << most;
        EXPECT_EQ(Iterator(Path("Disk")).All(most, kFSCatInfoGettableInfo), names) << most;
    }
}

TEST_F(Iteration, TellsOfEachEntryWhatIsToldOfItAlone) {
    MakeEntries();
    for (const FSCatalogInfoBitmap which :
         {FSCatalogInfoBitmap(kFSCatInfoFinderInfo), FSCatalogInfoBitmap(kFSCatInfoValence),
          kLittle, FSCatalogInfoBitmap(kFSCatInfoNodeFlags | kFSCatInfoNodeID),
          FSCatalogInfoBitmap(kFSCatInfoGettableInfo & ~kFSCatInfoAccessDate)}) {
        SCOPED_TRACE(which);
        ExpectAsAlone(which);
    }
}

TEST_F(Iteration, GivesReferencesAndLongNames) {
    MakeEntries();
    Iterator iterator(Path("Disk"));
    FSRef refs[20];
    static HFSUniStr255 sNames[20];
    ItemCount count = 0;
    EXPECT_EQ(FSGetCatalogInfoBulk(iterator.Get(), 20, &count, nullptr, kFSCatInfoNone, nullptr,
                                   refs, nullptr, sNames),
              errFSNoMoreItems);
    ASSERT_EQ(count, 10u);
    int longest = 0;
    for (ItemCount i = 0; i < count; ++i) {
        EXPECT_TRUE(std::filesystem::exists(std::filesystem::symlink_status(PathOf(refs[i]))));
        longest = std::max(longest, int(sNames[i].length));
    }
    EXPECT_EQ(longest, 100);
}

TEST_F(Iteration, SeesAtOnceWhatComesAndGoes) {
    for (const char* name : {"a", "b", "c", "d"}) Write("Disk/" + std::string(name));
    Iterator iterator(Path("Disk"));
    Names names;
    EXPECT_EQ(iterator.Next(1, kLittle, &names), noErr);
    EXPECT_FALSE(iterator.isChanged);
    ASSERT_EQ(std::system(("rm " + Path("Disk/b") + "; touch " + Path("Disk/c2")).c_str()), 0);
    EXPECT_EQ(iterator.Next(2, kLittle, &names), noErr);
    EXPECT_TRUE(iterator.isChanged);
    EXPECT_EQ(names, (Names{"a", "c", "c2"}));
    EXPECT_EQ(iterator.Next(2, kLittle, &names), errFSNoMoreItems);
    EXPECT_EQ(names.back(), "d");
    Write("Disk/e");
    EXPECT_EQ(iterator.Next(2, kLittle, &names), errFSNoMoreItems);
    EXPECT_EQ(names.back(), "e");
}

TEST_F(Iteration, SeesAtOnceWhatIsWrittenBesideAFile) {
    for (const char* name : {"a", "b"}) Write("Disk/" + std::string(name));
    Names names;
    Iterator(Path("Disk")).Next(2, kLittle, &names);
    FInfo info{};
    info.fdType = 'TEXT';
    EXPECT_EQ(HSetFInfo(mVolume, 2, PString("b"), &info), noErr);
    Iterator iterator(Path("Disk"));
    EXPECT_EQ(iterator.Next(3, kLittle, &names), errFSNoMoreItems);
    std::memcpy(&info, iterator.infos[1].finderInfo, sizeof info);
    EXPECT_EQ(+info.fdType, UInt32('TEXT'));
}

TEST_F(Iteration, FollowsItsFolderAndEndsWithIt) {
    MakeFolder("Disk/folder");
    for (const char* name : {"a", "b"}) Write("Disk/folder/" + std::string(name));
    Iterator iterator(Path("Disk/folder"));
    Names names;
    EXPECT_EQ(iterator.Next(1, kLittle, &names), noErr);
    std::filesystem::rename(Path("Disk/folder"), Path("Disk/moved"));
    EXPECT_EQ(iterator.Next(1, kLittle, &names), noErr);
    EXPECT_EQ(names, (Names{"a", "b"}));
    std::filesystem::remove_all(Path("Disk/moved"));
    EXPECT_EQ(iterator.Next(1, kLittle, &names), dirNFErr);
}

TEST_F(Iteration, RefusesWhatCannotBe) {
    FSRef ref, file;
    FSIterator iterator = nullptr;
    EXPECT_EQ(RefOf(Path("Disk"), &ref), noErr);
    EXPECT_EQ(RefOf(Write("Disk/file"), &file), noErr);
    EXPECT_EQ(FSOpenIterator(nullptr, kFSIterateFlat, &iterator), paramErr);
    EXPECT_EQ(FSOpenIterator(&ref, kFSIterateFlat, nullptr), paramErr);
    EXPECT_EQ(FSOpenIterator(&ref, kFSIterateSubtree, &iterator), errFSIteratorNotSupported);
    EXPECT_EQ(FSOpenIterator(&ref, kFSIterateDelete, &iterator), errFSIteratorNotSupported);
    EXPECT_EQ(FSOpenIterator(&ref, 4, &iterator), errFSBadIteratorFlags);
    EXPECT_EQ(FSOpenIterator(&file, kFSIterateFlat, &iterator), errFSNotAFolder);
    EXPECT_EQ(FSCloseIterator(nullptr), errFSIteratorNotFound);
    const auto bulk = [&](FSIterator inIterator, ItemCount inMost, FSCatalogInfoBitmap inWhich) {
        ItemCount count = 1;
        const OSErr error = FSGetCatalogInfoBulk(inIterator, inMost, &count, nullptr, inWhich,
                                                 nullptr, nullptr, nullptr, nullptr);
        EXPECT_EQ(count, error == errFSNoMoreItems ? 1u : 0u);
        return error;
    };
    const Iterator sound(Path("Disk"));
    EXPECT_EQ(bulk(sound.Get(), 0, kFSCatInfoNone), errFSBadItemCount);
    EXPECT_EQ(bulk(sound.Get(), 2, kFSCatInfoVolume), paramErr);
    EXPECT_EQ(bulk(sound.Get(), 2, 0x80000000), errFSBadInfoBitmap);
    EXPECT_EQ(bulk(nullptr, 2, kFSCatInfoNone), errFSIteratorNotFound);
    EXPECT_EQ(bulk(sound.Get(), 2, kFSCatInfoNone), errFSNoMoreItems);
    EXPECT_EQ(FSGetCatalogInfoBulk(sound.Get(), 1, nullptr, nullptr, kFSCatInfoNone, nullptr,
                                   nullptr, nullptr, nullptr),
              paramErr);
}

}  // namespace
