// Searching the files of a volume, on volumes that search by themselves and on those walked
// through.
#include "vantor/files/CatalogSearch.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <thread>

#include "support/FileFaults.h"
#include "support/MountedVolume.h"
#include "support/PascalString.h"
#include "support/RealCall.h"

namespace {

using Names = std::vector<std::string>;

// A search block with its two records.
struct Search {
    Search(const MountedVolume& inVolume, SInt32 inBits, SInt32 inRequested = 100)
        : found(static_cast<std::size_t>(inRequested)) {
        block.ioVRefNum = inVolume.Number();
        block.ioMatchPtr = found.data();
        block.ioReqMatchCount = inRequested;
        block.ioSearchBits = inBits;
        block.ioSearchInfo1 = &values;
        block.ioSearchInfo2 = &masks;
    }
    void SeekName(const std::string& inName) {
        std::memcpy(name, PString(inName), inName.size() + 1);
        values.hFileInfo.ioNamePtr = name;
    }
    OSErr Run() { return PBCatSearchSyncCompat(&block); }
    // What this run found, in alphabetical order.
    Names Found() const {
        Names names;
        for (SInt32 i = 0; i < block.ioActMatchCount; ++i) {
            names.push_back(TextOf(found[static_cast<std::size_t>(i)].name));
        }
        std::sort(names.begin(), names.end());
        return names;
    }

