// Events that are answered later: their clients wait while this process goes on with others.
#pragma once

#include <Carbon/Carbon.h>

#include <functional>
#include <vector>

namespace recorder {

class LateReplies {
  public:
    // Puts the answer into the reply; throws for an error.
    using Answer = std::function<void(AppleEvent* outReply)>;

    // From within the event's handler, which then returns noErr. Once `inReady` is true, Turn()
    // gives the answer.
    void Suspend(const AppleEvent& inEvent, const AppleEvent& inReply,
                 std::function<bool()> inReady, Answer inAnswer);
    void Turn();
    bool IsEmpty() const { return mWaiting.empty(); }

  private:
    struct Waiting {
        AppleEvent event, reply;
        std::function<bool()> ready;
        Answer answer;
    };
    std::vector<Waiting> mWaiting;
};

// Runs `inWork` and gives its result code; what it throws becomes the code, and the sentence in the
// reply, which may be null.
OSErr CodeOf(const std::function<void()>& inWork, AppleEvent* ioReply);

}  // namespace recorder
