// Gestalt: the answers it starts with, and changing them.
#include <Carbon/Gestalt.h>
#include <Carbon/MacErrors.h>
#include <gtest/gtest.h>

#include <utility>

namespace {

constexpr SInt32 kUntouched = 0x5A5A5A5A;

SInt32 Ask(OSType inSelector, OSErr inExpected = noErr) {
    SInt32 response = kUntouched;
    EXPECT_EQ(Gestalt(inSelector, &response), inExpected);
    return response;
}

OSErr AnswerSeven(OSType, SInt32* outResponse) {
    *outResponse = 7;
    return noErr;
}

OSErr AnswerSelector(OSType inSelector, SInt32* outResponse) {
    *outResponse = SInt32(inSelector);
    return noErr;
}

OSErr Fail(OSType, SInt32* outResponse) {
    *outResponse = 7;
    return gestaltUnknownErr;
}

TEST(Gestalt, DescribesTheSystemThatIsPlayed) {
    const std::pair<OSType, SInt32> truth[] = {
        {'sysv', 0x1049}, {'sys1', 10},   {'sys2', 4},    {'sys3', 11}, {'evnt', 7}, {'appr', 1},
        {'apvr', 0x0110}, {'wind', 0xFF}, {'menu', 0x7F}, {'cfrg', 1},  {'tmgr', 3}};
    for (const auto& [selector, value] : truth) EXPECT_EQ(Ask(selector), value) << selector;
}

TEST(Gestalt, LeavesTheResponseAloneOnAnError) {
    EXPECT_EQ(Ask('none', gestaltUndefSelectorErr), kUntouched);
    EXPECT_EQ(NewGestalt('fail', Fail), noErr);
    EXPECT_EQ(Ask('fail', gestaltUnknownErr), kUntouched);
    EXPECT_EQ(DeleteGestaltValue('fail'), noErr);
    EXPECT_EQ(Gestalt('sysv', nullptr), paramErr);
}

TEST(NewGestaltValue, AddsOnceUntilItIsDeleted) {
    EXPECT_EQ(NewGestaltValue('new1', -5), noErr);
    EXPECT_EQ(Ask('new1'), -5);
    EXPECT_EQ(NewGestaltValue('new1', 6), gestaltDupSelectorErr);
    EXPECT_EQ(Ask('new1'), -5);
    EXPECT_EQ(DeleteGestaltValue('new1'), noErr);
    Ask('new1', gestaltUndefSelectorErr);
    EXPECT_EQ(DeleteGestaltValue('new1'), gestaltUndefSelectorErr);
    EXPECT_EQ(NewGestaltValue('sysv', 1), gestaltDupSelectorErr);
}

TEST(ReplaceGestaltValue, ChangesOnlyWhatIsThere) {
    EXPECT_EQ(ReplaceGestaltValue('rep1', 1), gestaltUndefSelectorErr);
    Ask('rep1', gestaltUndefSelectorErr);
    EXPECT_EQ(ReplaceGestaltValue('sysv', 0x0922), noErr);
    EXPECT_EQ(Ask('sysv'), 0x0922);
    EXPECT_EQ(ReplaceGestaltValue('sysv', 0x1049), noErr);
}

TEST(SetGestaltValue, AddsOrChanges) {
    EXPECT_EQ(SetGestaltValue('set1', 1), noErr);
    EXPECT_EQ(SetGestaltValue('set1', 2), noErr);
    EXPECT_EQ(Ask('set1'), 2);
    EXPECT_EQ(DeleteGestaltValue('set1'), noErr);
}

TEST(NewGestalt, AsksTheFunctionEachTime) {
    EXPECT_EQ(NewGestalt('func', NewSelectorFunctionUPP(AnswerSelector)), noErr);
    EXPECT_EQ(Ask('func'), SInt32('func'));
    EXPECT_EQ(NewGestalt('func', AnswerSeven), gestaltDupSelectorErr);
    EXPECT_EQ(NewGestalt('fun2', nullptr), paramErr);
    Ask('fun2', gestaltUndefSelectorErr);
    EXPECT_EQ(DeleteGestaltValue('func'), noErr);
}

TEST(ReplaceGestalt, HandsOutTheFunctionBefore) {
    SelectorFunctionUPP old = AnswerSeven;
    EXPECT_EQ(ReplaceGestalt('rfun', AnswerSeven, &old), gestaltUndefSelectorErr);
    EXPECT_EQ(old, &AnswerSeven) << "touched on an error";
    EXPECT_EQ(NewGestaltValue('rfun', 3), noErr);
    EXPECT_EQ(ReplaceGestalt('rfun', AnswerSeven, &old), noErr);
    EXPECT_EQ(old, nullptr) << "there was a value";
    EXPECT_EQ(Ask('rfun'), 7);
    EXPECT_EQ(ReplaceGestalt('rfun', AnswerSelector, &old), noErr);
    EXPECT_EQ(old, &AnswerSeven);
    EXPECT_EQ(ReplaceGestalt('rfun', AnswerSeven, nullptr), noErr);
    EXPECT_EQ(ReplaceGestalt('rfun', nullptr, &old), paramErr);
    EXPECT_EQ(ReplaceGestaltValue('rfun', 9), noErr);
    EXPECT_EQ(Ask('rfun'), 9) << "a value takes the function's place";
    EXPECT_EQ(DeleteGestaltValue('rfun'), noErr);
}

TEST(SelectorFunctionUPP, IsTheFunctionItself) {
    SInt32 response = 0;
    const SelectorFunctionUPP upp = NewSelectorFunctionUPP(AnswerSeven);
    EXPECT_EQ(InvokeSelectorFunctionUPP('any ', &response, upp), noErr);
    EXPECT_EQ(response, 7);
    DisposeSelectorFunctionUPP(upp);
    EXPECT_EQ(InvokeSelectorFunctionUPP('any ', &response, upp), noErr);
}

}  // namespace