    CSParam block = {};
    CInfoPBRec values = {}, masks = {};
    Str255 name = "";
    std::vector<FSSpec> found;
};

// The same on both kinds of volumes.
class BothSearches : public testing::TestWithParam<OptionBits> {
  protected:
    BothSearches() : mVolume(GetParam()) {
        mVolume.MakeFile("Report", 'VtTs', 'TEXT', std::string(100, 'x'));
        mVolume.MakeFile("Letters/report 2", 'VtTs', 'APPL', std::string(2000, 'x'));
        mVolume.MakeFile("Letters/Old/A Report", 'Else', 'TEXT');
        mVolume.MakeFile("Letters/Old/Caf\xC3\xA9", 'Else', 'APPL');
        mVolume.MakeFolder("Reports");
    }
    MountedVolume mVolume;
    StFileFaults mFaults;
};

INSTANTIATE_TEST_SUITE_P(, BothSearches,
                         testing::Values(OptionBits{0}, OptionBits{kPlatformMountNoCatalogSearch}),
                         [](const auto& inInfo) {
                             return inInfo.param == 0 ? "ByVolume" : "Walking";
                         });

TEST_P(BothSearches, FindNamesWhollyOrInPartInAnyCase) {
    Search whole(mVolume, fsSBFullName);
    whole.SeekName("rEPORT");
    EXPECT_EQ(whole.Run(), eofErr);
    EXPECT_EQ(whole.Found(), Names{"Report"});
    Search part(mVolume, fsSBPartialName);
    part.SeekName("REPORT");
    EXPECT_EQ(part.Run(), eofErr);
    EXPECT_EQ(part.Found(), (Names{"A Report", "Report", "Reports", "report 2"}));
}

TEST_P(BothSearches, TellAccentsApart) {
    Search search(mVolume, fsSBPartialName);
    search.SeekName("cafe");
    EXPECT_EQ(search.Run(), eofErr);
    EXPECT_EQ(search.Found(), Names{});
    Search accented(mVolume, fsSBPartialName);
    accented.SeekName("caf\x8E");
    EXPECT_EQ(accented.Run(), eofErr);
    EXPECT_EQ(accented.Found(), Names{"Caf\x8E"});
}

TEST_P(BothSearches, NeedNoSecondRecordForANameAlone) {
    Search search(mVolume, fsSBPartialName);
    search.block.ioSearchInfo2 = nullptr;
    search.SeekName("old");
    EXPECT_EQ(search.Run(), eofErr);
    EXPECT_EQ(search.Found(), Names{"Old"});
}

TEST_P(BothSearches, TakeFilesOrFoldersAlone) {
    Search files(mVolume, fsSBPartialName | fsSBFlAttrib);
    files.SeekName("report");
    files.masks.hFileInfo.ioFlAttrib = kioFlAttribDirMask;
    EXPECT_EQ(files.Run(), eofErr);
    EXPECT_EQ(files.Found(), (Names{"A Report", "Report", "report 2"}));
    Search folders(mVolume, fsSBFlAttrib);
    folders.values.hFileInfo.ioFlAttrib = kioFlAttribDirMask;
    folders.masks.hFileInfo.ioFlAttrib = kioFlAttribDirMask;
    EXPECT_EQ(folders.Run(), eofErr);
    EXPECT_EQ(folders.Found(), (Names{"Disk", "Letters", "Old", "Reports"}));
}

TEST_P(BothSearches, FindLockedFiles) {
    const FSSpec file = mVolume.Spec("Report");
    ASSERT_EQ(FSpSetFLock(&file), noErr);
    Search search(mVolume, fsSBFlAttrib);
    search.values.hFileInfo.ioFlAttrib = kioFlAttribLockedMask;
    search.masks.hFileInfo.ioFlAttrib = kioFlAttribLockedMask | kioFlAttribDirMask;
    EXPECT_EQ(search.Run(), eofErr);
    EXPECT_EQ(search.Found(), Names{"Report"});
    ASSERT_EQ(FSpRstFLock(&file), noErr);
}

TEST_P(BothSearches, FindByFinderInformationUnderAMask) {
    Search search(mVolume, fsSBFlFndrInfo);
    search.values.hFileInfo.ioFlFndrInfo.fdType = 'APPL';
    search.masks.hFileInfo.ioFlFndrInfo.fdType = 0xFFFFFFFF;
    EXPECT_EQ(search.Run(), eofErr);
    EXPECT_EQ(search.Found(), (Names{"Caf\x8E", "report 2"}));
    Search both(mVolume, fsSBFlFndrInfo);
    both.values.hFileInfo.ioFlFndrInfo = {'APPL', 'VtTs', 0, {0, 0}, 0};
    both.masks.hFileInfo.ioFlFndrInfo = {0xFFFFFFFF, 0xFFFFFFFF, 0, {0, 0}, 0};
    EXPECT_EQ(both.Run(), eofErr);
    EXPECT_EQ(both.Found(), Names{"report 2"});
}

TEST_P(BothSearches, FindByRangesBothEndsIncluded) {
    Search search(mVolume, fsSBFlAttrib | fsSBFlLgLen);
    search.masks.hFileInfo.ioFlAttrib = kioFlAttribDirMask;
    search.values.hFileInfo.ioFlLgLen = 100;
    search.masks.hFileInfo.ioFlLgLen = 2000;
    EXPECT_EQ(search.Run(), eofErr);
    EXPECT_EQ(search.Found(), (Names{"Report", "report 2"}));
    search.block.ioCatPosition = {};
    search.values.hFileInfo.ioFlLgLen = 101;
    search.masks.hFileInfo.ioFlLgLen = -1;  // unsigned: the largest
    EXPECT_EQ(search.Run(), eofErr);
    EXPECT_EQ(search.Found(), Names{"report 2"});
}

TEST_P(BothSearches, FindByParentAndByCountOfItems) {
    Search inside(mVolume, fsSBFlParID);
    const SInt32 letters = mVolume.DirID(":Letters");
    inside.values.hFileInfo.ioFlParID = inside.masks.hFileInfo.ioFlParID = letters;
    EXPECT_EQ(inside.Run(), eofErr);
    EXPECT_EQ(inside.Found(), (Names{"Old", "report 2"}));
    Search counts(mVolume, fsSBFlAttrib | fsSBDrNmFls);
    counts.values.dirInfo.ioFlAttrib = counts.masks.dirInfo.ioFlAttrib = kioFlAttribDirMask;
    counts.values.dirInfo.ioDrNmFls = counts.masks.dirInfo.ioDrNmFls = 2;
    EXPECT_EQ(counts.Run(), eofErr);
    EXPECT_EQ(counts.Found(), (Names{"Letters", "Old"}));
}

TEST_P(BothSearches, RefuseCriteriaThatDoNotGoTogether) {
    const auto refused = [&](SInt32 inBits, SInt8 inValue, SInt8 inMask) {
        Search search(mVolume, inBits);
        search.SeekName("x");
        search.values.hFileInfo.ioFlAttrib = inValue;
        search.masks.hFileInfo.ioFlAttrib = inMask;
        return search.Run() == paramErr;
    };
    EXPECT_TRUE(refused(fsSBFlAttrib, 0, 0x04)) << "neither lock nor folder";
    EXPECT_TRUE(refused(fsSBFlAttrib, 0, kioFlAttribLockedMask)) << "folders have no lock";
    EXPECT_TRUE(refused(fsSBDrNmFls, 0, 0)) << "files have no items";
    EXPECT_TRUE(refused(fsSBFlRLgLen, 0, 0)) << "folders have no forks";
    EXPECT_TRUE(refused(fsSBFlAttrib | fsSBDrNmFls, 0, kioFlAttribDirMask));
    EXPECT_TRUE(refused(fsSBFlAttrib | fsSBFlPyLen, kioFlAttribDirMask, kioFlAttribDirMask));
    EXPECT_FALSE(refused(fsSBFlAttrib | fsSBFlPyLen, 0, kioFlAttribDirMask));
}

TEST_P(BothSearches, RefuseMissingRecordsAndNames) {
    Search name(mVolume, fsSBFullName);
    EXPECT_EQ(name.Run(), paramErr);
    name.SeekName("");
    EXPECT_EQ(name.Run(), paramErr);
    name.SeekName(std::string(64, 'x'));
    EXPECT_EQ(name.Run(), paramErr);
    name.SeekName("x");
    name.block.ioMatchPtr = nullptr;
    EXPECT_EQ(name.Run(), paramErr);
    Search masks(mVolume, fsSBFlAttrib);
    masks.block.ioSearchInfo2 = nullptr;
    EXPECT_EQ(masks.Run(), paramErr);
    masks.block.ioSearchInfo1 = nullptr;
    EXPECT_EQ(masks.Run(), paramErr);
}

TEST_P(BothSearches, StopWhenTheArrayIsFullAndGoOnFromThere) {
    Search search(mVolume, fsSBPartialName, 1);
    search.SeekName("report");
    Names all;
    OSErr err;
    int runs = 0;
    while ((err = search.Run()) == noErr && ++runs < 10) {
        ASSERT_EQ(+search.block.ioActMatchCount, 1);
        all.push_back(search.Found()[0]);
    }
    EXPECT_EQ(err, eofErr);
    for (const std::string& name : search.Found()) all.push_back(name);
    std::sort(all.begin(), all.end());
    EXPECT_EQ(all, (Names{"A Report", "Report", "Reports", "report 2"})) << "none twice, none lost";
}

TEST_P(BothSearches, FilesAreFoundByName) {
    FSSpec found[8];
    SInt32 count = -1;
    EXPECT_EQ(
        NameFileSearch(nullptr, mVolume.Number(), PString("Report"), found, 8, &count, true, true),
        eofErr);
    EXPECT_EQ(count, 3) << "files, not the folder";
    EXPECT_EQ(
        NameFileSearch(PString("Disk:"), -32768, PString("report"), found, 8, &count, true, false),
        eofErr);
    ASSERT_EQ(count, 1);
    EXPECT_EQ(found[0].vRefNum, mVolume.Number());
    EXPECT_EQ(+found[0].parID, fsRtDirID);
    EXPECT_EQ(TextOf(found[0].name), "Report");
}

TEST_P(BothSearches, FilesAreFoundByCreatorAndTypeWhereZeroIsAny) {
    const auto count = [&](OSType inCreator, OSType inType) {
        FSSpec found[8];
        SInt32 number = -1;
        EXPECT_EQ(CreatorTypeFileSearch(nullptr, mVolume.Number(), inCreator, inType, found, 8,
                                        &number, true),
                  eofErr);
        return number;
    };
    EXPECT_EQ(count('VtTs', 'APPL'), 1);
    EXPECT_EQ(count('VtTs', 0), 2);
    EXPECT_EQ(count(0, 'TEXT'), 2);
    EXPECT_EQ(count(0, 0), 4) << "every file";
    EXPECT_EQ(count('none', 0), 0);
}

TEST_P(BothSearches, FilesComeInPiecesUntilAllAreFound) {
    Names all;
    FSSpec found;
    SInt32 count = 0;
    OSErr err = noErr;
    for (bool isNew = true; err == noErr && all.size() < 10; isNew = false) {
        err = CreatorTypeFileSearch(nullptr, mVolume.Number(), 0, 0, &found, 1, &count, isNew);
        if (count == 1) all.push_back(TextOf(found.name));
    }
    EXPECT_EQ(err, eofErr);
    std::sort(all.begin(), all.end());
    EXPECT_EQ(all, (Names{"A Report", "Caf\x8E", "Report", "report 2"}));
}

// Many items between those that are sought, and folders between them that are empty or are not.
TEST_P(BothSearches, FindTheSameAmongManyItemsAtOnceAndInPieces) {
    for (int i = 100; i < 300; ++i) {
        const std::string item = "Many/item " + std::to_string(i);
        if (i % 37 == 0)
            mVolume.MakeFile(item + "/sought inside", 'VtTs', 'many');
        else if (i % 41 == 0)
            mVolume.MakeFolder(item);
        else if (i % 43 == 0)
            mVolume.MakeFile(item + " sought", 'VtTs', 'many');
        else
            mVolume.MakeFile(item);
    }
    for (const SInt32 bits : {fsSBPartialName, fsSBFlFndrInfo}) {
        Search whole(mVolume, bits | fsSBFlAttrib);
        const auto prepare = [](Search& ioSearch) {
            ioSearch.SeekName("SOUGHT");
            ioSearch.values.hFileInfo.ioFlFndrInfo.fdType = 'many';
            ioSearch.masks.hFileInfo.ioFlFndrInfo.fdType = 0xFFFFFFFF;
            ioSearch.masks.hFileInfo.ioFlAttrib = kioFlAttribDirMask;
        };
        prepare(whole);
        EXPECT_EQ(whole.Run(), eofErr);
        EXPECT_EQ(whole.Found().size(), 10u);
        Search pieces(mVolume, bits | fsSBFlAttrib, 1);
        prepare(pieces);
        Names all;
        OSErr err = noErr;
        while (err == noErr && all.size() < 20) {
            err = pieces.Run();
            for (const auto& name : pieces.Found()) all.push_back(name);
        }
        EXPECT_EQ(err, eofErr);
        std::sort(all.begin(), all.end());
        EXPECT_EQ(all, whole.Found());
    }
}

// --- What is asked of a volume that searches by itself ---

class SearchRequests : public testing::Test {
  protected:
    // The next answer, given with the block that asked for it; the position moves on by one.
    OSErr Answer(CSParamPtr ioBlock) {
        mStart = ioBlock->ioCatPosition.initialize;
        mBits = ioBlock->ioSearchBits;
        mTime = ioBlock->ioSearchTime;
        mValues = *ioBlock->ioSearchInfo1;
        if (mBits & (fsSBPartialName | fsSBFullName)) mName = TextOf(mValues.hFileInfo.ioNamePtr);
        mMasks = *ioBlock->ioSearchInfo2;
        EXPECT_TRUE(ioBlock->ioNamePtr == nullptr);
        EXPECT_EQ(ioBlock->ioVRefNum, mVolume.Number());
        ++ioBlock->ioCatPosition.initialize;
        ioBlock->ioActMatchCount = 1;
        return mAnswer;
    }
    OSErr BySignature(OSType inCreator, OSType inType, Boolean inNew) {
        return CreatorTypeFileSearch(PString("Disk:"), 0, inCreator, inType, mFound, 1, &mCount,
                                     inNew);
    }
    OSErr ByName(Boolean inNew, Boolean inPartial) {
        return NameFileSearch(nullptr, mVolume.Number(), PString("File"), mFound, 1, &mCount, inNew,
                              inPartial);
    }

