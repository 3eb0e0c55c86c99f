// Owns one reference to a CoreFoundation object for a scope.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

template <typename Reference>
class StCFReference {
  public:
    explicit StCFReference(Reference inObject) : mObject(inObject) {}
    ~StCFReference() {
        if (mObject != nullptr) CFRelease(mObject);
    }
    StCFReference(const StCFReference&) = delete;
    StCFReference& operator=(const StCFReference&) = delete;

    operator Reference() const { return mObject; }

  private:
    Reference mObject;
};
