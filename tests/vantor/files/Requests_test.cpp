// What the calls that only servers answered are asked, and what of the answer comes back: a server
// that records stands in the place of the platform.
#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "support/PascalString.h"
#include "vantor/files/FileIDs.h"
#include "vantor/files/MoveRename.h"
#include "vantor/files/Sharing.h"

namespace {

HParamBlockRec sAsked;  // as it was asked
OSErr sResult = noErr;

OSErr Record(HParmBlkPtr ioBlock) {
    sAsked = *ioBlock;
    return sResult;
}

std::string NameAsked() {
    return TextOf(sAsked.ioParam.ioNamePtr);
}

}  // namespace

OSErr PBHGetLogInInfoSync(HParmBlkPtr ioBlock) {
    ioBlock->objParam.ioObjType = kEncryptPassword;
    std::memcpy(ioBlock->objParam.ioObjNamePtr, PString("user"), 5);
    return Record(ioBlock);
}

OSErr PBShareSync(HParmBlkPtr ioBlock) {
    return Record(ioBlock);
}

OSErr PBUnshareSync(HParmBlkPtr ioBlock) {
    return Record(ioBlock);
}

OSErr PBGetForeignPrivsSync(HParmBlkPtr ioBlock) {
    Record(ioBlock);
    ioBlock->foreignPrivParam.ioForeignPrivActCount = 3;
    ioBlock->foreignPrivParam.ioForeignPrivInfo1 = 11;
    ioBlock->foreignPrivParam.ioForeignPrivInfo2 = 12;
    ioBlock->foreignPrivParam.ioForeignPrivInfo3 = 13;
    ioBlock->foreignPrivParam.ioForeignPrivInfo4 = 14;
    return sResult;
}

OSErr PBSetForeignPrivsSync(HParmBlkPtr ioBlock) {
    Record(ioBlock);
    ioBlock->foreignPrivParam.ioForeignPrivActCount = 2;
    return sResult;
}

OSErr PBHCopyFileSync(HParmBlkPtr ioBlock) {
    return Record(ioBlock);
}

OSErr PBHMoveRenameSync(HParmBlkPtr ioBlock) {
    return Record(ioBlock);
}

OSErr PBExchangeFilesSync(HParmBlkPtr ioBlock) {
    return Record(ioBlock);
}

namespace {

class Requests : public ::testing::Test {
  protected:
    Requests() { sAsked = {}; }
    ~Requests() override { sResult = noErr; }

    static FSSpec Spec(SInt32 inDirID, const char* inName) {
        FSSpec spec = {-7, inDirID, {}};
        std::memcpy(spec.name, PString(inName), std::strlen(inName) + 1);
        return spec;
    }
    const FSSpec mObject = Spec(20, "Object"), mTarget = Spec(30, "Target");
};

TEST_F(Requests, LogInIsAskedOfTheVolume) {
    SInt16 method = 0;
    Str31 user = {};
    EXPECT_EQ(HGetLogInInfo(-7, &method, user), noErr);
    EXPECT_EQ(+sAsked.objParam.ioVRefNum, -7);
    EXPECT_EQ(method, kEncryptPassword);
    EXPECT_EQ(TextOf(user), "user");
}

TEST_F(Requests, SharingNamesTheFolder) {
    for (const auto call : {FSpShare, FSpUnshare}) {
        sAsked = {};
        EXPECT_EQ(call(&mObject), noErr);
        EXPECT_EQ(+sAsked.fileParam.ioVRefNum, -7);
        EXPECT_EQ(+sAsked.fileParam.ioDirID, 20);
        EXPECT_EQ(NameAsked(), "Object");
    }
}

TEST_F(Requests, ForeignRightsGoBothWays) {
    char buffer[8];
    SInt32 size = sizeof buffer, first = 0, second = 0, third = 0, fourth = 0;
    EXPECT_EQ(FSpGetForeignPrivs(&mObject, buffer, &size, &first, &second, &third, &fourth), noErr);
    EXPECT_EQ(+sAsked.foreignPrivParam.ioForeignPrivReqCount, SInt32(sizeof buffer));
    EXPECT_EQ(+sAsked.foreignPrivParam.ioForeignPrivDirID, 20);
    EXPECT_EQ(+sAsked.foreignPrivParam.ioForeignPrivBuffer, buffer);
    EXPECT_EQ((std::vector{size, first, second, third, fourth}), (std::vector{3, 11, 12, 13, 14}));
    EXPECT_EQ(FSpSetForeignPrivs(&mObject, buffer, &size, 1, 2, 3, 4), noErr);
    EXPECT_EQ(+sAsked.foreignPrivParam.ioForeignPrivReqCount, 3);
    EXPECT_EQ(+sAsked.foreignPrivParam.ioForeignPrivInfo1, 1);
    EXPECT_EQ(+sAsked.foreignPrivParam.ioForeignPrivInfo4, 4);
    EXPECT_EQ(size, 2);
}

TEST_F(Requests, ServerCopiesNameBothEndsAndTheCopy) {
    const PString copy("Copy");
    const ConstStringPtr copyName = copy;
    sResult = afpDenyConflict;
    EXPECT_EQ(FSpCopyFile(&mObject, &mTarget, copyName), afpDenyConflict);
    EXPECT_EQ(NameAsked(), "Object");
    EXPECT_EQ(+sAsked.copyParam.ioDirID, 20);
    EXPECT_EQ(+sAsked.copyParam.ioDstVRefNum, -7);
    EXPECT_EQ(+sAsked.copyParam.ioNewDirID, 30);
    EXPECT_EQ(TextOf(sAsked.copyParam.ioNewName), "Target");
    EXPECT_EQ(+sAsked.copyParam.ioCopyName, copyName);
}

TEST_F(Requests, MovesAndRenamesAreOneRequest) {
    const PString name("New");
    EXPECT_EQ(FSpMoveRename(&mObject, &mTarget, name), noErr);
    EXPECT_EQ(NameAsked(), "Object");
    EXPECT_EQ(+sAsked.copyParam.ioDirID, 20);
    EXPECT_EQ(+sAsked.copyParam.ioNewDirID, 30);
    EXPECT_EQ(TextOf(sAsked.copyParam.ioNewName), "Target");
    EXPECT_EQ(TextOf(sAsked.copyParam.ioCopyName), "New");
    FSSpec elsewhere = mTarget;
    elsewhere.vRefNum = -8;
    EXPECT_EQ(FSpMoveRename(&mObject, &elsewhere, name), diffVolErr);
}

TEST_F(Requests, ExchangesNameBothFiles) {
    const PString source("One"), destination("Two");
    EXPECT_EQ(ExchangeFiles(-7, 20, source, 30, destination), noErr);
    EXPECT_EQ(NameAsked(), "One");
    EXPECT_EQ(+sAsked.fidParam.ioSrcDirID, 20);
    EXPECT_EQ(+sAsked.fidParam.ioDestDirID, 30);
    EXPECT_EQ(TextOf(sAsked.fidParam.ioDestNamePtr), "Two");
}

}  // namespace
