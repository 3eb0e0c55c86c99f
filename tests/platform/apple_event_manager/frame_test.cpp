// The bytes of a frame, and what the assembler makes of packets that break the rules.
#include "apple_event_manager/transport/frame.h"

#include <gtest/gtest.h>

#include <cstring>

#include "apple_event_manager/limits.h"

namespace carbon {
namespace {

using Progress = FrameAssembler::Progress;

std::vector<UInt8> Packet(const FrameHeader& inHeader, size_t inPayload = 0, UInt8 inByte = 'x') {
    const auto header = EncodeHeader(inHeader);
    std::vector<UInt8> packet(header.begin(), header.end());
    packet.insert(packet.end(), inPayload, inByte);
    return packet;
}

FrameHeader Event(UInt32 inSize) {
    return {FrameKind::kEvent, inSize, 0x11, 7, 0x30, -2};
}

TEST(Frame, HeaderHasTheseBytes) {
    const UInt8 bytes[] = {'A', 'E', 'f', '1',  'e',  'v',  'n',  't', 0, 0,
                           1,   2,   0,   0,    0,    0x11, 0,    0,   0, 7,
                           0,   0,   0,   0x30, 0xFF, 0xFF, 0xFF, 0xFE};
    const auto header = EncodeHeader(Event(0x102));
    EXPECT_EQ(std::vector<UInt8>(header.begin(), header.end()),
              std::vector<UInt8>(std::begin(bytes), std::end(bytes)));
}

TEST(Frame, HeaderIsReadAsItWasWritten) {
    const auto header = DecodeHeader(EncodeHeader(Event(5)));
    ASSERT_TRUE(header);
    EXPECT_EQ(header->kind, FrameKind::kEvent);
    EXPECT_EQ(header->size, 5u);
    EXPECT_EQ(header->sender, 0x11u);
    EXPECT_EQ(header->request, 7u);
    EXPECT_EQ(header->interaction, 0x30);
    EXPECT_EQ(header->timeOut, -2);
}

TEST(Frame, HeaderIsRefusedWhenItBreaksARule) {
    auto bytes = EncodeHeader(Event(5));
    bytes[3] = '2';
    EXPECT_FALSE(DecodeHeader(bytes)) << "another version";
    bytes = EncodeHeader(Event(5));
    EXPECT_FALSE(DecodeHeader(std::span(bytes).first(27))) << "cut short";
    EXPECT_FALSE(DecodeHeader(EncodeHeader({FrameKind{'what'}, 0, 17}))) << "unknown kind";
    EXPECT_FALSE(DecodeHeader(EncodeHeader(Event(0)))) << "event without bytes";
    EXPECT_FALSE(DecodeHeader(EncodeHeader({FrameKind::kWakeUp, 0, 0}))) << "from nobody";
    EXPECT_FALSE(DecodeHeader(EncodeHeader({FrameKind::kReply, 5, 17, 0}))) << "reply to nothing";
    EXPECT_FALSE(DecodeHeader(EncodeHeader({FrameKind::kWakeUp, 1, 17}))) << "notice with bytes";
    EXPECT_FALSE(DecodeHeader(EncodeHeader({FrameKind::kApplicationDied, 11, 17})))
        << "short obituary";
    EXPECT_TRUE(DecodeHeader(EncodeHeader(Event(kMaximumMessageSize))));
    EXPECT_FALSE(DecodeHeader(EncodeHeader(Event(kMaximumMessageSize + 1)))) << "over the limit";
    EXPECT_FALSE(DecodeHeader(EncodeHeader(Event(0xFFFFFFFF)))) << "over the limit";
}

std::string Text(std::span<const UInt8> inBytes) {
    return {inBytes.begin(), inBytes.end()};
}

TEST(FrameAssembler, OnePacketMakesAFrame) {
    FrameAssembler assembler;
    ASSERT_EQ(assembler.Take(Packet(Event(3), 3)), Progress::kComplete);
    const Frame frame = assembler.TakeFrame();
    EXPECT_EQ(Text(frame.payload), "xxx");
    EXPECT_EQ(assembler.Take(Packet(Event(1), 1)), Progress::kComplete);
}

TEST(FrameAssembler, PacketsAreJoinedUntilThePromiseIsKept) {
    FrameAssembler assembler;
    EXPECT_EQ(assembler.Take(Packet(Event(6), 2, 'a')), Progress::kMore);
    EXPECT_EQ(assembler.Take(std::vector<UInt8>(3, 'b')), Progress::kMore);
    EXPECT_EQ(assembler.Take(std::vector<UInt8>(1, 'c')), Progress::kComplete);
    EXPECT_EQ(Text(assembler.TakeFrame().payload), "aabbbc");
}

TEST(FrameAssembler, PacketsMayBePutWhereTheyBelong) {
    FrameAssembler assembler;
    EXPECT_EQ(assembler.Take(Packet(Event(6), 2, 'a')), Progress::kMore);
    std::memset(assembler.Room().data(), 'b', 3);
    EXPECT_EQ(assembler.Count(3), Progress::kMore);
    ASSERT_EQ(assembler.Room().size(), 1u);
    assembler.Room()[0] = 'c';
    EXPECT_EQ(assembler.Count(1), Progress::kComplete);
    EXPECT_EQ(Text(assembler.TakeFrame().payload), "aabbbc");
}

TEST(FrameAssembler, MoreThanThereIsRoomForBreaks) {
    FrameAssembler assembler;
    EXPECT_EQ(assembler.Take(Packet(Event(2))), Progress::kMore);
    EXPECT_EQ(assembler.Count(3), Progress::kBroken);
}

TEST(FrameAssembler, HeaderMayComeAlone) {
    FrameAssembler assembler;
    EXPECT_EQ(assembler.Take(Packet(Event(2))), Progress::kMore);
    EXPECT_EQ(assembler.Take(std::vector<UInt8>(2, 'x')), Progress::kComplete);
}

TEST(FrameAssembler, NoticeIsCompleteWithItsHeader) {
    FrameAssembler assembler;
    EXPECT_EQ(assembler.Take(Packet({FrameKind::kWakeUp, 0, 17})), Progress::kComplete);
}

TEST(FrameAssembler, MoreThanPromisedBreaks) {
    FrameAssembler first, second, third;
    EXPECT_EQ(first.Take(Packet(Event(2), 3)), Progress::kBroken);
    EXPECT_EQ(second.Take(Packet(Event(4), 3)), Progress::kMore);
    EXPECT_EQ(second.Take(std::vector<UInt8>(2, 'x')), Progress::kBroken);
    EXPECT_EQ(third.Take(Packet({FrameKind::kWakeUp, 0, 17}, 1)), Progress::kBroken);
}

TEST(FrameAssembler, EmptyPacketInsideAFrameBreaks) {
    FrameAssembler assembler;
    EXPECT_EQ(assembler.Take(Packet(Event(4), 3)), Progress::kMore);
    EXPECT_EQ(assembler.Take({}), Progress::kBroken);
}

TEST(FrameAssembler, GarbageBreaks) {
    FrameAssembler assembler;
    EXPECT_EQ(assembler.Take(std::vector<UInt8>(100, 0xFF)), Progress::kBroken);
}

}  // namespace
}  // namespace carbon
