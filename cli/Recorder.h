// What our recorder offers beyond the exported functions: its drives, the output file, the progress
// of a job, cancelling. The codes are those of docs/recorder-dictionary.md. Every call throws a
// Failure when the recorder refuses.
#pragma once

#include <Carbon/Carbon.h>

#include <string>
#include <vector>

namespace cli {

// An object in the recorder: the application itself, or an element of it by position (from 1).
struct Object {
    OSType elementClass = 0;  // 0: the application
    SInt32 position = 0;
};

inline constexpr Object kApplication = {};
inline constexpr Object kDisc = {'Disc', 1};

std::string GetText(Object inObject, AEKeyword inProperty);  // UTF-8
SInt64 GetNumber(Object inObject, AEKeyword inProperty);
bool GetBoolean(Object inObject, AEKeyword inProperty);
OSType GetCode(Object inObject, AEKeyword inProperty);  // a 'type' or 'enum' property
std::vector<std::string> GetTexts(Object inObject, AEKeyword inProperty);

void SetText(Object inObject, AEKeyword inProperty, const std::string& inUtf8);
void SetBoolean(Object inObject, AEKeyword inProperty, bool inValue);

SInt32 CountElements(OSType inClass);

// Stops the running job; returns at once, the job ends within two seconds.
void CancelJob();
// The same without waiting for the answer, for those who are leaving: nothing more can be done
// then.
void AbandonJob() noexcept;

}  // namespace cli
