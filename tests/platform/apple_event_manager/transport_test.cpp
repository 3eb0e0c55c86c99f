// The socket of a process among callers that break the rules: each loses its own connection only.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <random>

#include "apple_event_manager/limits.h"
#include "apple_event_manager/transport/frame.h"
#include "posix/UniqueFd.h"
#include "support/EventPeer.h"
#include "support/LocalSocket.h"
#include "support/TemporaryHome.h"
#include "support/TestEvents.h"

namespace {

using carbon::EncodeHeader;
using carbon::FrameHeader;
using carbon::FrameKind;
using carbon::UniqueFd;
using Bytes = std::vector<UInt8>;

TemporaryHome gHome;

class Transport : public testing::Test {
  protected:
    void SetUp() override {
        ProcessSerialNumber self;
        ASSERT_EQ(GetCurrentProcess(&self), noErr);
        mSelf = self.lowLongOfPSN;
        ASSERT_NE(mServer.Psn().lowLongOfPSN, 0u);
    }
    void TearDown() override { EXPECT_TRUE(ServerAnswers()); }

    std::string SocketPath() {
        char name[16];
        std::snprintf(name, sizeof name, "%x.sock", UInt32{mServer.Psn().lowLongOfPSN});
        return std::string(std::getenv("XDG_RUNTIME_DIR")) + "/vantor/" + name;
    }
    UniqueFd Connect() { return ConnectTo(SocketPath()); }
    // More connections than the server keeps, each used once before the next one is opened.
    static constexpr int kSurplus = 40;
    std::vector<UniqueFd> Crowd() {
        std::vector<UniqueFd> sockets;
        for (int i = 0; i < carbon::kMaximumConnections + kSurplus; ++i) {
            sockets.push_back(Connect());
            EXPECT_TRUE(IsAnswered(sockets.back())) << i;
        }
        return sockets;
    }
    bool IsAnswered(const UniqueFd& inSocket) {
        const Bytes event = FlatEvent();
        const FrameHeader header{FrameKind::kEvent, static_cast<UInt32>(event.size()), mSelf, 9};
        char reply[4096];
        return Say(inSocket, Packet(header, event)) && IsReadable(inSocket) &&
               recv(inSocket.Get(), reply, sizeof reply, 0) > 28;
    }
    static bool FindsNobody(const ProcessSerialNumber& inPsn) {
        pid_t pid = 0;
        return GetProcessPID(&inPsn, &pid) != noErr;
    }
    static bool Say(const UniqueFd& inSocket, const Bytes& inPacket) {
        return send(inSocket.Get(), inPacket.data(), inPacket.size(), MSG_NOSIGNAL) >= 0;
    }
    static Bytes Packet(const FrameHeader& inHeader, const Bytes& inPayload = {}) {
        const auto header = EncodeHeader(inHeader);
        Bytes packet(header.begin(), header.end());
        packet.insert(packet.end(), inPayload.begin(), inPayload.end());
        return packet;
    }
    // Whether something comes, or the server hangs up, within 10 s.
    static bool IsReadable(const UniqueFd& inSocket, int inMilliseconds = 10'000) {
        pollfd readable{inSocket.Get(), POLLIN, 0};
        return poll(&readable, 1, inMilliseconds) > 0;
    }
    static bool IsHungUp(const UniqueFd& inSocket) {
        if (!IsReadable(inSocket)) return false;
        char byte;
        return recv(inSocket.Get(), &byte, 1, 0) <= 0;
    }
    bool ServerAnswers() {
        OwnedDesc event, reply;
        MakeEvent(mServer.Psn(), 'echo', &event);
        PutLong(&event, keyDirectObject, 3);
        return AESend(&event, &reply, kAEWaitReply, 0, 1800, nullptr, nullptr) == noErr &&
               LongIn(reply, keyDirectObject) == 3;
    }
    static Bytes FlatEvent() {
        OwnedDesc event;
        MakeEvent({0, kCurrentProcess}, 'add1', &event);
        Bytes bytes(static_cast<size_t>(AESizeOfFlattenedDesc(&event)));
        AEFlattenDesc(&event, reinterpret_cast<Ptr>(bytes.data()), static_cast<Size>(bytes.size()),
                      nullptr);
        return bytes;
    }

