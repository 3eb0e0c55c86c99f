// Watching from the inside: what it costs while nobody watches, and who is kept out.
#include <gtest/gtest.h>

#include <fcntl.h>
#include <linux/seccomp.h>
#include <poll.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <filesystem>

#include "apple_event_manager/internal.h"
#include "apple_event_manager/watching/watch_frame.h"
#include "apple_event_manager/watching/watch_page.h"
#include "apple_event_manager/watching/watched_send.h"
#include "platform/apple_event_manager/Monitor.h"
#include "posix/UniqueFd.h"
#include "posix/local_socket.h"
#include "support/EventPeer.h"
#include "support/LocalSocket.h"
#include "support/TemporaryHome.h"

namespace {

using namespace carbon;
namespace fs = std::filesystem;

TemporaryHome gHome;

int StatusOf(pid_t inChild) {
    int status = -1;
    waitpid(inChild, &status, 0);
    return status;
}

// In a child for which any system call but this exit is the end.
int StatusOfASendWithoutSystemCalls(const AppleEvent& inEvent) {
    const pid_t child = fork();
    if (child != 0) return StatusOf(child);
    signal(SIGSEGV, SIG_DFL);
    prctl(PR_SET_SECCOMP, SECCOMP_MODE_STRICT);
    {
        WatchedSend watched(inEvent, {0, 99}, kAENoReply);
        watched.Ended(noErr, nullptr);
        NoteQueuedReply(inEvent);
    }
    syscall(SYS_exit, 0);
    return -1;
}

class Watching : public testing::Test {
  protected:
    void SetUp() override {
        ProcessSerialNumber self;
        ASSERT_EQ(GetCurrentProcess(&self), noErr);
        mSelf = self.lowLongOfPSN;
        ASSERT_EQ(MakeEvent({0, kCurrentProcess}, 'none', &mEvent), noErr);
    }
    void TearDown() override { EXPECT_FALSE(IsSomebodyWatching()); }

    OSErr SendToSelf() {
        return AESend(&mEvent, nullptr, kAENoReply, kAENormalPriority, 600, nullptr, nullptr);
    }
    static std::string SocketPath() {
        return MonitorSocketPath(MonitorIn(TheWatchPage().monitors, 0));
    }
    WatchHeader Header(std::span<const UInt8> inEvent) const {
        WatchHeader header{WatchKind::kSent};
        header.exchange = 1;
        header.sender = mSelf;
        header.size = static_cast<UInt32>(inEvent.size());
        return header;
    }
    static std::vector<UInt8> Packet(const WatchHeader& inHeader, std::span<const UInt8> inEvent) {
        const auto header = EncodeWatchHeader(inHeader);
        std::vector<UInt8> packet(header.begin(), header.end());
        packet.insert(packet.end(), inEvent.begin(), inEvent.end());
        return packet;
    }

    // The file that comes with the next packet.
    static UniqueFd ReceiveFile(int inSocket) {
        UInt8 bytes[kWatchHeaderSize];
        alignas(cmsghdr) char control[CMSG_SPACE(sizeof(int))] = {};
        iovec piece{bytes, sizeof bytes};
        msghdr message{};
        message.msg_iov = &piece;
        message.msg_iovlen = 1;
        message.msg_control = control;
        message.msg_controllen = sizeof control;
        const ssize_t size = recvmsg(inSocket, &message, MSG_DONTWAIT | MSG_CMSG_CLOEXEC);
        const cmsghdr* rights = size > 0 ? CMSG_FIRSTHDR(&message) : nullptr;
        int file = -1;
        if (rights) std::memcpy(&file, CMSG_DATA(rights), sizeof file);
        return UniqueFd(file);
    }

