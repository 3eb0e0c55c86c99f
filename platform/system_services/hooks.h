// What an embedding program or a test put in place of the platform's own behaviour.
#pragma once

#include <Carbon/MacTypes.h>

#include <mutex>
#include <string>
#include <utility>

namespace carbon {

// A function and its context, set and read together from any thread.
template <class Function>
class Hook {
  public:
    constexpr Hook() = default;

    void Set(Function inFunction, void* inContext) {
        const std::lock_guard lock(mMutex);
        mHook = {inFunction, inContext};
    }

    std::pair<Function, void*> Get() {
        const std::lock_guard lock(mMutex);
        return mHook;
    }

    std::mutex& Guard() { return mMutex; }

  private:
    std::mutex mMutex;
    std::pair<Function, void*> mHook = {nullptr, nullptr};
};

// Hands a text (UTF-8, with its line end) to the text sink, or writes it to standard error.
void WriteText(const std::string& inText);

// What ExitToShell does: calls the exit hook, and returns if that does; without one, leaves the
// program with status 0.
void LeaveProgram();

}  // namespace carbon
