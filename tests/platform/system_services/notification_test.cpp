// Notifications: the queue, what is shown, and the response.
#include <Carbon/MacErrors.h>
#include <Carbon/Notification.h>
#include <Platform/Platform.h>
#include <gtest/gtest.h>

#include <string>

namespace {

int gResponses = 0;

void Respond(NMRecPtr inRequest) {
    gResponses += inRequest->nmRefCon;
}

void RespondByRemoving(NMRecPtr inRequest) {
    gResponses += NMRemove(inRequest) == noErr ? 1 : 1000;
}

QElemPtr After(const NMRec& inRequest) {
    return inRequest.qLink;
}

class Notifications : public testing::Test {
  protected:
    Notifications() {
        gResponses = 0;
        PlatformSetTextSink([](const char* t, void* c) { *static_cast<std::string*>(c) += t; },
                            &mText);
        mRequest.qType = nmType;
        mRequest.nmRefCon = 1;
    }
    ~Notifications() override { PlatformSetTextSink(nullptr, nullptr); }

    std::string mText;
    UInt8 mString[5] = {4, 'c', 'a', 'f', 0x8E};
    NMRec mRequest = {};
};

TEST_F(Notifications, ShowTheirTextAndRespondOnce) {
    mRequest.nmStr = mString;
    mRequest.nmResp = NewNMUPP(Respond);
    EXPECT_EQ(NMInstall(&mRequest), noErr);
    EXPECT_EQ(NMInstall(&mRequest), noErr) << "installed already";
    EXPECT_EQ(mText, "caf\u00E9\n");
    EXPECT_EQ(gResponses, 1);
    EXPECT_EQ(NMRemove(&mRequest), noErr);
    EXPECT_EQ(NMRemove(&mRequest), qErr);
}

TEST_F(Notifications, MayBeRemovedByTheirResponse) {
    mRequest.nmResp = RespondByRemoving;
    EXPECT_EQ(NMInstall(&mRequest), noErr);
    EXPECT_EQ(gResponses, 1);
    EXPECT_EQ(mText, "") << "there is no string to show";
    EXPECT_EQ(NMRemove(&mRequest), qErr);
}

TEST_F(Notifications, RemoveThemselvesForMinusOne) {
    mRequest.nmResp = reinterpret_cast<NMUPP>(intptr_t(-1));
    EXPECT_EQ(NMInstall(&mRequest), noErr);
    EXPECT_EQ(NMRemove(&mRequest), qErr);
}

TEST_F(Notifications, WithAnotherQueueTypeAreRefused) {
    mRequest.qType = nmType + 1;
    mRequest.nmStr = mString;
    EXPECT_EQ(NMInstall(&mRequest), nmTypErr);
    EXPECT_EQ(NMRemove(&mRequest), nmTypErr);
    EXPECT_EQ(mText, "");
    EXPECT_EQ(NMInstall(nullptr), paramErr);
    EXPECT_EQ(NMRemove(nullptr), paramErr);
}

TEST_F(Notifications, AreLinkedInTheOrderOfTheirInstalling) {
    NMRec second = mRequest, third = mRequest;
    NMInstall(&mRequest);
    NMInstall(&second);
    NMInstall(&third);
    EXPECT_EQ(After(mRequest), reinterpret_cast<QElemPtr>(&second));
    EXPECT_EQ(NMRemove(&second), noErr);
    EXPECT_EQ(After(mRequest), reinterpret_cast<QElemPtr>(&third));
    EXPECT_EQ(NMRemove(&mRequest), noErr);
    EXPECT_EQ(NMRemove(&third), noErr);
}

TEST_F(Notifications, AreAnsweredThroughTheProcedureItself) {
    InvokeNMUPP(&mRequest, NewNMUPP(Respond));
    DisposeNMUPP(Respond);
    EXPECT_EQ(gResponses, 1);
}

}  // namespace