    UInt32 mSelf = 0;
    OwnedDesc mEvent;
};

TEST_F(Watching, SendThatNobodyWatchesMakesNoSystemCall) {
    EXPECT_EQ(StatusOfASendWithoutSystemCalls(mEvent), 0);
    {
        TestMonitor monitor;
        EXPECT_NE(StatusOfASendWithoutSystemCalls(mEvent), 0);
    }
    EXPECT_EQ(StatusOfASendWithoutSystemCalls(mEvent), 0);
}

TEST_F(Watching, KilledMonitorIsForgottenByTheNextSend) {
    EventPeer watcher("event_monitor");
    ASSERT_NE(watcher.Psn().lowLongOfPSN, 0u);
    SendToSelf();
    EXPECT_TRUE(IsSomebodyWatching());
    kill(watcher.Pid(), SIGKILL);
    EXPECT_NE(watcher.Wait(), -1);
    EXPECT_TRUE(IsSomebodyWatching());
    SendToSelf();
    EXPECT_FALSE(IsSomebodyWatching());
}

TEST_F(Watching, NewMonitorClearsAwayAKilledOne) {
    std::string path;
    {
        EventPeer watcher("event_monitor");
        ASSERT_NE(watcher.Psn().lowLongOfPSN, 0u);
        path = SocketPath();
        EXPECT_TRUE(fs::exists(path));
    }
    TestMonitor monitor;
    EXPECT_FALSE(fs::exists(path));
    EXPECT_EQ(MonitorIn(TheWatchPage().monitors, 1), 0);
}

TEST_F(Watching, NumberPutOutByAnotherProgramComesBack) {
    TestMonitor monitor;
    TheWatchPage().monitors = 0;
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (!IsSomebodyWatching() && std::chrono::steady_clock::now() < deadline)
        monitor.TakeWaiting();
    EXPECT_TRUE(IsSomebodyWatching());
    SendToSelf();
    EXPECT_EQ(monitor.Take(2).size(), 2u);
}

TEST_F(Watching, NonsenseOnThePageIsPutOutByTheNextSend) {
    TheWatchPage().monitors = 0x0004'0003'0002'0001;
    SendToSelf();
    EXPECT_FALSE(IsSomebodyWatching());
}

// Every program of the user's has the page mapped: reading behind its end would end them all.
TEST_F(Watching, PageThatIsShortenedEndsNobodyAndFillsAgain) {
    EventPeer watcher("event_monitor");
    ASSERT_NE(watcher.Psn().lowLongOfPSN, 0u);
    TestMonitor monitor;
    fs::resize_file(gHome.Root() / "run/vantor/watchers.1", 0);
    EXPECT_EQ(SendToSelf(), noErr);
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (!MonitorIn(TheWatchPage().monitors, 1) && std::chrono::steady_clock::now() < deadline)
        monitor.TakeWaiting();
    EXPECT_NE(MonitorIn(TheWatchPage().monitors, 1), 0) << "not both are back";
    SendToSelf();
    EXPECT_EQ(monitor.Take(2).size(), 2u);
    kill(watcher.Pid(), SIGKILL);
    EXPECT_EQ(watcher.Wait(), 128 + SIGKILL) << "had ended by itself";
    SendToSelf();
}

// Even where every folder on the way is open to all.
TEST_F(Watching, AnotherUserNeitherWatchesNorTells) {
    if (geteuid() != 0) GTEST_SKIP() << "only root can become another user";
    TestMonitor monitor;
    const std::string path = SocketPath();
    const fs::path folders[] = {gHome.Root(), gHome.Root() / "run", gHome.Root() / "run/vantor"};
    for (const fs::path& folder : folders) chmod(folder.c_str(), 0755);
    const pid_t child = fork();
    if (child == 0) {
        if (setgid(65534) != 0 || setuid(65534) != 0) _exit(9);
        PlatformMonitorRef other = nullptr;
        if (OpenWatchPage() == noErr) _exit(1);
        if (PlatformMonitorOpen(&other) == noErr) _exit(2);
        if (ConnectTo(path)) _exit(3);
        _exit(errno == EACCES ? 0 : 4);
    }
    EXPECT_EQ(StatusOf(child), 0);
    for (const fs::path& folder : folders) chmod(folder.c_str(), 0700);
    EXPECT_EQ(monitor.TakeWaiting().size(), 0u);
}

TEST_F(Watching, PageThatIsALinkOrOpenToOthersIsRefused) {
    const fs::path page = gHome.Root() / "run/vantor/watchers.1", aside = page.string() + ".aside";
    fs::rename(page, aside);
    fs::create_symlink(aside, page);
    EXPECT_EQ(OpenWatchPage(), permErr);
    fs::remove(page);
    close(open(page.c_str(), O_RDWR | O_CREAT, 0666));
    chmod(page.c_str(), 0666);
    EXPECT_EQ(OpenWatchPage(), permErr);
    fs::remove(page);
    fs::rename(aside, page);
    EXPECT_EQ(OpenWatchPage(), noErr);
}

TEST_F(Watching, WhoeverBreaksTheRulesIsHungUpOnAndTheOthersGoOn) {
    TestMonitor monitor;
    const auto event = EventBytes(mEvent);
    WatchHeader stranger = Header(event), unsent = Header(event);
    stranger.sender = mSelf + 1000;
    unsent.size += 1;
    auto broken = Packet(Header(event), event);
    broken[kWatchHeaderSize] ^= 1;
    const std::vector<std::vector<UInt8>> packets = {
        {1, 2, 3}, Packet(stranger, event),          Packet(unsent, event),
        broken,    std::vector<UInt8>(100'000, 'A'), Packet(Header({}), {})};
    for (const auto& packet : packets) {
        const UniqueFd socket = ConnectTo(SocketPath());
        ASSERT_TRUE(socket);
        ASSERT_GT(send(socket.Get(), packet.data(), packet.size(), MSG_NOSIGNAL), 0);
        EXPECT_EQ(monitor.TakeWaiting().size(), 0u);
        pollfd hung{socket.Get(), POLLIN, 0};
        EXPECT_EQ(poll(&hung, 1, 0), 1);
        EXPECT_TRUE(hung.revents & POLLHUP);
        SendToSelf();
        EXPECT_EQ(monitor.Take(2).size(), 2u);
    }
}

TEST_F(Watching, FileThatCanStillShrinkIsRefused) {
    TestMonitor monitor;
    const auto event = EventBytes(mEvent);
    for (const bool isSealed : {true, false}) {
        const UniqueFd file(memfd_create("test", MFD_CLOEXEC | MFD_ALLOW_SEALING));
        ASSERT_EQ(write(file.Get(), event.data(), event.size()),
                  static_cast<ssize_t>(event.size()));
        if (isSealed) fcntl(file.Get(), F_ADD_SEALS, F_SEAL_SHRINK);
        WatchHeader header = Header(event);
        header.isAttached = true;
        auto bytes = EncodeWatchHeader(header);
        alignas(cmsghdr) char control[CMSG_SPACE(sizeof(int))] = {};
        iovec piece{bytes.data(), bytes.size()};
        msghdr message{};
        message.msg_iov = &piece;
        message.msg_iovlen = 1;
        message.msg_control = control;
        message.msg_controllen = sizeof control;
        cmsghdr* rights = CMSG_FIRSTHDR(&message);
        rights->cmsg_level = SOL_SOCKET;
        rights->cmsg_type = SCM_RIGHTS;
        rights->cmsg_len = CMSG_LEN(sizeof(int));
        const int number = file.Get();
        std::memcpy(CMSG_DATA(rights), &number, sizeof number);
        const UniqueFd socket = ConnectTo(SocketPath());
        ASSERT_GT(sendmsg(socket.Get(), &message, MSG_NOSIGNAL), 0);
        EXPECT_EQ(monitor.TakeWaiting().size(), isSealed ? 1u : 0u);
    }
}

// A seal against writing waits for whoever has a hold on a page; on a busy machine some events were
// lost by that, and the sends took a tenth of a second longer.
TEST_F(Watching, SendDoesNotWaitForThePagesOfALargeEvent) {
    constexpr MonitorNumber kNumber = 7777;
    UniqueFd listener;
    ASSERT_EQ(ListenOnLocalSocket(MonitorSocketPath(kNumber), &listener), noErr);
    ASSERT_TRUE(AddMonitor(kNumber));
    PutText(&mEvent, keyDirectObject, std::string(100'000, 'x'));
    SendToSelf();
    RemoveMonitor(kNumber);
    const UniqueFd sender = AcceptLocalSocket(listener.Get());
    ASSERT_TRUE(sender);
    const UniqueFd file = ReceiveFile(sender.Get());
    ASSERT_TRUE(file);
    EXPECT_EQ(fcntl(file.Get(), F_GET_SEALS), F_SEAL_SHRINK | F_SEAL_GROW);
    unlink(MonitorSocketPath(kNumber).c_str());
}

TEST(WatchFrame, ComesBackAsItWas) {
    WatchHeader header{WatchKind::kAnswered};
    header.error = -50;
    header.exchange = 0x123456789ABCDEF0;
    header.sender = 17;
    header.target = 18;
    header.time = 1'700'000'000'000'000'001;
    header.elapsed = 5'000'000'000;
    header.replyMode = kAEWaitReply;
    header.size = 3;
    std::memcpy(header.senderName, "\4Mine", 5);
    std::memcpy(header.targetName, "\5Yours", 6);
    const auto bytes = EncodeWatchHeader(header);
    std::vector<UInt8> packet(bytes.begin(), bytes.end());
    packet.resize(packet.size() + 3);
    const auto read = DecodeWatchPacket(packet, false);
    ASSERT_TRUE(read);
    EXPECT_EQ(read->kind, header.kind);
    EXPECT_EQ(read->error, header.error);
    EXPECT_EQ(read->exchange, header.exchange);
    EXPECT_EQ(read->sender, header.sender);
    EXPECT_EQ(read->target, header.target);
    EXPECT_EQ(read->time, header.time);
    EXPECT_EQ(read->elapsed, header.elapsed);
    EXPECT_EQ(read->replyMode, header.replyMode);
    EXPECT_EQ(read->size, 3u);
    EXPECT_EQ(std::memcmp(read->senderName, header.senderName, sizeof header.senderName), 0);
    EXPECT_EQ(std::memcmp(read->targetName, header.targetName, sizeof header.targetName), 0);
    EXPECT_FALSE(DecodeWatchPacket(packet, true));
    packet.pop_back();
    EXPECT_FALSE(DecodeWatchPacket(packet, false));
}

}  // namespace
