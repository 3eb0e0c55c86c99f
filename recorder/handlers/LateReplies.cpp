// Owns suspended events, and the one place where exceptions become the errors of a reply.
#include "handlers/LateReplies.h"

#include <algorithm>
#include <new>

#include "burn/BurnFailure.h"
#include "handlers/Values.h"
#include "vantor/appleevents/MoreAE.h"
#include "vantor/foundation/LException.h"

namespace recorder {
namespace {

// The code, or that of the failure to say more about it.
OSErr CodeWithSentence(SInt32 inCode, const std::string& inText, AppleEvent* ioReply) {
    if (ioReply == nullptr) return OSErr(inCode);
    const std::string text = MacRomanOf(inText);
    const StAEDescriptor sentence(typeChar, text.data(), Size(text.size()));
    return MoreAEAddResultToReply(sentence, ioReply, OSErr(inCode));
}

}  // namespace

OSErr CodeOf(const std::function<void()>& inWork, AppleEvent* ioReply) {
    try {
        inWork();
        return noErr;
    } catch (const LException& exception) {
        return OSErr(exception.GetErrorCode());
    } catch (const BurnFailure& failure) {
        return CodeWithSentence(failure.Code(), failure.what(), ioReply);
    } catch (const std::bad_alloc&) {
        return memFullErr;
    } catch (const std::exception& exception) {
        return CodeWithSentence(ioErr, exception.what(), ioReply);
    }
}

void LateReplies::Suspend(const AppleEvent& inEvent, const AppleEvent& inReply,
                          std::function<bool()> inReady, Answer inAnswer) {
    ThrowIfError(AESuspendTheCurrentEvent(&inEvent));
    mWaiting.push_back({inEvent, inReply, std::move(inReady), std::move(inAnswer)});
}

void LateReplies::Turn() {
    const auto done = std::stable_partition(mWaiting.begin(), mWaiting.end(),
                                            [](const auto& w) { return !w.ready(); });
    std::vector<Waiting> ready(std::make_move_iterator(done),
                               std::make_move_iterator(mWaiting.end()));
    mWaiting.erase(done, mWaiting.end());
    for (auto& waiting : ready) {
        const OSErr code = CodeOf([&] { waiting.answer(&waiting.reply); }, &waiting.reply);
        if (code != noErr) MoreAEMoreAESetReplyErrorNumber(code, &waiting.reply);
        AEResumeTheCurrentEvent(&waiting.event, &waiting.reply,
                                reinterpret_cast<AEEventHandlerUPP>(kAENoDispatch), 0);
    }
}

}  // namespace recorder