    EventPeer mServer = StartServer();
    UInt32 mSelf = 0;
};

TEST_F(Transport, HandmadeEventIsTaken) {
    const Bytes event = FlatEvent();
    const UniqueFd socket = Connect();
    ASSERT_TRUE(Say(
        socket, Packet({FrameKind::kEvent, static_cast<UInt32>(event.size()), mSelf, 9}, event)));
    UInt8 packet[4096];
    const ssize_t size = recv(socket.Get(), packet, sizeof packet, 0);
    ASSERT_GT(size, 28);
    const auto header = carbon::DecodeHeader({packet, static_cast<size_t>(size)});
    ASSERT_TRUE(header);
    EXPECT_EQ(header->kind, FrameKind::kReply);
    EXPECT_EQ(header->request, 9u);
}

TEST_F(Transport, BrokenFramesLoseTheirConnection) {
    const Bytes event = FlatEvent();
    const auto size = static_cast<UInt32>(event.size());
    Bytes damaged = event;
    damaged[8] ^= 0xFF;
    OwnedDesc text;
    AECreateDesc(typeChar, "text", 4, &text);
    Bytes noEvent(static_cast<size_t>(AESizeOfFlattenedDesc(&text)));
    AEFlattenDesc(&text, reinterpret_cast<Ptr>(noEvent.data()), static_cast<Size>(noEvent.size()),
                  nullptr);
    const Bytes packets[] = {
        Bytes(1, 'x'),
        Bytes(5000, 0xFF),
        Packet({FrameKind::kEvent, UInt32{carbon::kMaximumMessageSize} + 1, mSelf, 1}, event),
        Packet({FrameKind::kEvent, size - 1, mSelf, 1}, event),
        Packet({FrameKind::kEvent, size, mSelf, 1}, damaged),
        Packet({FrameKind::kEvent, static_cast<UInt32>(noEvent.size()), mSelf, 1}, noEvent),
        Packet({FrameKind::kReply, size, mSelf, 1}, event),
        Packet({FrameKind::kResetTimer, 0, mSelf, 1}),
        Bytes(carbon::kMaximumPacketSize + 1, 'A'),
        Bytes(),
    };
    for (const Bytes& packet : packets) {
        const UniqueFd socket = Connect();
        ASSERT_TRUE(Say(socket, packet));
        EXPECT_TRUE(IsHungUp(socket)) << packet.size();
    }
}

TEST_F(Transport, HalfAFrameHarmsNobody) {
    const UniqueFd waiting = Connect();
    ASSERT_TRUE(Say(waiting, Packet({FrameKind::kEvent, 1'000'000, mSelf, 1}, Bytes(10, 'x'))));
    EXPECT_TRUE(ServerAnswers());
    const UniqueFd gone = Connect();
    ASSERT_TRUE(Say(gone, Packet({FrameKind::kEvent, 1'000'000, mSelf, 1}, Bytes(10, 'x'))));
}

TEST_F(Transport, NestingBeyondTheLimitIsRefused) {
    // Lists in one another, written by hand: the calls refuse to build them.
    const auto put32 = [](Bytes& ioBytes, UInt32 inValue) {
        for (int i = 24; i >= 0; i -= 8) ioBytes.push_back(static_cast<UInt8>(inValue >> i));
    };
    Bytes form = FlatEvent();
    Bytes nested;
    for (int depth = 0; depth < 1000; ++depth) {
        Bytes list;
        put32(list, 'list');
        put32(list, 0x01000000);
        put32(list, static_cast<UInt32>(nested.size() + 4));
        put32(list, depth == 0 ? 0 : 1);
        list.insert(list.end(), nested.begin(), nested.end());
        nested = list;
    }
    Bytes whole(form.begin(), form.begin() + 4);
    whole.insert(whole.end(), nested.begin(), nested.end());
    const UniqueFd socket = Connect();
    ASSERT_TRUE(Say(
        socket, Packet({FrameKind::kEvent, static_cast<UInt32>(whole.size()), mSelf, 1}, whole)));
    EXPECT_TRUE(IsHungUp(socket));
}

TEST_F(Transport, RandomPacketsNeverStopTheServer) {
    std::mt19937 random(20040517);
    const Bytes event = FlatEvent();
    for (int round = 0; round < 200; ++round) {
        const UniqueFd socket = Connect();
        Bytes packet =
            Packet({FrameKind::kEvent, static_cast<UInt32>(event.size()), mSelf, 1}, event);
        for (int change = 0; change < 4; ++change)
            packet[random() % packet.size()] = static_cast<UInt8>(random());
        packet.resize(1 + random() % packet.size());
        Say(socket, packet);
    }
}

TEST_F(Transport, ClientThatNeverReadsItsRepliesIsPatientlyIgnored) {
    OwnedDesc event;
    MakeEvent(mServer.Psn(), 'bulk', &event);
    PutLong(&event, keyDirectObject, 1 << 20);
    Bytes bytes(static_cast<size_t>(AESizeOfFlattenedDesc(&event)));
    AEFlattenDesc(&event, reinterpret_cast<Ptr>(bytes.data()), static_cast<Size>(bytes.size()),
                  nullptr);
    const UniqueFd socket = Connect();
    fcntl(socket.Get(), F_SETFL, O_NONBLOCK);
    for (UInt32 request = 1; request <= 100; ++request)
        Say(socket,
            Packet({FrameKind::kEvent, static_cast<UInt32>(bytes.size()), mSelf, request}, bytes));
    EXPECT_TRUE(ServerAnswers());
}

TEST_F(Transport, EventsBeyondTheLimitOfOneConnectionWait) {
    const Bytes bytes = FlatEvent();
    const UniqueFd socket = Connect();
    kill(mServer.Pid(), SIGSTOP);
    fcntl(socket.Get(), F_SETFL, O_NONBLOCK);
    int sent = 0;
    while (sent < 500 &&
           Say(socket,
               Packet({FrameKind::kEvent, static_cast<UInt32>(bytes.size()), mSelf, 0}, bytes)))
        ++sent;
    kill(mServer.Pid(), SIGCONT);
    OwnedDesc event, reply;
    for (SInt32 counted = 0, rounds = 0; counted < sent && rounds < 2000; ++rounds) {
        AEDisposeDesc(&event);
        AEDisposeDesc(&reply);
        MakeEvent(mServer.Psn(), 'cnt?', &event);
        ASSERT_EQ(AESend(&event, &reply, kAEWaitReply, 0, 600, nullptr, nullptr), noErr);
        counted = LongIn(reply, keyDirectObject);
    }
    EXPECT_EQ(LongIn(reply, keyDirectObject), sent);
}

// More clients than one process may have: those that are idle make room, and lose nothing by it.
TEST_F(Transport, LongestIdleConnectionsMakeRoomForNewOnes) {
    const std::vector<UniqueFd> sockets = Crowd();
    for (size_t i = 0; i < sockets.size(); ++i) {
        if (i < kSurplus)
            EXPECT_TRUE(IsHungUp(sockets[i])) << i;
        else
            EXPECT_FALSE(IsReadable(sockets[i], 0)) << i;
    }
}

TEST_F(Transport, ConnectionInUseIsNotTheOneThatMakesRoom) {
    const UniqueFd first = Connect();
    EXPECT_TRUE(IsAnswered(first));
    const UniqueFd second = Connect();
    EXPECT_TRUE(IsAnswered(second));
    EXPECT_TRUE(IsAnswered(first));
    std::vector<UniqueFd> others;
    for (int i = 0; i < carbon::kMaximumConnections - 1; ++i) {
        others.push_back(Connect());
        EXPECT_TRUE(IsAnswered(others.back())) << i;
    }
    EXPECT_TRUE(IsHungUp(second));
    EXPECT_TRUE(IsAnswered(first));
}

// The one used longest ago is in the middle of a large event: that is no idleness.
TEST_F(Transport, HalfReceivedEventKeepsItsConnection) {
    const Bytes event = FlatEvent();
    const auto middle = event.begin() + static_cast<std::ptrdiff_t>(event.size() / 2);
    const FrameHeader header{FrameKind::kEvent, static_cast<UInt32>(event.size()), mSelf, 9};
    const UniqueFd slow = Connect();
    ASSERT_TRUE(Say(slow, Packet(header, Bytes(event.begin(), middle))));
    EXPECT_TRUE(ServerAnswers());
    EXPECT_TRUE(ServerAnswers());
    const std::vector<UniqueFd> sockets = Crowd();
    EXPECT_TRUE(ServerAnswers());
    ASSERT_TRUE(Say(slow, Bytes(middle, event.end())));
    UInt8 reply[4096];
    EXPECT_GT(recv(slow.Get(), reply, sizeof reply, 0), 28);
}

TEST_F(Transport, NumberOfAnotherProcessIsNoDisguise) {
    const UniqueFd socket = Connect();
    ASSERT_TRUE(Say(socket, Packet({FrameKind::kWakeUp, 0, mServer.Psn().lowLongOfPSN})));
    EXPECT_TRUE(IsHungUp(socket));
}

// A client that sends and ends at once may be gone before its connection is even accepted.
TEST_F(Transport, LastWordsOfAClientCount) {
    kill(mServer.Pid(), SIGSTOP);
    const pid_t child = fork();
    if (child == 0) {
        OwnedDesc event;
        MakeEvent(mServer.Psn(), 'add1', &event);
        _exit(AESend(&event, nullptr, kAENoReply, 0, kNoTimeOut, nullptr, nullptr));
    }
    int status = -1;
    waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
    kill(mServer.Pid(), SIGCONT);
    OwnedDesc event, reply;
    MakeEvent(mServer.Psn(), 'cnt?', &event);
    ASSERT_EQ(AESend(&event, &reply, kAEWaitReply, 0, 1800, nullptr, nullptr), noErr);
    EXPECT_EQ(LongIn(reply, keyDirectObject), 1);
}

TEST_F(Transport, AnotherUserIsRefused) {
    if (geteuid() != 0) GTEST_SKIP() << "only root can become another user";
    const std::string path = SocketPath();
    // Even where the folders let one through, which they do not by themselves.
    for (const char* folder : {"", "/run", "/run/vantor"})
        chmod((gHome.Root().string() + folder).c_str(), 0755);
    chmod(path.c_str(), 0666);
    const pid_t child = fork();
    if (child == 0) {
        if (setgid(65534) != 0 || setuid(65534) != 0) _exit(2);
        const UniqueFd socket = ConnectTo(path);
        if (!socket) _exit(3);
        const Bytes event = Packet({FrameKind::kWakeUp, 0, mSelf});
        Say(socket, event);
        _exit(IsHungUp(socket) ? 0 : 1);
    }
    int status = -1;
    waitpid(child, &status, 0);
    for (const char* folder : {"", "/run", "/run/vantor"})
        chmod((gHome.Root().string() + folder).c_str(), 0700);
    EXPECT_EQ(status, 0);
}

TEST_F(Transport, SocketIsForItsUserAlone) {
    struct stat information;
    ASSERT_EQ(stat(SocketPath().c_str(), &information), 0);
    EXPECT_EQ(information.st_mode & 0777, 0600u);
}

TEST_F(Transport, SocketGoesWithItsProcess) {
    const std::string path = SocketPath();
    OwnedDesc event, reply;
    MakeEvent(mServer.Psn(), kAEQuitApplication, &event, kCoreEventClass);
    EXPECT_EQ(AESend(&event, &reply, kAEWaitReply, 0, 1800, nullptr, nullptr), noErr);
    EXPECT_EQ(mServer.Wait(), 0);
    EXPECT_NE(access(path.c_str(), F_OK), 0);
    mServer = StartServer();
}

// It only waits for events: nothing but a knock tells it that it is on no list any more.
TEST_F(Transport, IdleServerComesIntoTheNewTableOfProcesses) {
    const std::string table = std::string(std::getenv("XDG_RUNTIME_DIR")) + "/vantor/processes.1";
    const auto damages = {+[](const char* path) { return truncate(path, 100); },
                          +[](const char* path) { return unlink(path); }};
    for (const auto& damage : damages) {
        ASSERT_EQ(damage(table.c_str()), 0);
        ProcessSerialNumber server = mServer.Psn();
        pid_t pid = 0;
        EXPECT_EQ(GetProcessPID(&server, &pid), noErr);
        EXPECT_EQ(pid, mServer.Pid());
        EXPECT_TRUE(ServerAnswers());
    }
}

// One that cannot answer costs a moment and no more.
TEST_F(Transport, StoppedServerDoesNotKeepTheNewTableFromBeingUsed) {
    const std::string table = std::string(std::getenv("XDG_RUNTIME_DIR")) + "/vantor/processes.1";
    ASSERT_EQ(kill(mServer.Pid(), SIGSTOP), 0);
    ASSERT_EQ(unlink(table.c_str()), 0);
    ProcessSerialNumber self, next = {0, kNoProcess};
    EXPECT_EQ(GetCurrentProcess(&self), noErr);
    EXPECT_EQ(GetNextProcess(&next), noErr);
    EXPECT_EQ(next.lowLongOfPSN, self.lowLongOfPSN);
    ASSERT_EQ(kill(mServer.Pid(), SIGCONT), 0);
    ProcessSerialNumber server = mServer.Psn();
    const UInt32 start = TickCount();
    while (FindsNobody(server) && TickCount() - start < 600) usleep(1000);
    EXPECT_FALSE(FindsNobody(server)) << "the knock is still to be heard";
}

}  // namespace
