// A file in the making: it carries another name until it is complete, and goes away when it never
// is.
#pragma once

#include <Carbon/MacTypes.h>

#include <string>

#include "posix/UniqueFd.h"

namespace recorder {

class WorkFile {
  public:
    // Creates `.NAME.part` beside the goal. dupFNErr when the goal exists and may not be replaced
    // or is no regular file, or when somebody has a file of his own where ours would be made;
    // fBsyErr when it is already being written, permErr when the folder cannot be written to.
    WorkFile(const std::string& inGoal, bool inReplace);
    // Removes the file unless it was delivered.
    ~WorkFile();
    WorkFile(const WorkFile&) = delete;
    WorkFile& operator=(const WorkFile&) = delete;

    int Fd() const { return mFd.Get(); }
    // Takes the space at once, where the file system can; dskFulErr when there is not enough.
    void Reserve(UInt64 inBytes);
    void Sync();
    // Read-only, under its final name, in the folder for good.
    void Deliver();
    const std::string& Goal() const { return mGoal; }

    // Whether a file could be begun, as its creation would answer.
    static void CheckGoal(const std::string& inGoal, bool inReplace);
    static void CheckFolder(const std::string& inFolder);

    // Removes what processes that died have left behind; what is still being written stays, and so
    // does any other file that took such a name.
    static void RemoveLeftovers();

  private:
    void Create();
    void MakeRoom();
    bool Lock();
    void RemovePart();
    void Rename();

    std::string mGoal, mPart, mNote;
    bool mReplace, mDelivered = false;
    carbon::UniqueFd mFd;
};

// Bytes that a file in this folder may still take.
UInt64 FreeSpace(const std::string& inFolder);
std::string FolderOf(const std::string& inPath);

}  // namespace recorder
