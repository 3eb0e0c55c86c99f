// A number in a file that every process of the user sees change at once, without a system call.
#pragma once

#include <Carbon/MacTypes.h>

#include <atomic>
#include <string>

namespace carbon {

// Where the file cannot be made, the number is this process's own.
class SharedCounter {
  public:
    explicit SharedCounter(const std::string& inPath);
    ~SharedCounter();
    SharedCounter(const SharedCounter&) = delete;
    SharedCounter& operator=(const SharedCounter&) = delete;

    UInt64 Value() const { return mValue->load(std::memory_order_acquire); }
    void Increment() { mValue->fetch_add(1, std::memory_order_acq_rel); }

  private:
    std::atomic<UInt64> mOwn{0};
    std::atomic<UInt64>* mValue = &mOwn;
};

}  // namespace carbon
