// A file descriptor with one owner.
#pragma once

#include <unistd.h>

#include <utility>

namespace carbon {

class UniqueFd {
  public:
    UniqueFd() = default;
    explicit UniqueFd(int inFd) : mFd(inFd) {}
    UniqueFd(UniqueFd&& inOther) noexcept : mFd(std::exchange(inOther.mFd, -1)) {}
    UniqueFd& operator=(UniqueFd&& inOther) noexcept {
        Reset(std::exchange(inOther.mFd, -1));
        return *this;
    }
    UniqueFd(const UniqueFd&) = delete;
    UniqueFd& operator=(const UniqueFd&) = delete;
    ~UniqueFd() { Reset(); }

    int Get() const { return mFd; }
    explicit operator bool() const { return mFd >= 0; }
    int Release() { return std::exchange(mFd, -1); }
    void Reset(int inFd = -1) {
        if (mFd >= 0 && mFd != inFd) close(mFd);
        mFd = inFd;
    }

  private:
    int mFd = -1;
};

}  // namespace carbon