    MountedVolume mVolume;
    FSSpec mFound[1];
    SInt32 mCount = -1, mStart = -1, mBits = 0, mTime = -1;
    CInfoPBRec mValues = {}, mMasks = {};
    std::string mName;
    OSErr mAnswer = noErr;
    StFileFaults mFaults;
};

TEST_F(SearchRequests, AreForFilesOnlyAndWithoutATime) {
    gFileFaults.searchCatalog = [&](CSParamPtr ioBlock) { return Answer(ioBlock); };
    ByName(true, true);
    EXPECT_EQ(mBits, fsSBPartialName | fsSBFlAttrib);
    EXPECT_EQ(mName, "File");
    ByName(true, false);
    EXPECT_EQ(mBits, fsSBFullName | fsSBFlAttrib);
    BySignature('VtTs', 0, true);
    EXPECT_EQ(mBits, fsSBFlFndrInfo | fsSBFlAttrib);
    EXPECT_EQ(mTime, 0);
    EXPECT_EQ(mValues.hFileInfo.ioFlAttrib, 0);
    EXPECT_EQ(mMasks.hFileInfo.ioFlAttrib, kioFlAttribDirMask);
    EXPECT_EQ(+mValues.hFileInfo.ioFlFndrInfo.fdCreator, OSType('VtTs'));
    EXPECT_EQ(+mMasks.hFileInfo.ioFlFndrInfo.fdCreator, 0xFFFFFFFF);
    EXPECT_EQ(+mMasks.hFileInfo.ioFlFndrInfo.fdType, 0u);
    EXPECT_EQ(mMasks.hFileInfo.ioFlFndrInfo.fdFlags, 0);
}

TEST_F(SearchRequests, OfEachKindGoOnWhereThatKindStopped) {
    gFileFaults.searchCatalog = [&](CSParamPtr ioBlock) { return Answer(ioBlock); };
    BySignature(0, 0, true);
    BySignature(0, 0, false);
    EXPECT_EQ(mStart, 1);
    ByName(true, true);
    EXPECT_EQ(mStart, 0);
    BySignature(0, 0, false);
    EXPECT_EQ(mStart, 2) << "not disturbed by the names";
    mAnswer = catChangedErr;
    BySignature(0, 0, false);
    BySignature(0, 0, false);
    EXPECT_EQ(mStart, 4) << "a changed catalog does not make it start over";
    for (const OSErr end : {OSErr{eofErr}, OSErr{ioErr}}) {
        mAnswer = noErr;
        BySignature(0, 0, true);
        mAnswer = end;
        BySignature(0, 0, false);
        EXPECT_EQ(mStart, 1);
        BySignature(0, 0, false);
        EXPECT_EQ(mStart, 0) << end;
    }
}

TEST_F(SearchRequests, FindNothingAfterAnError) {
    gFileFaults.searchCatalog = [&](CSParamPtr ioBlock) { return Answer(ioBlock); };
    for (const OSErr good : {OSErr{noErr}, OSErr{eofErr}}) {
        mAnswer = good;
        EXPECT_EQ(BySignature(0, 0, true), good);
        EXPECT_EQ(mCount, 1);
    }
    for (const OSErr bad : {OSErr{catChangedErr}, OSErr{ioErr}}) {
        mAnswer = bad;
        EXPECT_EQ(BySignature(0, 0, true), bad);
        EXPECT_EQ(mCount, 0);
    }
}

// --- What only the walk does ---

class WalkingSearch : public testing::Test {
  protected:
    WalkingSearch() : mVolume(kPlatformMountNoCatalogSearch) {}
    OSErr Next(Boolean inNew, SInt32* outCount) {
        return CreatorTypeFileSearch(nullptr, mVolume.Number(), 0, 0, mFound, 1, outCount, inNew);
    }
    // A folder's date counts whole seconds: far enough away to be another one.
    void Touch(const std::string& inFolder) {
        const auto folder = mVolume.Root() / inFolder;
        std::filesystem::last_write_time(
            folder, std::filesystem::last_write_time(folder) - std::chrono::hours(1));
    }

