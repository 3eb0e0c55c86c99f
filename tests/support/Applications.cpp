// Installing, launching and ending the applications of one test.
#include "support/Applications.h"

#include "support/RecorderTest.h"
#include "vantor/appleevents/MoreAE.h"
#include "vantor/appleevents/StAEDescriptor.h"

void ApplicationsTest::TearDown() {
    for (const ProcessSerialNumber& psn : mLaunched) KillProcess(&psn);
    for (const ProcessSerialNumber& psn : mLaunched) {
        EXPECT_TRUE(Eventually([&] { return HasEnded(psn); }));
    }
    std::filesystem::remove_all(ApplicationsFolder());
}

RecorderBundle& ApplicationsTest::Install(const std::string& inName, const std::string& inCreator,
                                          const std::string& inType, bool inBackgroundOnly) {
    BundleFacts facts;
    facts.folder = inName + ".app";
    facts.name = inName;
    facts.creator = inCreator;
    facts.type = inType;
    facts.backgroundOnly = inBackgroundOnly;
    return mBundles.emplace_back(facts);
}

ProcessSerialNumber ApplicationsTest::Launch(const RecorderBundle& inBundle) {
    const ProcessSerialNumber psn =
        UProcess::LaunchApp(inBundle.Spec(), launchContinue | launchDontSwitch);
    mLaunched.push_back(psn);
    StAEDescriptor hello;
    const AEIdleUPP idle = NewAEIdleUPP(MoreAESimpleIdleFunction);
    EXPECT_EQ(
        MoreAECreateAppleEventProcessTarget(&psn, kCoreEventClass, kAEReopenApplication, hello),
        noErr);
    EXPECT_EQ(MoreAESendEventNoReturnValue(idle, hello), errAEEventNotHandled);
    inBundle.Forget();
    return psn;
}

ProcessSerialNumber ApplicationsTest::InstallAndLaunch(const std::string& inName,
                                                       const std::string& inCreator,
                                                       const std::string& inType) {
    return Launch(Install(inName, inCreator, inType));
}

bool ApplicationsTest::HasEnded(const ProcessSerialNumber& inPSN) {
    ProcessInfoRec info = {};
    info.processInfoLength = 60;
    return GetProcessInformation(&inPSN, &info) == procNotFound;
}
