// Finding applications among real bundles.
#include <Carbon/Carbon.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <optional>

#include "core_foundation/internal.h"
#include "file_manager/catalog/catalog.h"
#include "launch_services/registered.h"
#include "platform/launch_services/Bundle.h"
#include "support/TemporaryHome.h"

namespace {

namespace fs = std::filesystem;

constexpr OSType kAnyType = 0x3F3F3F3F;
constexpr char kProgram[] = "#!/bin/sh\nexit 0\n";

TemporaryHome sHome;

class LaunchServices : public testing::Test {
  protected:
    void SetUp() override {
        for (const char* each : {"data", "share", "state/vantor", "elsewhere"})
            fs::remove_all(sHome.Root() / each);
        fs::create_directories(sHome.Root() / "elsewhere");
    }

    static fs::path Applications() { return sHome.Root() / "data/vantor/Applications"; }
    static fs::path SharedApplications() { return sHome.Root() / "share/vantor/Applications"; }
    static fs::path Elsewhere() { return sHome.Root() / "elsewhere"; }
};

BundleText Text(const std::string& inVersion = "1.0") {
    BundleText text;
    text.version = inVersion;
    text.program = kProgram;
    return text;
}

// The path of the answer, or its code.
std::string Answer(OSStatus inErr, const FSRef& inRef, CFURLRef inUrl) {
    if (inErr != noErr) return std::to_string(inErr);
    std::string byRef;
    EXPECT_EQ(carbon::PathFromRef(inRef, &byRef), noErr);
    EXPECT_EQ(carbon::PathFromUrl(inUrl).value_or(""), byRef);
    CFRelease(inUrl);
    return byRef;
}

std::string Find(OSType inCreator, OSType inType = kAnyType, const char* inExtension = nullptr,
                 LSRolesMask inRoles = kLSRolesEditor) {
    FSRef ref = {};
    CFURLRef url = nullptr;
    const CFStringRef extension =
        inExtension == nullptr ? nullptr : carbon::StringFromUtf8(inExtension);
    const OSStatus err = LSGetApplicationForInfo(inType, inCreator, extension, inRoles, &ref, &url);
    if (extension != nullptr) CFRelease(extension);
    return Answer(err, ref, url);
}

std::string FindByName(const char* inIdentifier, const char* inName) {
    FSRef ref = {};
    CFURLRef url = nullptr;
    const CFStringRef identifier =
        inIdentifier == nullptr ? nullptr : carbon::StringFromUtf8(inIdentifier);
    const CFStringRef name = inName == nullptr ? nullptr : carbon::StringFromUtf8(inName);
    const OSStatus err = LSFindApplicationForInfo(0, identifier, name, &ref, &url);
    if (identifier != nullptr) CFRelease(identifier);
    if (name != nullptr) CFRelease(name);
    return Answer(err, ref, url);
}

OSStatus Register(const fs::path& inPath) {
    const CFURLRef url = carbon::UrlFromPath(inPath.string(), true);
    const OSStatus err = LSRegisterURL(url, false);
    CFRelease(url);
    return err;
}

const std::string kNotFound = std::to_string(kLSApplicationNotFoundErr);

TEST_F(LaunchServices, CreatorIsFoundWhateverTypeAndRoleAreAskedFor) {
    const fs::path bundle = MakeBundle(Applications(), "Probe.app", Text());
    for (const LSRolesMask roles : {LSRolesMask(kLSRolesNone), LSRolesMask(kLSRolesEditor),
                                    LSRolesMask(kLSRolesShell), kLSRolesAll}) {
        EXPECT_EQ(Find('Prob', kAnyType, nullptr, roles), bundle) << roles;
        EXPECT_EQ(Find('Prob', kLSUnknownType, nullptr, roles), bundle) << roles;
        EXPECT_EQ(Find('Prob', 'APPL', nullptr, roles), bundle) << roles;
    }
    EXPECT_EQ(Find('prob'), kNotFound);
}

TEST_F(LaunchServices, NewestVersionWinsInWhateverFolderItLies) {
    MakeBundle(Applications(), "Old.app", Text("7.0"));
    const fs::path newest = MakeBundle(SharedApplications(), "New.app", Text("7.0.1"));
    MakeBundle(Applications(), "Beta.app", Text("7.0.1b3"));
    MakeBundle(Applications(), "Unreadable.app", Text("7.10"));  // counts as version 0
    EXPECT_EQ(Find('Prob'), newest);
}

TEST_F(LaunchServices, OfEqualVersionsTheUsersOwnWins) {
    MakeBundle(SharedApplications(), "A.app", Text());
    const fs::path own = MakeBundle(Applications(), "B.app", Text());
    EXPECT_EQ(Find('Prob'), own);
}

TEST_F(LaunchServices, BundleThatAppearsChangesOrGoesIsNoticedByTheNextQuestion) {
    EXPECT_EQ(Find('Prob'), kNotFound);
    const fs::path first = MakeBundle(Applications(), "First.app", Text("1.0"));
    EXPECT_EQ(Find('Prob'), first);
    const fs::path second = MakeBundle(Applications(), "Second.app", Text("2.0"));
    EXPECT_EQ(Find('Prob'), second);
    MakeBundle(Applications(), "First.app", Text("3.0"));
    EXPECT_EQ(Find('Prob'), first);
    BundleText other = Text("4.0");
    other.creator = "Othr";
    MakeBundle(Applications(), "First.app", other);
    EXPECT_EQ(Find('Prob'), second);
    EXPECT_EQ(Find('Othr'), first);
    fs::rename(second, Elsewhere() / "Second.app");
    EXPECT_EQ(Find('Prob'), kNotFound);
    fs::remove_all(first);
    EXPECT_EQ(Find('Othr'), kNotFound);
}

TEST_F(LaunchServices, ForkedChildNoticesChangesToo) {
    EXPECT_EQ(Find('Prob'), kNotFound);
    const pid_t child = fork();
    if (child == 0) {
        const fs::path bundle = MakeBundle(Applications(), "Probe.app", Text());
        _exit(Find('Prob') == bundle ? 0 : 1);
    }
    int status = -1;
    waitpid(child, &status, 0);
    EXPECT_EQ(WEXITSTATUS(status), 0);
    EXPECT_EQ(Find('Prob'), Applications() / "Probe.app");
}

TEST_F(LaunchServices, FoldersThatAreNoApplicationsAreNotFound) {
    BundleText library = Text();
    library.type = "FMWK";
    MakeBundle(Applications(), "Library.app", library);
    MakeBundle(Applications(), "Probe.bundle", Text());
    fs::create_directories(Applications() / "Empty.app");
    EXPECT_EQ(Find('Prob'), kNotFound);
}

TEST_F(LaunchServices, IdentifierAndNameAreFoundWithoutRegardToCase) {
    const fs::path bundle = MakeBundle(Applications(), "Probe.app", Text());
    EXPECT_EQ(FindByName("EXAMPLE.probe", nullptr), bundle);
    EXPECT_EQ(FindByName(nullptr, "PROBE"), bundle);
    EXPECT_EQ(FindByName(nullptr, "probe.APP"), bundle);
    EXPECT_EQ(FindByName("example.other", "nothing"), kNotFound);
    EXPECT_EQ(FindByName("example.other", "Probe"), bundle);
}

TEST_F(LaunchServices, DocumentsLeadToTheApplicationThatDeclaresThem) {
    BundleText text = Text();
    text.more =
        "<key>CFBundleDocumentTypes</key><array><dict>"
        "<key>CFBundleTypeExtensions</key><array><string>disc</string></array>"
        "<key>CFBundleTypeOSTypes</key><array><string>Disc</string></array>"
        "<key>CFBundleTypeRole</key><string>Viewer</string></dict></array>";
    const fs::path bundle = MakeBundle(Applications(), "Probe.app", text);
    EXPECT_EQ(Find(0, 'Disc', nullptr, kLSRolesAll), bundle);
    EXPECT_EQ(Find(0, 0, "DISC", kLSRolesViewer), bundle);
    EXPECT_EQ(Find(0, 'Disc', nullptr, kLSRolesEditor), kNotFound);
    EXPECT_EQ(Find(0, 'none', "none", kLSRolesAll), kNotFound);
    EXPECT_EQ(Find('none', 0, "disc", kLSRolesAll), bundle);
}

TEST_F(LaunchServices, RegisteredBundleIsFoundAlsoByLaterPrograms) {
    const fs::path bundle = MakeBundle(Elsewhere(), "line\nend \\ Probe.app", Text());
    EXPECT_EQ(Find('Prob'), kNotFound);
    EXPECT_EQ(Register(bundle), noErr);
    EXPECT_EQ(Find('Prob'), bundle);
    EXPECT_EQ(Register(bundle), noErr);
    EXPECT_EQ(carbon::RegisteredBundles(), std::vector<std::string>{bundle});
    FSRef ref;
    const fs::path other = MakeBundle(Elsewhere(), "Other.app", Text("2.0"));
    ASSERT_EQ(carbon::RefFromPath(other.string(), &ref), noErr);
    EXPECT_EQ(LSRegisterFSRef(&ref, true), noErr);
    EXPECT_EQ(Find('Prob'), other);
    fs::remove_all(other);
    EXPECT_EQ(Find('Prob'), bundle);
}

TEST_F(LaunchServices, OnlyApplicationsCanBeRegistered) {
    EXPECT_EQ(Register(Elsewhere() / "missing.app"), fnfErr);
    fs::create_directory(Elsewhere() / "folder");
    EXPECT_EQ(Register(Elsewhere() / "folder"), kLSNoRegistrationInfoErr);
    std::ofstream(Elsewhere() / "file") << "text";
    EXPECT_EQ(Register(Elsewhere() / "file"), kLSNoRegistrationInfoErr);
    BundleText empty = Text();
    empty.program.clear();
    EXPECT_EQ(Register(MakeBundle(Elsewhere(), "Empty.app", empty)), kLSNoRegistrationInfoErr);
    const fs::path damaged = MakeBundle(Elsewhere(), "Damaged.app", Text());
    std::ofstream(damaged / "Contents/Info.plist") << "<plist><dict><key>half";
    EXPECT_EQ(Register(damaged), kLSDataErr);
    EXPECT_TRUE(carbon::RegisteredBundles().empty());
    EXPECT_EQ(LSRegisterURL(nullptr, false), paramErr);
    EXPECT_EQ(LSRegisterFSRef(nullptr, false), paramErr);
}

TEST_F(LaunchServices, QuestionsThatAskNothingAreParameterErrors) {
    FSRef ref;
    EXPECT_EQ(LSGetApplicationForInfo(0, 0, nullptr, kLSRolesAll, &ref, nullptr), paramErr);
    EXPECT_EQ(LSGetApplicationForInfo(kAnyType, 'Prob', nullptr, kLSRolesAll, nullptr, nullptr),
              paramErr);
    EXPECT_EQ(LSFindApplicationForInfo(0, nullptr, nullptr, &ref, nullptr), paramErr);
    EXPECT_EQ(LSFindApplicationForInfo('Prob', nullptr, nullptr, nullptr, nullptr), paramErr);
}

}  // namespace