    MountedVolume mVolume;
    FSSpec mFound[1];
    StFileFaults mFaults;
};

TEST_F(WalkingSearch, IsUsedWhereTheVolumeCannotSearchOrSayAnything) {
    gFileFaults.searchCatalog = [](CSParamPtr) {
        ADD_FAILURE() << "the volume was asked";
        return OSErr{paramErr};
    };
    mVolume.MakeFile("File");
    SInt32 count = 0;
    EXPECT_EQ(Next(true, &count), noErr);
    EXPECT_EQ(count, 1);
    gFileFaults.getVolumeParameters = [](HParmBlkPtr) { return OSErr{paramErr}; };
    EXPECT_EQ(Next(true, &count), noErr);
    EXPECT_EQ(count, 1);
    gFileFaults.getVolumeParameters = [](HParmBlkPtr) { return OSErr{nsvErr}; };
    EXPECT_EQ(Next(true, &count), nsvErr);
    EXPECT_EQ(count, 0);
}

TEST_F(WalkingSearch, BeginsWithTheRootItself) {
    Search search(mVolume, fsSBFullName, 1);
    search.SeekName("Disk");
    EXPECT_EQ(search.Run(), noErr);
    ASSERT_EQ(search.Found(), Names{"Disk"});
    EXPECT_EQ(+search.found[0].parID, fsRtParID);
    EXPECT_EQ(search.found[0].vRefNum, mVolume.Number());
}

TEST_F(WalkingSearch, KeepsTheOtherKindInANegatedSearch) {
    mVolume.MakeFile("File", 'VtTs', 'TEXT');
    mVolume.MakeFile("Other", 'VtTs', 'APPL');
    mVolume.MakeFolder("Folder");
    Search search(mVolume, fsSBNegate | fsSBFlAttrib | fsSBFlFndrInfo);
    search.masks.hFileInfo.ioFlAttrib = kioFlAttribDirMask;
    search.values.hFileInfo.ioFlFndrInfo.fdType = 'TEXT';
    search.masks.hFileInfo.ioFlFndrInfo.fdType = 0xFFFFFFFF;
    EXPECT_EQ(search.Run(), eofErr);
    EXPECT_EQ(search.Found(), (Names{"Disk", "Folder", "Other"}));
}

TEST_F(WalkingSearch, ChangedFolderEndsAContinuedSearch) {
    for (const char* name : {"Sub/a", "Sub/b", "c"}) mVolume.MakeFile(name);
    SInt32 count = 0;
    ASSERT_EQ(Next(true, &count), noErr);
    Touch("");
    // In the root or in Sub by now: whichever it is, the walk comes back to the root.
    OSErr err = noErr;
    for (int i = 0; i < 4 && err == noErr; ++i) err = Next(false, &count);
    EXPECT_EQ(err, catChangedErr);
    EXPECT_EQ(count, 0);
    EXPECT_NE(Next(false, &count), noErr) << "it does not start over by itself";
    EXPECT_EQ(Next(true, &count), noErr);
    EXPECT_EQ(count, 1);
}

TEST_F(WalkingSearch, ChangedVolumeEndsAContinuedSearch) {
    for (const char* name : {"a", "b"}) mVolume.MakeFile(name);
    SInt32 count = 0;
    ASSERT_EQ(Next(true, &count), noErr);
    gFileFaults.getVolumeInfo = [](HParmBlkPtr ioBlock) {
        const OSErr err = REAL_CALL(PBHGetVInfoSync)(ioBlock);
        ioBlock->volumeParam.ioVCrDate += 1;
        return err;
    };
    EXPECT_EQ(Next(false, &count), catChangedErr);
}

TEST_F(WalkingSearch, FinishedPositionIsNotContinued) {
    Search search(mVolume, fsSBPartialName);
    search.SeekName("x");
    ASSERT_EQ(search.Run(), eofErr);
    EXPECT_NE(+search.block.ioCatPosition.initialize, 0);
    EXPECT_EQ(search.Run(), paramErr);
    search.block.ioCatPosition.priv[0] = 0x7000;
    EXPECT_EQ(search.Run(), paramErr) << "deeper than the stack ever was";
    search.block.ioCatPosition.priv[0] = -1;
    EXPECT_EQ(search.Run(), paramErr);
}

TEST_F(WalkingSearch, FinishedSearchStartsOverAtTheNextCall) {
    mVolume.MakeFile("File");
    SInt32 count = 0;
    ASSERT_EQ(Next(true, &count), noErr);
    ASSERT_EQ(Next(false, &count), eofErr);
    EXPECT_EQ(Next(false, &count), noErr);
    EXPECT_EQ(count, 1);
}

TEST_F(WalkingSearch, AnotherVolumeStartsANewSearch) {
    const MountedVolume other(kPlatformMountNoCatalogSearch, "Other");
    mVolume.MakeFile("Here");
    other.MakeFile("There");
    SInt32 count = 0;
    ASSERT_EQ(Next(true, &count), noErr);
    EXPECT_EQ(CreatorTypeFileSearch(nullptr, other.Number(), 0, 0, mFound, 1, &count, false),
              noErr);
    EXPECT_EQ(TextOf(mFound[0].name), "There");
}

TEST_F(WalkingSearch, GoesDeeperThanTheStackWasMadeFor) {
    std::string path;
    for (int depth = 0; depth < 70; ++depth) {
        path += "d/";
        mVolume.MakeFile(path + "leaf");
    }
    Names all;
    SInt32 count = 0;
    OSErr err = noErr;
    for (bool isNew = true; err == noErr && all.size() < 100; isNew = false) {
        err = Next(isNew, &count);
        if (count == 1) all.push_back(TextOf(mFound[0].name));
    }
    EXPECT_EQ(err, eofErr);
    EXPECT_EQ(all, Names(70, "leaf"));
}

TEST_F(WalkingSearch, StopsWhenItsTimeIsOverAndGoesOn) {
    for (int i = 0; i < 20; ++i) mVolume.MakeFile("File " + std::to_string(i));
    gFileFaults.getCatalogInfo = [](CInfoPBPtr ioBlock) {
        std::this_thread::sleep_for(std::chrono::milliseconds(5));  // a slow disk
        return REAL_CALL(PBGetCatInfoSync)(ioBlock);
    };
    Search search(mVolume, fsSBPartialName);
    search.SeekName("File");
    search.block.ioSearchTime = 20;
    ASSERT_EQ(search.Run(), noErr);
    const SInt32 first = search.block.ioActMatchCount;
    EXPECT_LT(first, 20);
    gFileFaults.getCatalogInfo = nullptr;
    search.block.ioSearchTime = 0;
    EXPECT_EQ(search.Run(), eofErr);
    EXPECT_EQ(first + search.block.ioActMatchCount, 20);
}

TEST_F(WalkingSearch, PassesOverFoldersThatMayNotBeRead) {
    if (geteuid() == 0) {
        gFileFaults.getCatalogInfo = [](CInfoPBPtr ioBlock) {
            const SInt16 index = ioBlock->dirInfo.ioFDirIndex;
            const SInt32 folder = ioBlock->dirInfo.ioDrDirID;
            if (index > 0 && folder != fsRtDirID) return OSErr{afpAccessDenied};
            return REAL_CALL(PBGetCatInfoSync)(ioBlock);
        };
    }
    mVolume.MakeFile("Closed/hidden");
    mVolume.MakeFile("File");
    std::filesystem::permissions(mVolume.Root() / "Closed", std::filesystem::perms::none);
    SInt32 count = 0;
    EXPECT_EQ(Next(true, &count), noErr);
    EXPECT_EQ(TextOf(mFound[0].name), "File");
    EXPECT_EQ(Next(false, &count), eofErr);
    std::filesystem::permissions(mVolume.Root() / "Closed", std::filesystem::perms::owner_all);
}

TEST_F(WalkingSearch, ReturnsOtherErrorsOfTheCatalog) {
    mVolume.MakeFile("File");
    gFileFaults.getCatalogInfo = [](CInfoPBPtr ioBlock) {
        return ioBlock->dirInfo.ioFDirIndex > 0 ? OSErr{ioErr}
                                                : REAL_CALL(PBGetCatInfoSync)(ioBlock);
    };
    SInt32 count = 0;
    EXPECT_EQ(Next(true, &count), ioErr);
    EXPECT_EQ(count, 0);
}

// What moves the others to other indexes while the search is at one of them.
TEST_F(WalkingSearch, MissesNothingWhenItemsComeBeforeThoseItIsAt) {
    for (int i = 100; i < 160; ++i) {
        const std::string name = "item " + std::to_string(i) + (i % 10 == 0 ? " sought" : "");
        mVolume.MakeFile(name);
    }
    int readings = 0;
    gFileFaults.getCatalogInfo = [&](CInfoPBPtr ioBlock) {
        const std::string name = "a " + std::to_string(++readings);
        if (ioBlock->dirInfo.ioFDirIndex > 0 && readings < 5) mVolume.MakeFile(name);
        return REAL_CALL(PBGetCatInfoSync)(ioBlock);
    };
    Search search(mVolume, fsSBPartialName);
    search.SeekName("sought");
    EXPECT_EQ(search.Run(), eofErr);
    auto found = search.Found();
    found.erase(std::unique(found.begin(), found.end()), found.end());
    EXPECT_EQ(found, (Names{"item 100 sought", "item 110 sought", "item 120 sought",
                            "item 130 sought", "item 140 sought", "item 150 sought"}));
}

// Only what may be meant is read whole.
TEST_F(WalkingSearch, ReadsLittleOfItemsThatCannotBeMeant) {
    for (int i = 100; i < 200; ++i) mVolume.MakeFile("item " + std::to_string(i));
    mVolume.MakeFile("sought");
    int readings = 0;
    gFileFaults.getCatalogInfo = [&](CInfoPBPtr ioBlock) {
        ++readings;
        return REAL_CALL(PBGetCatInfoSync)(ioBlock);
    };
    Search search(mVolume, fsSBPartialName);
    search.SeekName("sought");
    EXPECT_EQ(search.Run(), eofErr);
    EXPECT_EQ(search.Found(), Names{"sought"});
    EXPECT_LT(readings, 10);
}

TEST_F(WalkingSearch, SeesAsManyItemsOfAFolderAsAnIndexCounts) {
    gFileFaults.getCatalogInfo = [](CInfoPBPtr ioBlock) {
        const SInt16 index = ioBlock->hFileInfo.ioFDirIndex;
        if (index < 0) return REAL_CALL(PBGetCatInfoSync)(ioBlock);
        EXPECT_GT(index, 0);
        ioBlock->hFileInfo.ioFlParID = fsRtDirID;  // a file, whichever is asked for
        ioBlock->hFileInfo.ioNamePtr[0] = 0;
        return OSErr{noErr};
    };
    Search search(mVolume, fsSBFlParID, 40000);
    search.values.hFileInfo.ioFlParID = search.masks.hFileInfo.ioFlParID = fsRtDirID;
    EXPECT_EQ(search.Run(), eofErr);
    EXPECT_EQ(+search.block.ioActMatchCount, 0x7FFF);
}

TEST_F(WalkingSearch, FolderTakenAwayUnderItIsAChangedCatalog) {
    mVolume.MakeFile("a/b/c");
    mVolume.MakeFile("a/b/d");
    SInt32 count = 0;
    ASSERT_EQ(Next(true, &count), noErr);
    std::filesystem::remove_all(mVolume.Root() / "a");
    EXPECT_EQ(Next(false, &count), catChangedErr);
}

TEST_F(WalkingSearch, AsksForABufferAndDoesWithoutOne) {
    mVolume.MakeFile("File");
    std::vector<Size> asked;
    gFileFaults.newPointer = [&](Size inSize) {
        asked.push_back(inSize);
        return Ptr{nullptr};
    };
    SInt32 count = 0;
    EXPECT_EQ(Next(true, &count), noErr);
    EXPECT_EQ(count, 1);
    ASSERT_FALSE(asked.empty());
    EXPECT_EQ(asked[0], 16384);
}

TEST_F(WalkingSearch, UnknownVolumeIsNsvErrAndFindsNothing) {
    SInt32 count = 5;
    EXPECT_EQ(CreatorTypeFileSearch(nullptr, -32768, 0, 0, mFound, 1, &count, true), nsvErr);
    EXPECT_EQ(count, 0);
}

}  // namespace
