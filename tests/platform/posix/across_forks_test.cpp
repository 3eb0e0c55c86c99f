// Children forked while other threads of their parent are inside the platform: whatever those were
// doing, a child can go on.
#include <Carbon/Carbon.h>
#include <Platform/Platform.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <fstream>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "posix/across_forks.h"
#include "posix/address_sanitizer.h"
#include "support/TemporaryHome.h"

namespace {

TemporaryHome gHome;

constexpr int kChildren = 40;
constexpr unsigned kPatience = 15;  // seconds
// The allocator of the address sanitizer has locks that it does not hold across forks, so that now
// and then a child finds one taken. A lock of ours that is not held stops far more than these.
#ifdef PLATFORM_CHECKS_ADDRESSES
constexpr int kStoppedBySanitizer = 3;
#else
constexpr int kStoppedBySanitizer = 0;
#endif

// In a child: a wait for what no thread will let go of ends with the alarm.
int StatusOfChildThat(void (*inWork)()) {
    const pid_t child = fork();
    if (child == 0) {
        alarm(kPatience);
        inWork();
        _exit(0);
    }
    int status = -1;
    waitpid(child, &status, 0);
    return status;
}

// Whether children can do what other threads are doing while they are forked.
testing::AssertionResult ChildrenCan(void (*inWork)()) {
    inWork();  // what is made once is there
    std::atomic<bool> isOver = false;
    std::vector<std::thread> threads;
    for (int i = 0; i < 3; ++i)
        threads.emplace_back([&] {
            while (!isOver) inWork();
        });
    int status = 0;
    int stopped = 0;
    for (int i = 0; i < kChildren && status == 0; ++i) {
        status = StatusOfChildThat(inWork);
        const bool isStopped = WIFSIGNALED(status) && WTERMSIG(status) == SIGALRM;
        if (isStopped && ++stopped <= kStoppedBySanitizer) status = 0;
    }
    isOver = true;
    for (std::thread& thread : threads) thread.join();
    if (status == 0) return testing::AssertionSuccess();
    return testing::AssertionFailure()
           << stopped << " children stopped, the last one ended with " << status;
}

FSSpec SpecOf(const char* inName) {
    const std::string path = gHome.Root() / inName;
    std::ofstream(path) << "text";
    FSRef ref{};
    FSSpec spec{};
    if (FSPathMakeRef(reinterpret_cast<const UInt8*>(path.c_str()), &ref, nullptr) == noErr)
        FSGetCatalogInfo(&ref, kFSCatInfoNone, nullptr, nullptr, &spec, nullptr);
    return spec;
}

std::mutex gOuter, gInner;
const carbon::HeldAcrossForks gHeldInner(gInner), gHeldOuter(gOuter);

TEST(ForkedChild, FindsLocksFreeInWhateverOrderTheyAreTaken) {
    EXPECT_TRUE(ChildrenCan([] {
        const std::lock_guard outer(gOuter);
        const std::lock_guard inner(gInner);
    }));
}

TEST(ForkedChild, MakesHandles) {
    EXPECT_TRUE(ChildrenCan([] { DisposeHandle(NewHandle(8)); }));
}

TEST(ForkedChild, MakesPointers) {
    EXPECT_TRUE(ChildrenCan([] { DisposePtr(NewPtr(8)); }));
}

TEST(ForkedChild, AsksGestalt) {
    EXPECT_TRUE(ChildrenCan([] {
        SInt32 response;
        SetGestaltValue('Fork', 1);
        Gestalt('Fork', &response);
    }));
}

TEST(ForkedChild, HasConstantStrings) {
    EXPECT_TRUE(ChildrenCan([] { CFStringGetLength(CFSTR("A constant of this test")); }));
}

TEST(ForkedChild, OpensBundles) {
    EXPECT_TRUE(ChildrenCan([] {
        const CFBundleRef bundle = CFBundleGetMainBundle();
        if (bundle) CFBundleGetIdentifier(bundle);
    }));
}

TEST(ForkedChild, OpensFiles) {
    static const FSSpec sSpec = SpecOf("File");
    ASSERT_NE(sSpec.name[0], 0);
    EXPECT_TRUE(ChildrenCan([] {
        SInt16 number = 0;
        if (FSpOpenDF(&sSpec, fsRdPerm, &number) == noErr) FSClose(number);
    }));
}

TEST(ForkedChild, FindsProcessesAndApplications) {
    EXPECT_TRUE(ChildrenCan([] {
        ProcessSerialNumber number{0, kNoProcess};
        FSRef application;
        GetNextProcess(&number);
        LSFindApplicationForInfo('none', nullptr, nullptr, &application, nullptr);
    }));
}

TEST(ForkedChild, TellsTheTextSink) {
    PlatformSetTextSink([](const char*, void*) {}, nullptr);
    EXPECT_TRUE(ChildrenCan([] {
        const Str255 text = {4, 't', 'e', 'x', 't'};
        DebugStr(text);
    }));
    PlatformSetTextSink(nullptr, nullptr);
}

}  // namespace
